#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>

#include "forms/run_time_error.h"
#include "player.h"
#include "skin_files.h"

namespace nqp::test {
namespace {

using Texts = std::map<int, std::string>;

std::string last_error;

// What the dialog writes when every control holds something else than at first.
const Texts kEverything = {{1, "1"},
                           {2, "0"},
                           {3, "1"},
                           {4, "1"},
                           {5, "0"},
                           {6, "1"},
                           {7, "1"},
                           {8, "1"},
                           {9, "Beta"},
                           {10, "48000 Hz"},
                           {11, "50"},
                           {12, "1"},
                           {13, "C:\\pictures\\logo.bmp"},
                           {14, "250"},
                           {15, "1000"},
                           {16, "12"},
                           {17, "31"},
                           {18, "07"},
                           {19, "5"},
                           {20, "C:\\clips\\a clip.avi"},
                           {21, "1"},
                           {27, "1"}};

class Options : public testing::Test {
protected:
    Options() {
        for (const char* name : {"Alpha", "Beta"})
            SkinFiles(player_.folder, name).PutColors(std::vector<std::string>(12, "0"));
        last_error.clear();
        forms::SetRunTimeErrorHandler(
            [](const std::string& sentence, forms::Origin) { last_error = sentence; });
    }
    ~Options() override { forms::SetRunTimeErrorHandler(nullptr); }

    void Put(const Texts& texts) const {
        for (const auto& [record, text] : texts)
            player_.PutSetting(record, text);
    }
    Texts Settings() const {
        Texts texts;
        for (const auto& [record, text] : kEverything)
            texts[record] = player_.Setting(record);
        return texts;
    }
    // Acts in the dialog, which is then cancelled.
    void LookAt(const std::function<void()>& look) {
        OnNextModal([this, look] {
            look();
            ClickOn(dialog_.Command1);
        });
        player_.form4.Picture10_Click();
        RunMessages();
    }

