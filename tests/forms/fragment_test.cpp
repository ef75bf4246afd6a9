// The fields and buttons of the remote that mark a fragment, and the jobs that come out of the
// wizard.
#include <gtest/gtest.h>

#include "core/program_folder.h"
#include "forms/run_time_error.h"
#include "player.h"

namespace nqp::test {
namespace {

using core::JobMode;
using core::RunMode;
using Calls = std::vector<std::string>;

const Calls kWizardComesBack = {"init", "hide_status"};
constexpr double kTwoHours = 7200;

std::string last_error;
std::function<void()> when_told;

// A save dialog's buffer.
std::string Padded(const std::string& path) {
    std::string buffer = path;
    buffer.resize(core::kSaveBufferBytes, '\0');
    return buffer;
}

class Fragment : public testing::Test {
protected:
    Fragment() {
        last_error.clear();
        forms::SetRunTimeErrorHandler([](const std::string& sentence, forms::Origin origin) {
            if (origin != forms::Origin::User) return;
            last_error = sentence;
            if (when_told) when_told();
        });
        player_.PutSetting(core::kVideoForWindows, "1");
        player_.PutSetting(core::kFragmentPercentage, "40");
    }
    ~Fragment() override {
        forms::SetRunTimeErrorHandler(nullptr);
        when_told = nullptr;
    }

    void StartWithClip() {
        player_.Start();
        player_.folder.Put("sea.avi", "a clip");
        clip_ = base::Utf8FromPath(player_.folder.Path() / "sea.avi");
        player_.dialogs.answer = clip_;
        player_.engine.duration = kTwoHours;
        form4_.Picture11_Click();
    }
    void StartWithWizard() {
        StartWithClip();
        player_.engine.position = 5;
        SetBegin("00", "00", "02");
        ClickOn(form4_.Command2);
        player_.wizards.calls.clear();
        player_.wizards.questions = 0;
    }
    // The monitor's next tick.
    void Tick() { form4_.Timer1.Timer(); }

    void SetBegin(const char* hours, const char* minutes, const char* seconds) {
        form4_.Text1.SetText(hours);
        form4_.Text2.SetText(minutes);
        form4_.Text3.SetText(seconds);
    }
    void SetEnd(const char* hours, const char* minutes, const char* seconds) {
        form4_.Text5.SetText(hours);
        form4_.Text4.SetText(minutes);
        form4_.Text6.SetText(seconds);
    }
    std::string Begin() const {
        return TextOn(form4_.Text1) + ":" + TextOn(form4_.Text2) + ":" + TextOn(form4_.Text3);
    }
    std::string End() const {
        return TextOn(form4_.Text5) + ":" + TextOn(form4_.Text4) + ":" + TextOn(form4_.Text6);
    }
    std::string InFolder(const std::string& name) const {
        return base::Utf8FromPath(player_.folder.Path()) + "\\" + name;
    }
    // Where a job's result goes. The backslash of a file's own name is one of its letters here.
    std::string Target(const std::string& name) const {
        return base::Utf8FromPath(player_.folder.Path() / name);
    }
    bool WindowsAreShown() const { return OnScreen(form4_) && OnScreen(player_.form1); }
    const core::FragmentJob& LastJob() const { return player_.companion.jobs.back(); }

