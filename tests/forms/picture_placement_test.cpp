#include <gtest/gtest.h>

#include "bmp_bytes.h"
#include "forms/run_time_error.h"
#include "player.h"

namespace nqp::test {
namespace {

constexpr base::Twips kPixel = 15;
constexpr int kPictureSide = 100;  // pixels
const std::string kCaption = "Position of image in a video fragment - Drag and Drop - ";

std::string last_error;

class PicturePlacement : public testing::Test {
protected:
    PicturePlacement() {
        last_error.clear();
        forms::SetRunTimeErrorHandler([](const std::string& sentence, forms::Origin origin) {
            if (origin == forms::Origin::User) last_error = sentence;
        });
        PutPicture("logo.bmp", kPictureSide, kPictureSide);
        player_.PutSetting(core::kInsertPicture, "1");
        player_.PutSetting(core::kVideoForWindows, "1");
        player_.PutSetting(core::kPicturePath, PathOf("logo.bmp"));
        player_.Start();
        player_.boxes.answer = false;
    }
    ~PicturePlacement() override { forms::SetRunTimeErrorHandler(nullptr); }

    void PutPicture(const std::string& name, int width, int height) const {
        player_.folder.Put(name, Bmp24(width, height, 0xFF0000));
    }
    std::string PathOf(const std::string& name) const {
        return base::Utf8FromPath(player_.folder.Path() / name);
    }

    // Opens it from the page of the options; what `act` does must close it.
    void Open(const std::function<void()>& act, bool acceptOptions = true) {
        const auto place = [&] {
            OnNextModal(act);
            ClickOn(player_.form2.Label19);
            ClickOn(player_.form2.Command5);
        };
        acceptOptions ? player_.ChangeOptions(place) : player_.CancelOptions(place);
    }
    void DragTo(base::Twips left, base::Twips top) {
        PressOn(form_.Picture1, base::kLeftButton, 150, 150);
        MoveHolding(form_.Picture1, base::kLeftButton, 150 + left - form_.Picture1.Left(),
                    150 + top - form_.Picture1.Top());
    }
    void LetGo() { ReleaseOn(form_.Picture1, base::kLeftButton, 150, 150); }
    void LetGoAndAccept() {
        player_.boxes.answer = true;
        LetGo();
    }
    base::Twips FreeWidth() const { return form_.ClientSize().width - form_.Picture1.Width(); }
    base::Twips FreeHeight() const { return form_.ClientSize().height - form_.Picture1.Height(); }