    Player player_;
    options::Form2& dialog_ = player_.form2;
};

TEST_F(Options, AreShownAboveAllUntilTheyAreClosed) {
    player_.Start();
    LookAt([this] {
        EXPECT_TRUE(OnScreen(dialog_));
        EXPECT_TRUE(Topmost(dialog_));
    });
    EXPECT_FALSE(dialog_.Loaded());
    EXPECT_TRUE(OnScreen(player_.form4));
}

TEST_F(Options, AreReadIntoTheControls) {
    Put(kEverything);
    player_.Start();
    LookAt([this] {
        EXPECT_TRUE(dialog_.Check1.Checked());
        EXPECT_FALSE(dialog_.Check2.Checked());
        EXPECT_TRUE(dialog_.Check3.Checked());
        EXPECT_TRUE(dialog_.Check4.Checked());
        EXPECT_FALSE(dialog_.Check5.Checked());
        EXPECT_TRUE(dialog_.Check6.Checked());
        EXPECT_TRUE(dialog_.Check7.Checked());
        EXPECT_TRUE(dialog_.Check8.Checked());
        EXPECT_EQ(dialog_.List1.ListIndex(), 1);
        EXPECT_EQ(TextOn(dialog_.Text1), "48000 Hz");
        EXPECT_EQ(TextOn(dialog_.Text2), "50");
        EXPECT_TRUE(dialog_.Check9.Checked());
        EXPECT_EQ(TextOn(dialog_.PictureName), "logo.bmp");
        EXPECT_EQ(dialog_.Combo1.ListIndex(), 11);
        EXPECT_EQ(dialog_.Combo2.ListIndex(), 30);
        EXPECT_EQ(TextOn(dialog_.Text3), "07");
        EXPECT_EQ(TextOn(dialog_.Text4), "5");
        EXPECT_EQ(TextOn(dialog_.Text5), "C:\\clips\\a clip.avi");
        EXPECT_TRUE(dialog_.Check10.Checked());
        EXPECT_TRUE(dialog_.Option1.Chosen());
        EXPECT_FALSE(dialog_.Option2.Chosen());
    });
}

TEST_F(Options, AcceptedWithoutAChangeAreWrittenAsTheyWere) {
    Put(kEverything);
    player_.Start();
    player_.ChangeOptions();
    EXPECT_EQ(Settings(), kEverything);
}

TEST_F(Options, CancelledAreNotWritten) {
    Put(kEverything);
    player_.Start();
    const std::string before = player_.folder.Content("options.cfg");
    LookAt([this] {
        ClickOn(dialog_.Check1);
        TypeInto(dialog_.Text1, "1");
        ClickOn(dialog_.Option2);
    });
    EXPECT_EQ(player_.folder.Content("options.cfg"), before);
}

// Record n at (n - 1) x 1000: two bytes of length, low one first, then the text. The bytes behind a
// text, and the records of others, stay what they were.
TEST_F(Options, AreWrittenByteForByteIntoTheirRecords) {
    constexpr std::size_t kRecord = 1000;
    std::string file(29 * kRecord, '#');
    const auto overlay = [&file](int record, const std::string& text) {
        const std::size_t at = static_cast<std::size_t>(record - 1) * kRecord;
        file[at] = static_cast<char>(text.size());
        file[at + 1] = '\0';
        file.replace(at + 2, text.size(), text);
    };
    for (int record = 1; record <= 29; ++record)
        overlay(record, "0");
    overlay(13, "C:\\pictures\\logo.bmp");
    overlay(14, "250");
    overlay(15, "1000");
    player_.folder.Put("options.cfg", file);
    player_.Start();
    player_.ChangeOptions([this] {
        for (forms::CheckBox* box : {&dialog_.Check1, &dialog_.Check6, &dialog_.Check10})
            ClickOn(*box);
        ClickOn(dialog_.Label17);
        for (forms::CheckBox* box :
             {&dialog_.Check3, &dialog_.Check4, &dialog_.Check7, &dialog_.Check8}) {
            ClickOn(*box);
        }
        ClickOn(dialog_.Label18);
        ChooseLine(dialog_.List1, 1);
        ClickOn(dialog_.Label19);
        TypeInto(dialog_.Text1, "48000 Hz");
        ClickOn(dialog_.Option1);
        TypeInto(dialog_.Text2, "50");
        ClickOn(dialog_.Check9);
        ClickOn(dialog_.Label20);
        ChooseItem(dialog_.Combo1, 11);
        ChooseItem(dialog_.Combo2, 30);
        TypeInto(dialog_.Text3, "07");
        TypeInto(dialog_.Text4, "5");
        TypeInto(dialog_.Text5, "C:\\clips\\a clip.avi");
    });
    for (const auto& [record, text] : kEverything)
        overlay(record, text);
    const std::string written = player_.folder.Content("options.cfg");
    ASSERT_EQ(written.size(), file.size());
    for (int record = 1; record <= 29; ++record) {
        const std::size_t at = static_cast<std::size_t>(record - 1) * kRecord;
        EXPECT_EQ(written.substr(at, kRecord), file.substr(at, kRecord)) << record;
    }
}

TEST_F(Options, OfAFileThatWasNeverWrittenHaveTheirFirstTexts) {
    player_.Start();
    ASSERT_EQ(player_.folder.Content("options.cfg"), "");
    player_.ChangeOptions([this] {
        EXPECT_EQ(TextOn(dialog_.Text1), "44100");
        EXPECT_EQ(TextOn(dialog_.Text2), "25");
        EXPECT_TRUE(dialog_.Option2.Chosen());
        EXPECT_EQ(dialog_.List1.ListIndex(), -1);
    });
    EXPECT_EQ(player_.Setting(10), "44100");
    EXPECT_EQ(player_.Setting(11), "25");
    EXPECT_EQ(player_.Setting(27), "0");
    EXPECT_EQ(player_.Setting(9), "");
    EXPECT_EQ(player_.Setting(16), "0");
    EXPECT_EQ(player_.Setting(22), "");
}

TEST_F(Options, HaveDefaultsForEmptyFields) {
    Put(kEverything);
    player_.Start();
    player_.ChangeOptions([this] {
        for (forms::TextBox* field :
             {&dialog_.Text1, &dialog_.Text2, &dialog_.Text3, &dialog_.Text4, &dialog_.Text5}) {
            TypeInto(*field, "");
        }
    });
    EXPECT_EQ(player_.Setting(10), "");
    EXPECT_EQ(player_.Setting(11), "100");
    EXPECT_EQ(player_.Setting(18), "0");
    EXPECT_EQ(player_.Setting(19), "0");
    EXPECT_EQ(player_.Setting(20), "");
}

TEST_F(Options, EmptyANumberThatIsNone) {
    Put(kEverything);
    player_.Start();
    LookAt([this] {
        for (forms::TextBox* field : {&dialog_.Text2, &dialog_.Text3, &dialog_.Text4}) {
            TypeInto(*field, "07");
            EXPECT_EQ(TextOn(*field), "07") << field->Name();
            TypeInto(*field, "1a");
            EXPECT_EQ(TextOn(*field), "") << field->Name();
            TypeInto(*field, "-1");
            EXPECT_EQ(TextOn(*field), "") << field->Name();
        }
        TypeInto(dialog_.Text1, "any text");
        EXPECT_EQ(TextOn(dialog_.Text1), "any text");
    });
}

TEST_F(Options, LetOnlyOneInterfaceWorkOnFrames) {
    Put(kEverything);
    player_.PutSetting(27, "2");
    player_.Start();
    LookAt([this] {
        EXPECT_TRUE(dialog_.Option2.Chosen());
        EXPECT_FALSE(dialog_.Text2.Enabled());
        EXPECT_FALSE(dialog_.Check9.Enabled());
        ClickOn(dialog_.Label19);
        ClickOn(dialog_.Option1);
        EXPECT_FALSE(dialog_.Option2.Chosen());
        EXPECT_TRUE(dialog_.Text2.Enabled());
        EXPECT_TRUE(dialog_.Check9.Enabled());
        ClickOn(dialog_.Option2);
        EXPECT_FALSE(dialog_.Option1.Chosen());
        EXPECT_FALSE(dialog_.Text2.Enabled());
        EXPECT_FALSE(dialog_.Check9.Enabled());
    });
}

// ---- pages ----

class OptionPages : public Options {
protected:
    std::vector<forms::Label*> headers_ = {&dialog_.Label16, &dialog_.Label17, &dialog_.Label18,
                                           &dialog_.Label19, &dialog_.Label20};
    std::vector<forms::Control*> first_ = {&dialog_.Check1, &dialog_.Check4, &dialog_.List1,
                                           &dialog_.Text1, &dialog_.Combo1};