    Player player_;
    remote::Form4& form4_ = player_.form4;
    std::string clip_;
};

// ---- fields ----

TEST_F(Fragment, FieldIsFilledUpWhenItIsLeft) {
    StartWithClip();
    TypeInto(form4_.Text2, "7");
    LeaveField(form4_.Text2);
    EXPECT_EQ(Begin(), "00:07:00");
    EXPECT_EQ(End(), "00:07:00");
}

TEST_F(Fragment, EachFieldBelongsToItsPartOfItsBound) {
    StartWithClip();
    forms::TextBox* const fields[] = {&form4_.Text5, &form4_.Text4, &form4_.Text6,
                                      &form4_.Text1, &form4_.Text2, &form4_.Text3};
    for (forms::TextBox* field : fields) {
        TypeInto(*field, "1");
        LeaveField(*field);
        EXPECT_EQ(TextOn(*field), "01");
    }
    EXPECT_EQ(form4_.glob_PosBegin(), 3661);
    EXPECT_EQ(form4_.glob_PosEnd(), 3661);
    TypeInto(form4_.Text5, "25");
    LeaveField(form4_.Text5);
    EXPECT_EQ(End(), "01:01:01") << "set back, and moved to the begin";
}

TEST_F(Fragment, FieldsDoNotReachBehindTheClip) {
    StartWithClip();
    player_.engine.duration = 90.4;
    SetBegin("00", "01", "40");
    LeaveField(form4_.Text2);
    EXPECT_EQ(Begin(), "00:01:00");
    SetBegin("00", "02", "10");
    LeaveField(form4_.Text2);
    EXPECT_EQ(Begin(), "00:00:00");
}

TEST_F(Fragment, WithoutAClipEveryBoundIsZero) {
    player_.Start();
    TypeInto(form4_.Text6, "1");
    LeaveField(form4_.Text6);
    EXPECT_EQ(End(), "00:00:00");
}

TEST_F(Fragment, FieldThatHoldsNoNumberIsLeftAlone) {
    StartWithClip();
    SetBegin("00", "ab", "00");
    LeaveField(form4_.Text2);
    EXPECT_EQ(Begin(), "00:ab:00");
    EXPECT_EQ(last_error, "") << "nobody is stopped from leaving a field";
}

TEST_F(Fragment, NewFileStartsWithoutAFragment) {
    StartWithClip();
    SetBegin("00", "01", "00");
    SetEnd("00", "02", "00");
    form4_.Picture11_Click();
    EXPECT_EQ(Begin() + End(), "00:00:0000:00:00");
}

// ---- markers ----

TEST_F(Fragment, BeginIsMarkedAtThePosition) {
    StartWithClip();
    SetEnd("00", "10", "00");
    player_.engine.position = 59.5;
    ClickOn(form4_.Command1);
    EXPECT_EQ(Begin(), "00:01:00");
    EXPECT_EQ(End(), "00:10:00");
    player_.engine.position = 44.5;
    ClickOn(form4_.Command1);
    EXPECT_EQ(Begin(), "00:00:44") << "half to even";
}

TEST_F(Fragment, EndFollowsALaterBegin) {
    StartWithClip();
    SetEnd("00", "00", "30");
    player_.engine.position = 45;
    ClickOn(form4_.Command1);
    EXPECT_EQ(End(), "00:00:45");
}

TEST_F(Fragment, WithoutAFileTheBeginStays) {
    player_.Start();
    SetBegin("00", "00", "10");
    SetEnd("00", "00", "30");
    ClickOn(form4_.Command1);
    EXPECT_EQ(Begin() + " " + End(), "00:00:10 00:00:30");
}

TEST_F(Fragment, UnreadableFieldIsToldToWhoPressesTheButton) {
    StartWithClip();
    SetEnd("00", "xx", "30");
    ClickOn(form4_.Command1);
    EXPECT_NE(last_error.find("xx"), std::string::npos) << last_error;
    EXPECT_EQ(Begin(), "00:00:00");
}

// ---- opening the wizard ----

TEST_F(Fragment, CutMarksTheEndPausesAndOpensTheWizard) {
    StartWithClip();
    player_.engine.position = 2;
    ClickOn(form4_.Command1);
    player_.engine.position = 5;
    std::string marker;
    player_.wizards.whenCreated = [&] { marker = player_.folder.Content("startup.cfg"); };
    ClickOn(form4_.Command2);
    EXPECT_EQ(End(), "00:00:05");
    EXPECT_EQ(player_.engine.State(), core::PlayState::Paused);
    EXPECT_TRUE(form4_.Flags().bPause);
    EXPECT_EQ(marker, "1");
    EXPECT_EQ(player_.wizards.calls,
              (Calls{"init", "update_numbers 00:00:02 - | 00:00:05", "set_filepath " + clip_}));
    EXPECT_TRUE(form4_.wizard_active());
    EXPECT_EQ(player_.folder.Content("startup.cfg"), "0") << "no other start may be taken for it";
}

TEST_F(Fragment, CutAtAnEarlierPositionMovesTheBegin) {
    StartWithClip();
    SetBegin("00", "01", "00");
    player_.engine.position = 45;
    ClickOn(form4_.Command2);
    EXPECT_EQ(Begin() + " " + End(), "00:00:45 00:00:45");
}

TEST_F(Fragment, CutLeavesAPausedClipPaused) {
    StartWithClip();
    form4_.Picture9_Click();
    ClickOn(form4_.Command2);
    EXPECT_EQ(player_.engine.State(), core::PlayState::Paused);
    EXPECT_TRUE(form4_.Flags().bPause);
}

TEST_F(Fragment, CutTakesTheFieldsAsTheyStandWithoutAFile) {
    player_.Start();
    SetBegin("00", "01", "30");
    SetEnd("00", "02", "00");
    ClickOn(form4_.Command2);
    EXPECT_EQ(player_.wizards.calls[1], "update_numbers 00:01:30 - | 00:02:00");
    EXPECT_EQ(player_.wizards.calls[2], "set_filepath ");
}

TEST_F(Fragment, CutLeavesFullScreen) {
    StartWithClip();
    player_.engine.SetDisplaySize(core::kFullScreenDisplay);
    ClickOn(form4_.Command2);
    EXPECT_EQ(player_.engine.DisplaySize(), core::kWindowDisplay);
}

TEST_F(Fragment, WizardThatCannotBeStartedIsTold) {
    StartWithClip();
    player_.wizards.refused = true;
    ClickOn(form4_.Command2);
    EXPECT_EQ(last_error, "The Quillon Wizard could not be started.");
    EXPECT_FALSE(form4_.wizard_active());
    EXPECT_EQ(player_.folder.Content("startup.cfg"), "0");
}

TEST_F(Fragment, CutForgetsAJobThatAnEarlierPlayerLeft) {
    StartWithClip();
    player_.wizards.usedByAnother = true;
    player_.wizards.AskForVideo(Padded("C:\\a\\b.avi"));
    ClickOn(form4_.Command2);
    EXPECT_EQ(player_.wizards.calls.back(), "hide_status");
    Tick();
    EXPECT_TRUE(player_.companion.jobs.empty());
}

TEST_F(Fragment, WizardThatAnotherPlayerHasTakenIsLeftToIt) {
    StartWithWizard();
    player_.wizards.ours = false;
    player_.wizards.AskForVideo(Padded("C:\\a\\b.avi"));
    Tick();
    EXPECT_TRUE(player_.companion.jobs.empty());
    EXPECT_EQ(player_.wizards.questions, 0);
    EXPECT_FALSE(form4_.wizard_active());
    form4_.Picture1_Click();
    EXPECT_EQ(player_.wizards.calls, Calls{}) << "its window stays";
}

TEST_F(Fragment, WizardShowsWhatHasChangedSince) {
    StartWithWizard();
    SetEnd("00", "00", "09");
    Tick();
    EXPECT_EQ(player_.wizards.calls,
              (Calls{"update_numbers 00:00:02 - | 00:00:09", "set_filepath " + clip_}));
    Tick();
    EXPECT_EQ(player_.wizards.calls.size(), 2U);
}

TEST_F(Fragment, ProgramClosedWhileTheWizardStartsLeavesNoWizard) {
    StartWithClip();
    player_.wizards.whenCreated = [this] { form4_.Picture1_Click(); };
    ClickOn(form4_.Command2);
    RunMessages();
    EXPECT_EQ(player_.wizards.calls, (Calls{"hide_status", "CloseWindow"}));
    EXPECT_EQ(player_.wizards.alive, 0);
}

TEST_F(Fragment, ProgramClosedWhileItAsksForAJobDoesNone) {
    StartWithWizard();
    player_.wizards.AskForAudio(Padded(Target("song.wav")));
    player_.wizards.whenAsked = [this] { form4_.Picture1_Click(); };
    Tick();
    RunMessages();
    EXPECT_TRUE(player_.companion.jobs.empty());
    EXPECT_EQ(player_.wizards.alive, 0);
    EXPECT_FALSE(form4_.Loaded());
}

TEST_F(Fragment, SecondCutKeepsOneWizard) {
    StartWithWizard();
    ClickOn(form4_.Command2);
    EXPECT_EQ(player_.wizards.alive, 1);
}

// ---- asking the wizard ----

TEST_F(Fragment, NobodyIsAskedBeforeTheWizardWasOpened) {
    StartWithClip();
    Tick();
    EXPECT_EQ(player_.wizards.questions, 0);
}

TEST_F(Fragment, EachTickAsksForTheThreeJobs) {
    StartWithWizard();
    Tick();
    EXPECT_EQ(player_.wizards.questions, 3);
    EXPECT_TRUE(player_.companion.jobs.empty());
    EXPECT_TRUE(WindowsAreShown());
}

TEST_F(Fragment, WizardWhoseProcessEndedIsForgotten) {
    StartWithWizard();
    player_.wizards.gone = true;
    Tick();
    EXPECT_FALSE(form4_.wizard_active());
    EXPECT_EQ(player_.wizards.alive, 0);
    EXPECT_EQ(last_error, "");
}

// ---- jobs that are waited for ----

TEST_F(Fragment, VideoJobIsToldToTheCompanion) {
    StartWithWizard();
    player_.wizards.AskForVideo(Padded("C:\\a\\b.avi"));
    Tick();
    ASSERT_EQ(player_.companion.jobs.size(), 1U);
    EXPECT_EQ(LastJob().mode, JobMode::Video);
    EXPECT_EQ(LastJob().percentage, 40);
    EXPECT_EQ(LastJob().statusFile, InFolder("status.txt"));
    EXPECT_EQ(LastJob().cancelFile, InFolder("flag.txt"));
    EXPECT_EQ(LastJob().outputFile, Padded("C:\\a\\b.avi"));
    EXPECT_EQ(LastJob().sourceFile, clip_);
    EXPECT_EQ(LastJob().begin, 2.0);
    EXPECT_EQ(LastJob().end, 5.0);
    EXPECT_EQ(player_.companion.modes.back(), RunMode::Waiting);
    Tick();
    EXPECT_EQ(player_.companion.jobs.size(), 1U) << "a request is served once";
}

TEST_F(Fragment, PictureGoesAlongWhenItIsWanted) {
    player_.PutSetting(core::kInsertPicture, "1");
    player_.PutSetting(core::kPicturePath, "C:\\logo.bmp");
    player_.PutSetting(core::kPictureX, "250");
    player_.PutSetting(core::kPictureY, "1000");
    StartWithWizard();
    player_.wizards.AskForVideo(Padded("C:\\a\\b.avi"));
    Tick();
    EXPECT_EQ(LastJob().mode, JobMode::VideoWithPicture);
    EXPECT_EQ(LastJob().picture.x, 250);
    EXPECT_EQ(LastJob().picture.y, 1000);
    EXPECT_EQ(LastJob().picture.path, "C:\\logo.bmp");
}

TEST_F(Fragment, WindowsAreHiddenWhileTheCompanionWorks) {
    StartWithWizard();
    player_.companion.returned = false;
    player_.wizards.AskForVideo(Padded("C:\\a\\b.avi"));
    bool hidden = false;
    OnNextModal([&] {
        hidden = !OnScreen(form4_) && !OnScreen(player_.form1);
        player_.companion.Finish();
    });
    Tick();
    EXPECT_TRUE(hidden);
    EXPECT_TRUE(WindowsAreShown());
    EXPECT_EQ(player_.wizards.calls, kWizardComesBack);
    EXPECT_EQ(player_.companion.killed, 1);
    EXPECT_EQ(player_.companion.alive, 0);
    EXPECT_EQ(last_error, "");
}

TEST_F(Fragment, FlagFileIsGoneAfterEveryJob) {
    StartWithWizard();
    const auto ask = {&ScriptedWizards::AskForVideo, &ScriptedWizards::AskForAudio,
                      &ScriptedWizards::AskForImage};
    for (const auto job : ask) {
        player_.companion.whenBegun = [this] { player_.folder.Put("flag.txt", ""); };
        (player_.wizards.*job)(Padded(Target("a.avi")));
        Tick();
        EXPECT_FALSE(player_.folder.Has("flag.txt"));
        EXPECT_EQ(last_error, "");
    }
}

TEST_F(Fragment, CancelAfterTheEndDoesNotReachTheNextJob) {
    StartWithWizard();
    player_.wizards.whenIdle = [this] { player_.folder.Put("flag.txt", ""); };
    player_.wizards.AskForVideo(Padded("C:\\a\\b.avi"));
    Tick();
    EXPECT_FALSE(player_.folder.Has("flag.txt"));
}

TEST_F(Fragment, ErrorIsToldWhenTheNextJobCanBeServed) {
    StartWithWizard();
    player_.companion.Fail("Framewright.exe could not do the job.");
    int served = 0;
    when_told = [&] {
        const int before = player_.wizards.questions;
        Tick();
        served = player_.wizards.questions - before;
    };
    player_.wizards.AskForVideo(Padded("C:\\a\\b.avi"));
    Tick();
    EXPECT_EQ(served, 3);
}

TEST_F(Fragment, TicksDoNotAskWhileAJobIsUnderWay) {
    StartWithWizard();
    player_.companion.returned = false;
    player_.wizards.AskForVideo(Padded("C:\\a\\b.avi"));
    int asked = 0;
    OnNextModal([&] {
        const int before = player_.wizards.questions;
        Tick();
        asked = player_.wizards.questions - before;
        player_.companion.Finish();
    });
    Tick();
    EXPECT_EQ(asked, 0);
}

TEST_F(Fragment, IconAnswersWhileAJobIsUnderWay) {
    StartWithWizard();
    player_.companion.returned = false;
    player_.wizards.AskForVideo(Padded("C:\\a\\b.avi"));
    bool restored = false;
    OnNextModal([&] {
        constexpr int kLeftButtonUp = 514;
        ReportFromTrayIcon(form4_, kLeftButtonUp);
        restored = WindowsAreShown();
        player_.companion.Finish();
    });
    Tick();
    EXPECT_TRUE(restored);
    EXPECT_TRUE(WindowsAreShown());
}

TEST_F(Fragment, ProgramClosedDuringAJobEndsTheCompanion) {
    StartWithWizard();
    player_.companion.returned = false;
    player_.companion.endsWhenKilled = false;
    player_.wizards.AskForVideo(Padded("C:\\a\\b.avi"));
    player_.companion.whenBegun = [this] { player_.folder.Put("flag.txt", ""); };
    OnNextModal([this] { form4_.Picture1_Click(); });
    Tick();
    RunMessages();
    EXPECT_FALSE(form4_.Loaded());
    EXPECT_GE(player_.companion.killed, 1);
    EXPECT_EQ(player_.companion.alive, 0);
    EXPECT_EQ(player_.wizards.calls, (Calls{"hide_status", "CloseWindow"}))
        << "it does not come back";
    EXPECT_EQ(player_.wizards.alive, 0);
    EXPECT_FALSE(player_.folder.Has("flag.txt"));
}

TEST_F(Fragment, FailureIsToldWhenTheWindowsAreBack) {
    StartWithWizard();
    player_.companion.Fail("Framewright.exe stopped before the job was done.");
    player_.companion.whenBegun = [this] { EXPECT_FALSE(WindowsAreShown()); };
    player_.wizards.AskForVideo(Padded("C:\\a\\b.avi"));
    Tick();
    EXPECT_EQ(last_error, "Framewright.exe stopped before the job was done.");
    EXPECT_TRUE(WindowsAreShown());
    EXPECT_EQ(player_.wizards.calls, kWizardComesBack);
    EXPECT_TRUE(form4_.wizard_active());
}

TEST_F(Fragment, WizardThatEndsDuringAJobStillGivesTheWindowsBack) {
    StartWithWizard();
    player_.companion.whenBegun = [this] { player_.wizards.gone = true; };
    player_.wizards.AskForVideo(Padded("C:\\a\\b.avi"));
    Tick();
    EXPECT_TRUE(WindowsAreShown());
    EXPECT_FALSE(form4_.wizard_active());
    EXPECT_EQ(last_error, "");
}

TEST_F(Fragment, CompanionThatHangsIsEndedSomeTimeAfterTheCancel) {
    StartWithWizard();
    player_.companion.returned = false;
    player_.wizards.AskForVideo(Padded("C:\\a\\b.avi"));
    player_.companion.whenBegun = [this] { player_.folder.Put("flag.txt", ""); };
    player_.clock.passesAtEachLook = fragments::kCancelPatience;
    OnNextModal([] {});
    Tick();
    EXPECT_TRUE(WindowsAreShown());
    EXPECT_GE(player_.companion.killed, 1);
    EXPECT_FALSE(player_.folder.Has("flag.txt"));
    EXPECT_EQ(player_.wizards.calls, kWizardComesBack);
    EXPECT_EQ(last_error, "") << "the person wanted it";
}

// ---- sound ----

TEST_F(Fragment, WaveGoesThroughATemporaryClip) {
    StartWithWizard();
    player_.folder.Put("song!.avi", "sound");
    player_.wizards.AskForAudio(Padded(Target("song.wav")));
    Tick();
    EXPECT_EQ(LastJob().mode, JobMode::Audio);
    EXPECT_EQ(LastJob().outputFile, Target("song!.avi"));
    ASSERT_EQ(player_.audio.requests.size(), 1U);
    EXPECT_EQ(player_.audio.requests[0].source, Target("song!.avi"));
    EXPECT_EQ(player_.audio.requests[0].target, Target("song.wav"));
    EXPECT_FALSE(player_.folder.Has("song!.avi"));
    EXPECT_EQ(player_.boxes.shown, Calls{});
    EXPECT_EQ(player_.wizards.calls, kWizardComesBack);
}

TEST_F(Fragment, WaveThatCannotBeWrittenIsToldWithTheClipsName) {
    StartWithWizard();
    player_.folder.Put("song!.avi", "sound");
    player_.audio.act = [](const auto&) { return core::AudioTrackResult::Failed; };
    player_.wizards.AskForAudio(Padded(Target("song.wav")));
    Tick();
    EXPECT_EQ(player_.boxes.shown,
              Calls{"There was an error working with the file:\r\n" + Target("song!.avi")});
    EXPECT_FALSE(player_.folder.Has("song!.avi"));
}

TEST_F(Fragment, WaveThatIsNotWantedAfterAllIsNoError) {
    StartWithWizard();
    for (const auto result :
         {core::AudioTrackResult::NotConfirmed, core::AudioTrackResult::Aborted}) {
        player_.folder.Put("song!.avi", "sound");
        player_.audio.act = [result](const auto&) { return result; };
        player_.wizards.AskForAudio(Padded(Target("song.wav")));
        Tick();
        EXPECT_EQ(player_.boxes.shown, Calls{});
        EXPECT_FALSE(player_.folder.Has("song!.avi"));
    }
}

TEST_F(Fragment, ProgressOfTheCopyGoesToTheWizard) {
    StartWithWizard();
    std::vector<bool> stops;
    player_.audio.act = [&](const core::AudioTrackWriter::Progress& progress) {
        stops.push_back(progress(42));
        player_.folder.Put("flag.txt", "");
        stops.push_back(progress(43));
        return core::AudioTrackResult::Aborted;
    };
    player_.wizards.AskForAudio(Padded(Target("song.wav")));
    Tick();
    EXPECT_EQ(stops, (std::vector<bool>{false, true}));
    EXPECT_EQ(player_.wizards.calls,
              (Calls{"set_form7_status 42 % copied", "set_form7_status 43 % copied", "init",
                     "hide_status"}));
    EXPECT_FALSE(player_.folder.Has("flag.txt"));
}

TEST_F(Fragment, CopyGoesOnWhenTheWizardHasEnded) {
    StartWithWizard();
    bool stops = true;
    player_.audio.act = [&](const core::AudioTrackWriter::Progress& progress) {
        player_.wizards.gone = true;
        stops = progress(42);
        return core::AudioTrackResult::Saved;
    };
    player_.wizards.AskForAudio(Padded(Target("song.wav")));
    Tick();
    EXPECT_FALSE(stops);
    EXPECT_TRUE(WindowsAreShown());
}

TEST_F(Fragment, Mp3IsTheTemporaryClipUnderItsOwnName) {
    StartWithWizard();
    player_.folder.Put("song!.avi", "sound");
    player_.wizards.AskForAudio(Padded(Target("song.mp3")));
    Tick();
    EXPECT_EQ(player_.folder.Content("song.mp3"), "sound");
    EXPECT_FALSE(player_.folder.Has("song!.avi"));
    EXPECT_TRUE(player_.audio.requests.empty());
}

TEST_F(Fragment, Mp3DoesNotTakeTheNameOfAnotherFile) {
    StartWithWizard();
    player_.folder.Put("song.mp3", "of the user");
    player_.wizards.AskForAudio(Padded(Target("song.mp3")));
    Tick();
    EXPECT_EQ(player_.folder.Content("song.mp3"), "of the user");
    EXPECT_TRUE(player_.companion.jobs.empty()) << "told before the work, not after it";
    EXPECT_NE(last_error.find("already a file"), std::string::npos) << last_error;
}

TEST_F(Fragment, Mp3WhoseNameWasTakenMeanwhileStaysInTheClip) {
    StartWithWizard();
    player_.companion.whenBegun = [this] {
        player_.folder.Put("song!.avi", "sound");
        player_.folder.Put("song.mp3", "of the user");
    };
    player_.wizards.AskForAudio(Padded(Target("song.mp3")));
    Tick();
    EXPECT_EQ(player_.folder.Content("song.mp3"), "of the user");
    EXPECT_EQ(player_.folder.Content("song!.avi"), "sound");
    EXPECT_NE(last_error.find("song!.avi"), std::string::npos) << last_error;
}

TEST_F(Fragment, ProgramClosedDuringTheCopyStopsIt) {
    StartWithWizard();
    bool stops = false;
    player_.audio.act = [&](const core::AudioTrackWriter::Progress& progress) {
        form4_.Picture1_Click();
        stops = progress(42);
        return core::AudioTrackResult::Aborted;
    };
    player_.wizards.AskForAudio(Padded(Target("song.wav")));
    Tick();
    RunMessages();
    EXPECT_TRUE(stops);
    EXPECT_EQ(player_.boxes.shown, Calls{});
}

TEST_F(Fragment, OtherEndingIsToldAndTheClipStays) {
    StartWithWizard();
    player_.folder.Put("song!.avi", "sound");
    player_.wizards.AskForAudio(Padded(Target("song.ogg")));
    Tick();
    EXPECT_EQ(player_.boxes.shown, Calls{"Invalid extension! Use *.wav or *.mp3"});
    EXPECT_TRUE(player_.folder.Has("song!.avi"));
}

TEST_F(Fragment, TooShortTargetIsAnErrorThatStartsNoJob) {
    StartWithWizard();
    player_.wizards.AskForAudio(Padded("wav"));
    Tick();
    EXPECT_TRUE(player_.companion.jobs.empty());
    EXPECT_NE(last_error, "");
    EXPECT_TRUE(WindowsAreShown());
    EXPECT_EQ(player_.wizards.calls, kWizardComesBack);
}

TEST_F(Fragment, CancelledSoundLeavesNothing) {
    StartWithWizard();
    for (const char* name : {"song.wav", "song.mp3", "song.ogg"}) {
        player_.folder.Put("song!.avi", "half of it");
        player_.companion.whenBegun = [this] { player_.folder.Put("flag.txt", ""); };
        player_.wizards.AskForAudio(Padded(Target(name)));
        Tick();
        EXPECT_FALSE(player_.folder.Has("song!.avi")) << name;
        EXPECT_FALSE(player_.folder.Has(name)) << name;
    }
    EXPECT_TRUE(player_.audio.requests.empty()) << "no dialog for what was cancelled";
    EXPECT_EQ(player_.boxes.shown, Calls{});
}

TEST_F(Fragment, CompanionThatDiedLeavesTheClipAlone) {
    StartWithWizard();
    player_.folder.Put("song!.avi", "perhaps of the user");
    player_.companion.Fail("Framewright.exe stopped before the job was done.");
    player_.wizards.AskForAudio(Padded(Target("song.wav")));
    Tick();
    EXPECT_TRUE(player_.folder.Has("song!.avi"));
    EXPECT_TRUE(player_.audio.requests.empty());
    EXPECT_NE(last_error, "");
}

// ---- image ----

TEST_F(Fragment, ImageJobTakesThePresentFrame) {
    StartWithWizard();
    player_.wizards.AskForImage(Padded("C:\\a\\still.bmp"));
    Tick();
    EXPECT_EQ(LastJob().mode, JobMode::Image);
    EXPECT_EQ(LastJob().outputFile, Padded("C:\\a\\still.bmp"));
    EXPECT_EQ(player_.wizards.calls, kWizardComesBack);
}

TEST_F(Fragment, StillThatNeverComesIsGivenUp) {
    StartWithWizard();
    player_.companion.returned = false;
    player_.clock.passesAtEachLook = fragments::kImagePatience;
    player_.wizards.AskForImage(Padded("C:\\a\\still.bmp"));
    Tick();
    EXPECT_GE(player_.companion.killed, 1);
    EXPECT_EQ(last_error, "Framewright.exe did not come to the end of its job.");
    EXPECT_TRUE(WindowsAreShown());
}

// ---- jobs beside the player ----

TEST_F(Fragment, JobBesideThePlayerGivesTheWindowsBackAtOnce) {
    player_.PutSetting(core::kVideoForWindows, "0");
    StartWithWizard();
    player_.wizards.AskForVideo(Padded("C:\\a\\b.avi"));
    Tick();
    EXPECT_EQ(player_.companion.modes.back(), RunMode::Beside);
    EXPECT_TRUE(form4_.job_nowait());
    EXPECT_EQ(player_.companion.killed, 0);
    EXPECT_EQ(player_.companion.alive, 1);
    EXPECT_TRUE(WindowsAreShown());
    EXPECT_EQ(player_.wizards.calls, kWizardComesBack);
}

TEST_F(Fragment, JobsBesideThePlayerEndWithIt) {
    player_.PutSetting(core::kVideoForWindows, "0");
    StartWithWizard();
    for (int job = 0; job < 2; ++job) {
        player_.wizards.AskForVideo(Padded("C:\\a\\b.avi"));
        Tick();
    }
    form4_.Picture1_Click();
    RunMessages();
    EXPECT_EQ(player_.companion.killed, 2);
    EXPECT_EQ(player_.companion.alive, 0);
    EXPECT_EQ(player_.wizards.calls.back(), "CloseWindow");
}

TEST_F(Fragment, JobBesideThePlayerThatHasEndedIsForgotten) {
    player_.PutSetting(core::kVideoForWindows, "0");
    StartWithWizard();
    player_.wizards.AskForVideo(Padded("C:\\a\\b.avi"));
    Tick();
    Tick();
    EXPECT_EQ(player_.companion.alive, 1);
    player_.companion.processEnded = true;
    Tick();
    EXPECT_EQ(player_.companion.alive, 0);
    EXPECT_FALSE(form4_.job_nowait());
}

TEST_F(Fragment, JobBesideThePlayerThatIsCancelledIsEnded) {
    player_.PutSetting(core::kVideoForWindows, "0");
    StartWithWizard();
    player_.companion.whenBegun = [this] { player_.folder.Put("flag.txt", ""); };
    player_.wizards.AskForVideo(Padded("C:\\a\\b.avi"));
    Tick();
    EXPECT_EQ(player_.companion.killed, 1);
    EXPECT_FALSE(form4_.job_nowait());
}

TEST_F(Fragment, SoundBesideThePlayerGoesStraightToItsTarget) {
    player_.PutSetting(core::kVideoForWindows, "0");
    StartWithWizard();
    player_.folder.Put("song!.avi", "of the user");
    player_.wizards.AskForAudio(Padded(Target("song.mp3")));
    Tick();
    EXPECT_EQ(LastJob().outputFile, Target("song!.avi"));
    EXPECT_EQ(LastJob().lastOutputFile, Target("song.mp3"));
    EXPECT_TRUE(player_.folder.Has("song!.avi"));
    EXPECT_EQ(player_.boxes.shown, Calls{});
}

TEST_F(Fragment, JobBesideThePlayerThatCannotStartIsTold) {
    player_.PutSetting(core::kVideoForWindows, "0");
    StartWithWizard();
    player_.companion.Fail("Framewright.exe could not be started.");
    player_.wizards.AskForImage(Padded("C:\\a\\still.bmp"));
    Tick();
    EXPECT_EQ(last_error, "Framewright.exe could not be started.");
    EXPECT_FALSE(form4_.job_nowait());
    EXPECT_TRUE(WindowsAreShown());
}

}  // namespace
}  // namespace nqp::test