    Player player_;
    wizard::InsertBMPForm& form_ = player_.insertBMPForm;
};

TEST_F(PicturePlacement, CoversTheScreenWithThePictureAtItsOwnSize) {
    Open([this] {
        EXPECT_TRUE(OnScreen(form_));
        EXPECT_TRUE(form_.Maximized());
        EXPECT_EQ(form_.Caption(), kCaption + "X: 0   Y: 0");
        EXPECT_EQ(form_.Picture1.Width(), kPictureSide * kPixel);
        ASSERT_NE(form_.Picture1.ShownPicture(), nullptr);
        EXPECT_EQ(form_.Picture1.ShownPicture()->Width(), kPictureSide);
        CloseBySystem(form_);
    });
    EXPECT_EQ(last_error, "");
}

TEST_F(PicturePlacement, DraggedPictureKeepsThePointOfThePointer) {
    Open([this] {
        DragTo(3000, 1500);
        EXPECT_NEAR(form_.Picture1.Left(), 3000, kPixel);
        EXPECT_NEAR(form_.Picture1.Top(), 1500, kPixel);
        LetGo();
        CloseBySystem(form_);
    });
}

TEST_F(PicturePlacement, CaptionTellsThousandthsOfTheFreeRoom) {
    Open([this] {
        DragTo(FreeWidth() / 2, FreeHeight() / 4);
        EXPECT_NEAR(form_.X(), 500, 1);
        EXPECT_NEAR(form_.Y(), 250, 1);
        EXPECT_EQ(form_.Caption(), kCaption + "X: " + std::to_string(form_.X()) +
                                       "   Y: " + std::to_string(form_.Y()));
        LetGo();
        CloseBySystem(form_);
    });
}

TEST_F(PicturePlacement, AcceptedPlaceIsStoredWithTheOptions) {
    Open([this] {
        DragTo(FreeWidth() + 900, FreeHeight() / 2);
        EXPECT_EQ(form_.X(), 1000) << "past the edge is the edge";
        LetGoAndAccept();
        EXPECT_FALSE(OnScreen(form_));
    });
    EXPECT_EQ(player_.boxes.shown, std::vector<std::string>{"Accept current position?"});
    EXPECT_EQ(player_.Setting(core::kPictureX), "1000");
    EXPECT_NEAR(std::stoi(player_.Setting(core::kPictureY)), 500, 1);
    EXPECT_EQ(player_.form4.Settings().picture_x, 1000);
}

TEST_F(PicturePlacement, LetGoOutsideItSnapsBackToTheEdges) {
    Open([this] {
        DragTo(FreeWidth() + 900, FreeHeight() + 900);
        LetGo();
        EXPECT_NEAR(form_.Picture1.Left(), FreeWidth(), kPixel);
        EXPECT_NEAR(form_.Picture1.Top(), FreeHeight(), kPixel);
        EXPECT_TRUE(OnScreen(form_)) << "the answer was No";
        DragTo(-900, -600);
        EXPECT_EQ(form_.X(), 0);
        EXPECT_EQ(form_.Y(), 0);
        LetGo();
        EXPECT_EQ(form_.Picture1.Left(), 0);
        EXPECT_EQ(form_.Picture1.Top(), 0);
        CloseBySystem(form_);
    });
}

TEST_F(PicturePlacement, PointerThatHoldsNothingMovesNothing) {
    Open([this] {
        MovePointerOver(form_.Picture1, 600, 600);
        EXPECT_EQ(form_.Picture1.Left(), 0);
        DragTo(3000, 3000);
        LetGo();
        MovePointerOver(form_.Picture1, 600, 600);
        EXPECT_NEAR(form_.Picture1.Left(), 3000, kPixel);
        CloseBySystem(form_);
    });
}

TEST_F(PicturePlacement, ClosedWithoutAPlaceChangesNoSetting) {
    player_.PutSetting(core::kPictureX, "111");
    player_.PutSetting(core::kPictureY, "222");
    for (const bool byKey : {true, false}) {
        Open([this, byKey] {
            DragTo(3000, 3000);
            LetGo();
            byKey ? PressKey(form_, base::kKeyEscape) : CloseBySystem(form_);
        });
        EXPECT_EQ(player_.Setting(core::kPictureX), "111");
        EXPECT_EQ(player_.Setting(core::kPictureY), "222");
    }
}

TEST_F(PicturePlacement, CancelledOptionsForgetThePlace) {
    Open(
        [this] {
            DragTo(3000, 3000);
            LetGoAndAccept();
        },
        false);
    EXPECT_EQ(player_.Setting(core::kPictureX), "");
}

TEST_F(PicturePlacement, OpensWhereThePictureWasLeft) {
    Open([this] {
        DragTo(3000, 1500);
        LetGoAndAccept();
    });
    Open([this] {
        EXPECT_NEAR(form_.Picture1.Left(), 3000, kPixel);
        CloseBySystem(form_);
    });
}

TEST_F(PicturePlacement, PictureThatCannotBeReadIsTold) {
    for (const char* content : {"", "no picture"}) {
        last_error.clear();
        player_.folder.Put("logo.bmp", content);
        Open([] {});
        EXPECT_NE(last_error.find("logo.bmp"), std::string::npos) << last_error;
        EXPECT_FALSE(OnScreen(form_));
        EXPECT_FALSE(form_.Loaded());
    }
}

TEST_F(PicturePlacement, PictureAsLargeAsTheVideoHasNoPosition) {
    Open([this] {
        const base::Size area = form_.ClientSize();
        form_.Picture1.Move({0, 0, area.width, area.height});
        PressOn(form_.Picture1, base::kLeftButton, 150, 150);
        MoveHolding(form_.Picture1, base::kLeftButton, 300, 300);
        EXPECT_EQ(last_error, "The picture is as large as the video.");
        EXPECT_EQ(form_.Caption(), kCaption + "X: 0   Y: 0");
        last_error.clear();
        MoveHolding(form_.Picture1, base::kLeftButton, 350, 300);
        LetGoAndAccept();
        EXPECT_EQ(last_error, "") << "told once";
        EXPECT_TRUE(OnScreen(form_));
        CloseBySystem(form_);
    });
    EXPECT_TRUE(player_.boxes.shown.empty()) << "there is nothing to accept";
}

TEST_F(PicturePlacement, GoesWithTheProgram) {
    Open([this] { player_.form4.Picture1_Click(); });
    RunMessages();
    EXPECT_FALSE(form_.Loaded());
    EXPECT_FALSE(player_.form2.Loaded());
    EXPECT_FALSE(player_.form4.Loaded());
}

TEST_F(PicturePlacement, IsOutOfReachWithoutAPicture) {
    player_.PutSetting(core::kPicturePath, "");
    player_.CancelOptions([this] { EXPECT_FALSE(player_.form2.Command5.Enabled()); });
    player_.PutSetting(core::kPicturePath, PathOf("logo.bmp"));
    player_.CancelOptions([this] { EXPECT_TRUE(player_.form2.Command5.Enabled()); });
}

}  // namespace
}  // namespace nqp::test