    void ExpectPage(std::size_t page) {
        for (std::size_t index = 0; index < headers_.size(); ++index) {
            const bool chosen = index == page;
            EXPECT_EQ(headers_[index]->ForeColor(), chosen ? 0xFFFFFFU : 0U) << index;
            EXPECT_EQ(headers_[index]->BackColor(), chosen ? 0U : 0xFFFFFFU) << index;
            EXPECT_EQ(dialog_.Frame1[static_cast<int>(index)].Visible(), chosen) << index;
            EXPECT_EQ(ShownOn(*first_[index]), chosen) << index;
        }
    }
};

TEST_F(OptionPages, AreChosenByTheirHeaders) {
    player_.Start();
    LookAt([this] {
        ExpectPage(0);
        for (const std::size_t page : {3U, 3U, 1U, 4U, 2U, 0U}) {
            ClickOn(*headers_[page]);
            ExpectPage(page);
        }
    });
}

TEST_F(OptionPages, BeginWithTheFirstEachTime) {
    player_.Start();
    LookAt([this] { ClickOn(dialog_.Label19); });
    LookAt([this] { ExpectPage(0); });
}

TEST_F(OptionPages, AreReachedByTheKeyboard) {
    player_.Start();
    LookAt([this] {
        PressKey(dialog_, base::kKeyTab, base::kControlKey);
        ExpectPage(1);
        EXPECT_TRUE(dialog_.Label17.HasFocus());
        PressKey(dialog_, base::kKeyTab, base::kControlKey | base::kShiftKey);
        PressKey(dialog_, base::kKeyTab, base::kControlKey | base::kShiftKey);
        ExpectPage(4);
        PressKeyIn(dialog_.Label20, base::kKeyDown);
        ExpectPage(0);
        PressKeyIn(dialog_.Label16, base::kKeyUp);
        ExpectPage(4);
        PressKeyIn(dialog_.Label20, base::kKeyHome);
        ExpectPage(0);
        PressKeyIn(dialog_.Label16, base::kKeyEnd);
        ExpectPage(4);
    });
}

TEST_F(OptionPages, KeepWhatWasChosenOnThem) {
    Put(kEverything);
    player_.Start();
    LookAt([this] {
        ClickOn(dialog_.Label18);
        ChooseLine(dialog_.List1, 0);
        ClickOn(dialog_.Label19);
        ClickOn(dialog_.Label18);
        EXPECT_EQ(dialog_.List1.ListIndex(), 0);
    });
}

char AccessKeyOf(const std::string& text) {
    const std::size_t mark = text.find('&');
    return mark == std::string::npos || mark + 1 == text.size() ? '\0' : text[mark + 1];
}

TEST_F(OptionPages, HaveEachAccessKeyOnce) {
    player_.Start();
    LookAt([this] {
        for (forms::Label* page : headers_) {
            ClickOn(*page);
            std::set<int> keys;
            for (const forms::Control* control : dialog_.Controls()) {
                const char key = AccessKeyOf(control->State().text);
                if (key == '\0' || !control->Visible()) continue;
                EXPECT_TRUE(keys.insert(std::tolower(key)).second)
                    << page->Caption() << ": " << control->State().text;
            }
        }
    });
}

TEST_F(OptionPages, HaveNoControlsThatOverlapOrLeaveThem) {
    player_.Start();
    LookAt([this] {
        for (forms::Label* page : headers_) {
            ClickOn(*page);
            std::vector<const forms::Control*> seen;
            for (const forms::Control* control : dialog_.Controls()) {
                const bool isFrame = control->State().kind == forms::ControlKind::Frame;
                if (isFrame || !control->Visible()) continue;
                const base::Rect& area = control->State().bounds;
                EXPECT_LE(area.right(), 8400) << control->Name();
                EXPECT_LE(area.bottom(), 5700) << control->Name();
                for (const forms::Control* other : seen) {
                    const base::Rect& there = other->State().bounds;
                    const bool apart = area.left >= there.right() || there.left >= area.right() ||
                                       area.top >= there.bottom() || there.top >= area.bottom();
                    EXPECT_TRUE(apart) << control->Name() << " over " << other->Name();
                }
                seen.push_back(control);
            }
        }
    });
}

TEST_F(OptionPages, CloseWithEscapeAsWithCancel) {
    Put(kEverything);
    player_.Start();
    const std::string before = player_.folder.Content("options.cfg");
    OnNextModal([this] {
        ClickOn(dialog_.Check1);
        PressKey(dialog_, base::kKeyEscape);
    });
    player_.form4.Picture10_Click();
    EXPECT_FALSE(dialog_.Loaded());
    EXPECT_EQ(player_.folder.Content("options.cfg"), before);
}

// ---- what the remote does then ----

TEST_F(Options, AcceptedDressTheRemoteAtOnce) {
    SkinFiles(player_.folder, "Beta").PutColors(std::vector<std::string>(12, "255"));
    Put(kEverything);
    player_.PutSetting(9, "Alpha");
    player_.Start();
    player_.ChangeOptions([this] {
        ClickOn(dialog_.Label18);
        ChooseLine(dialog_.List1, 1);
    });
    EXPECT_EQ(player_.Setting(9), "Beta");
    EXPECT_EQ(player_.form4.Label1.ForeColor(), 255U);
}

TEST_F(Options, WithASkinThatFailsAreAppliedAllTheSame) {
    SkinFiles(player_.folder, "Beta").PutColors({"255", "no number"});
    Put(kEverything);
    player_.PutSetting(9, "Alpha");
    player_.PutSetting(6, "0");
    player_.Start();
    player_.ChangeOptions([this] {
        ClickOn(dialog_.Check6);
        ClickOn(dialog_.Label18);
        ChooseLine(dialog_.List1, 1);
    });
    EXPECT_FALSE(dialog_.Loaded());
    EXPECT_EQ(last_error, "Record 2 of the skin's nqp_colors.cfg is not a number.");
    EXPECT_TRUE(player_.form4.Settings().move_also);
}

TEST_F(Options, PutBothWindowsAboveAllOthersAndBack) {
    Put(kEverything);
    player_.Start();
    EXPECT_FALSE(Topmost(player_.form1));
    player_.ChangeOptions([this] { ClickOn(dialog_.Check2); });
    EXPECT_TRUE(Topmost(player_.form1));
    EXPECT_TRUE(Topmost(player_.form4));
    player_.ChangeOptions([this] { ClickOn(dialog_.Check2); });
    EXPECT_FALSE(Topmost(player_.form1));
    EXPECT_FALSE(Topmost(player_.form4));
}

TEST_F(Options, AreSharedAsSoonAsTheyAreAccepted) {
    Put(kEverything);
    for (const int record : {3, 4, 5, 6, 12, 27})
        player_.PutSetting(record, "0");
    player_.Start();
    player_.ChangeOptions([this] {
        ClickOn(dialog_.Check6);
        ClickOn(dialog_.Label17);
        ClickOn(dialog_.Check3);
        ClickOn(dialog_.Check4);
        ClickOn(dialog_.Check5);
        ClickOn(dialog_.Label19);
        ClickOn(dialog_.Option1);
        ClickOn(dialog_.Check9);
        TypeInto(dialog_.Text2, "75");
    });
    const core::SharedSettings& settings = player_.form4.Settings();
    EXPECT_FALSE(settings.control_at_fullscreen);
    EXPECT_TRUE(settings.auto_start);
    EXPECT_TRUE(player_.engine.AutoStart());
    EXPECT_TRUE(settings.auto_fullscreen);
    EXPECT_TRUE(settings.move_also);
    EXPECT_TRUE(settings.insert_picture);
    EXPECT_FALSE(settings.use_directshow);
    EXPECT_EQ(settings.fragment_percentage, 75);
    EXPECT_EQ(settings.picture_path, "C:\\pictures\\logo.bmp");
    EXPECT_EQ(settings.picture_x, 250);
    EXPECT_EQ(settings.scheduled_day, 31);
}

TEST_F(Options, RegisterTheStartWithTheSystemAndTakeItBack) {
    using Calls = std::vector<std::string>;
    const std::string start =
        "RegisterStart " + base::Utf8FromPath(player_.folder.Path()) + "\\nqp.exe /START";
    player_.Start();
    player_.ChangeOptions([this] { ClickOn(dialog_.Check10); });
    player_.CancelOptions();
    player_.ChangeOptions([this] { ClickOn(dialog_.Check10); });
    EXPECT_EQ(player_.associations.calls, (Calls{start, start, "UnRegisterStart"}));
}

// ---- files ----

TEST_F(Options, AskForThePictureToInsert) {
    player_.folder.Put("logo.bmp", "picture");
    const std::string path = base::Utf8FromPath(player_.folder.Path() / "logo.bmp");
    Put(kEverything);
    player_.Start();
    player_.ChangeOptions([this, path] {
        ClickOn(dialog_.Label19);
        player_.dialogs.answer = path + ".gone";
        ClickOn(dialog_.Command4);
        EXPECT_EQ(player_.dialogs.lastRequest.title,
                  "Nuvex Quillon Player - Options - Image to insert");
        EXPECT_EQ(player_.dialogs.lastRequest.filter.name, "Bitmap Image (*.bmp)");
        EXPECT_EQ(player_.dialogs.lastRequest.filter.pattern, "*.bmp");
        player_.dialogs.answer.reset();
        ClickOn(dialog_.Command4);
        EXPECT_EQ(TextOn(dialog_.PictureName), "logo.bmp");
        player_.dialogs.answer = path;
        ClickOn(dialog_.Command4);
    });
    EXPECT_EQ(player_.Setting(13), path);
}

TEST_F(Options, AskForTheFileToPlay) {
    Put(kEverything);
    player_.Start();
    player_.ChangeOptions([this] {
        ClickOn(dialog_.Label20);
        player_.dialogs.answer.reset();
        ClickOn(dialog_.Command6);
        EXPECT_EQ(TextOn(dialog_.Text5), "C:\\clips\\a clip.avi");
        player_.dialogs.answer = "D:\\other.avi";
        ClickOn(dialog_.Command6);
        EXPECT_EQ(player_.dialogs.lastRequest.title,
                  "Nuvex Quillon Player - Options - File to play");
        EXPECT_EQ(player_.dialogs.lastRequest.filter.name, "All Media Types");
        EXPECT_EQ(player_.dialogs.lastRequest.filter.pattern, "*.*");
        EXPECT_EQ(TextOn(dialog_.Text5), "D:\\other.avi");
    });
    EXPECT_EQ(player_.Setting(20), "D:\\other.avi");
}

TEST_F(Options, OpenTheFileTypesOverTheVideoWindow) {
    player_.Start();
    LookAt([this] {
        OnNextModal([this] {
            const base::Rect& video = player_.form1.Bounds();
            const base::Rect& types = player_.form8.Bounds();
            EXPECT_TRUE(OnScreen(player_.form8));
            EXPECT_NEAR(types.left + types.width / 2, video.left + video.width / 2, 30);
            EXPECT_NEAR(types.top + types.height / 2, video.top + video.height / 2, 30);
            PressKey(player_.form8, base::kKeyEscape);
        });
        ClickOn(dialog_.Command3);
        EXPECT_FALSE(player_.form8.Loaded());
        EXPECT_TRUE(OnScreen(dialog_));
    });
}

// ---- schedule ----

TEST_F(Options, SayTheScheduleInWords) {
    Put(kEverything);
    player_.Start();
    LookAt([this] {
        EXPECT_EQ(TextOn(dialog_.Summary), "Plays a clip.avi on 31 December at 7:05, every year.");
        EXPECT_EQ(TextOn(dialog_.Label20), "&Schedule");
        ClickOn(dialog_.Label20);
        TypeInto(dialog_.Text5, "C:\\this & that.avi");
        EXPECT_EQ(TextOn(dialog_.Summary),
                  "Plays this && that.avi on 31 December at 7:05, every year.");
        ClickOn(dialog_.Command7);
        EXPECT_EQ(TextOn(dialog_.Summary), "Nothing is scheduled.");
        EXPECT_EQ(dialog_.Combo1.ListIndex(), -1);
        EXPECT_EQ(TextOn(dialog_.Text5), "");
    });
}

TEST_F(Options, ShowOnEveryPageThatAScheduleIsHalfSet) {
    player_.Start();
    LookAt([this] {
        EXPECT_EQ(TextOn(dialog_.Label20), "&Schedule");
        ClickOn(dialog_.Label20);
        ChooseItem(dialog_.Combo1, 2);
        EXPECT_EQ(TextOn(dialog_.Summary), "Nothing will play: choose a day and a file.");
        EXPECT_EQ(TextOn(dialog_.Label20), "&Schedule  (!)");
        ClickOn(dialog_.Label16);
        EXPECT_TRUE(ShownOn(dialog_.Label20));
        ClickOn(dialog_.Label20);
        ChooseItem(dialog_.Combo2, 4);
        TypeInto(dialog_.Text5, "C:\\a.avi");
        EXPECT_EQ(TextOn(dialog_.Label20), "&Schedule");
        TypeInto(dialog_.Text3, "24");
        EXPECT_EQ(TextOn(dialog_.Label20), "&Schedule  (!)");
    });
}

// ---- trouble ----

TEST_F(Options, ThatCannotBeWrittenStayOpen) {
    Put(kEverything);
    player_.Start();
    OnNextModal([this] {
        std::filesystem::remove(player_.folder.Path() / "options.cfg");
        std::filesystem::create_directory(player_.folder.Path() / "options.cfg");
        ClickOn(dialog_.Command2);
        EXPECT_TRUE(OnScreen(dialog_));
        EXPECT_EQ(last_error, "The options could not be written.");
        ClickOn(dialog_.Command1);
    });
    player_.form4.Picture10_Click();
}

TEST_F(Options, WithATextThatIsTooLongStayOpenAndUnwritten) {
    Put(kEverything);
    player_.Start();
    const std::string before = player_.folder.Content("options.cfg");
    OnNextModal([this] {
        ClickOn(dialog_.Label20);
        TypeInto(dialog_.Text5, std::string(999, 'x'));
        ClickOn(dialog_.Command2);
        EXPECT_TRUE(OnScreen(dialog_));
        EXPECT_EQ(last_error, "A text of the options is too long to be kept.");
        TypeInto(dialog_.Text5, std::string(998, 'x'));
        ClickOn(dialog_.Command2);
    });
    player_.form4.Picture10_Click();
    EXPECT_FALSE(dialog_.Loaded());
    EXPECT_EQ(player_.Setting(20), std::string(998, 'x'));
}

TEST_F(Options, CancelledOverAFileThatWasNeverWrittenChangeNothing) {
    player_.Start();
    player_.form1.SetTopmost(true);
    player_.CancelOptions();
    EXPECT_FALSE(player_.form4.Settings().control_at_fullscreen);
    EXPECT_EQ(player_.form4.Settings().fragment_percentage, 0);
    EXPECT_TRUE(Topmost(player_.form1));
    EXPECT_TRUE(player_.associations.calls.empty());
}

TEST_F(Options, LeaveTheFullScreen) {
    player_.Start();
    player_.engine.SetDisplaySize(core::kFullScreenDisplay);
    LookAt([this] { EXPECT_EQ(player_.engine.DisplaySize(), core::kWindowDisplay); });
}

TEST_F(Options, AreCancelledByTheSystem) {
    Put(kEverything);
    player_.Start();
    const std::string before = player_.folder.Content("options.cfg");
    OnNextModal([this] {
        ClickOn(dialog_.Check1);
        CloseBySystem(dialog_);
    });
    player_.form4.Picture10_Click();
    EXPECT_FALSE(dialog_.Loaded());
    EXPECT_EQ(player_.folder.Content("options.cfg"), before);
}

TEST_F(Options, GoWithTheProgramWhileTheyAskForAFile) {
    for (forms::CommandButton* button : {&dialog_.Command4, &dialog_.Command6}) {
        player_.Start();
        player_.dialogs.answer = base::Utf8FromPath(player_.folder.Path() / "startup.cfg");
        player_.dialogs.whenAsked = [this] { CloseBySystem(player_.form4); };
        OnNextModal([this, button] {
            ClickOn(button == &dialog_.Command4 ? dialog_.Label19 : dialog_.Label20);
            ClickOn(*button);
        });
        player_.form4.Picture10_Click();
        RunMessages();
        EXPECT_FALSE(dialog_.Loaded());
        EXPECT_FALSE(player_.form1.Loaded());
    }
}

TEST_F(Options, ShowAPictureNamedWithAnAmpersand) {
    Put(kEverything);
    player_.PutSetting(13, "C:\\tom&dick.bmp");
    player_.Start();
    LookAt([this] { EXPECT_EQ(TextOn(dialog_.PictureName), "tom&&dick.bmp"); });
}

TEST_F(Options, GoWithTheProgram) {
    Put(kEverything);
    player_.Start();
    const std::string before = player_.Setting(20);
    OnNextModal([this] {
        OnNextModal([this] { player_.form4.Picture1_Click(); });
        ClickOn(dialog_.Command3);
        EXPECT_FALSE(dialog_.Loaded());
    });
    player_.form4.Picture10_Click();
    EXPECT_FALSE(player_.form4.Loaded());
    EXPECT_FALSE(player_.form1.Loaded());
    EXPECT_FALSE(player_.form8.Loaded());
    EXPECT_EQ(player_.Setting(20), before);
}

TEST_F(Options, OpenOverAFileWithBrokenLengths) {
    for (const char filling : {'\xFF', '\x7F', '\x01'}) {
        player_.folder.Put("options.cfg", std::string(28'500, filling));
        player_.Start();
        player_.ChangeOptions();
        EXPECT_EQ(player_.Setting(16), "0");
        EXPECT_EQ(player_.Setting(1), "0");
        player_.form4.Picture1_Click();
        RunMessages();
    }
}

}  // namespace
}  // namespace nqp::test
