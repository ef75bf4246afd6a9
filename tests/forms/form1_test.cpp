#include "video/form1.h"

#include <gtest/gtest.h>

#include "fake_remote.h"
#include "player.h"

namespace nqp::video {
namespace {

using core::PlayState;
using forms::HitCode;
using test::Player;
using Calls = std::vector<std::string>;

class Form1Test : public testing::Test {
protected:
    void SetUp() override { player_.Start(); }
    void SetMoveAlso() {
        player_.PutSetting(core::kMoveAlso, "1");
        player_.CancelOptions();
    }
    void PlayClip() {
        player_.engine.Open("clip.avi");
        player_.engine.Play();
        player_.engine.SetVisible(true);
        player_.engine.ForgetCalls();
    }
    bool Called(const std::string& call) const {
        const Calls& calls = player_.engine.calls;
        return std::find(calls.begin(), calls.end(), call) != calls.end();
    }

    Player player_;
    Form1& form_ = player_.form1;
};

TEST_F(Form1Test, AFirstRunPlacesTheWindow) {
    EXPECT_EQ(form_.Bounds(), (base::Rect{3090, 1005, 5160, 3855}));
    EXPECT_EQ(form_.mX, 3090);
    EXPECT_EQ(form_.mY, 1005);
    EXPECT_EQ(form_.mW, 5160);
    EXPECT_EQ(form_.mH, 3855);
}

TEST_F(Form1Test, ThePictureFillsTheWindow) {
    EXPECT_EQ(player_.engine.Width(), 5160);
    EXPECT_EQ(player_.engine.Height(), 3855);
    player_.engine.ForgetCalls();
    form_.Move({3090, 1005, 6000, 4500});
    EXPECT_EQ(player_.engine.calls, (Calls{"Height = 4500", "Width = 6000"}));
}

TEST_F(Form1Test, SnapsBackToTheSmallestSize) {
    form_.Move({3000, 3000, 300, 3000});
    EXPECT_EQ(form_.Width(), 405);  // 400 twips in whole pixels
    EXPECT_EQ(form_.Height(), 3000);
    form_.Move({3000, 3000, 3000, 15});
    EXPECT_EQ(form_.Width(), 3000);
    EXPECT_EQ(form_.Height(), 405);
    EXPECT_EQ(player_.engine.Height(), 405);
}

TEST_F(Form1Test, ActivationHidesThePictureOfAClipThatPlays) {
    PlayClip();
    test::GoTo(player_.form4);
    test::GoTo(form_);
    EXPECT_FALSE(player_.engine.Visible());
    EXPECT_EQ(player_.engine.State(), PlayState::Playing);
}

TEST_F(Form1Test, ActivationHandsTheAutostartSettingToTheEngine) {
    player_.engine.SetAutoStart(true);
    form_.Form_Activate();
    EXPECT_FALSE(player_.engine.AutoStart());
}

TEST_F(Form1Test, ActivationMovesTheWindowToItsRememberedPlace) {
    form_.mX = 1500;
    form_.mY = 3000;
    form_.mW = 4500;
    form_.mH = 3000;
    form_.menu_showing = true;
    form_.Form_Activate();
    EXPECT_EQ(form_.Bounds(), (base::Rect{1500, 3000, 4500, 3000}));
    EXPECT_FALSE(form_.menu_showing);
}

TEST_F(Form1Test, AReturnFromAnotherProgramKeepsThePicture) {
    test::GoTo(form_);
    PlayClip();
    test::GoToAnotherProgram();
    test::GoTo(form_);
    EXPECT_TRUE(player_.engine.Visible());
}

TEST_F(Form1Test, AReturnFromItsContextMenuKeepsThePicture) {
    test::GoTo(form_);
    PlayClip();
    player_.engine.MouseDown({.Button = base::kRightButton, .X = 300, .Y = 300});
    ASSERT_TRUE(test::OnScreen(player_.form5));
    test::PressKey(player_.form5, base::kKeyEscape);
    EXPECT_TRUE(test::Active(form_));
    EXPECT_TRUE(player_.engine.Visible());
}

TEST_F(Form1Test, AReturnFromThePlayRateDialogKeepsThePicture) {
    test::GoTo(form_);
    PlayClip();
    player_.form6.Show();
    test::GoTo(form_);
    EXPECT_TRUE(player_.engine.Visible());
}

TEST_F(Form1Test, AReturnFromAnotherProgramAfterTheRemoteKeepsThePicture) {
    PlayClip();
    test::GoTo(player_.form4);
    test::GoToAnotherProgram();
    test::GoTo(form_);
    EXPECT_TRUE(player_.engine.Visible());
}

TEST_F(Form1Test, EscapeLeavesFullScreenAndNothingElse) {
    PlayClip();
    player_.engine.SetDisplaySize(core::kFullScreenDisplay);
    test::PressKey(form_, base::kKeyEscape);
    EXPECT_EQ(player_.engine.DisplaySize(), core::kWindowDisplay);
    test::PressKey(form_, base::kKeyEscape);
    EXPECT_TRUE(form_.Loaded());
}

TEST_F(Form1Test, F11SwitchesFullScreenOnAndOff) {
    PlayClip();
    test::PressKey(form_, base::kKeyF11);
    EXPECT_EQ(player_.engine.DisplaySize(), core::kFullScreenDisplay);
    test::PressKey(form_, base::kKeyF11);
    EXPECT_EQ(player_.engine.DisplaySize(), core::kWindowDisplay);
}

TEST_F(Form1Test, SpacePlaysAndPauses) {
    player_.engine.Open("clip.avi");
    test::PressKey(form_, base::kKeySpace);
    EXPECT_EQ(player_.engine.State(), PlayState::Playing);
    test::PressKey(form_, base::kKeySpace);
    EXPECT_EQ(player_.engine.State(), PlayState::Paused);
    test::PressKey(form_, base::kKeySpace);
    EXPECT_EQ(player_.engine.State(), PlayState::Playing);
}

TEST_F(Form1Test, ControlOOpensAFile) {
    test::PressKey(form_, base::kKeyO);
    EXPECT_EQ(player_.dialogs.lastRequest.title, "");
    test::PressKey(form_, base::kKeyO, base::kControlKey);
    EXPECT_EQ(player_.dialogs.lastRequest.title, "Nuvex Quillon Player - Open Media");
}

TEST_F(Form1Test, HidingLeavesNothingOfItBehind) {
    PlayClip();
    player_.engine.SetDisplaySize(core::kFullScreenDisplay);
    player_.form6.Show();
    form_.i2_Click();
    EXPECT_EQ(player_.engine.DisplaySize(), core::kWindowDisplay);
    EXPECT_FALSE(test::OnScreen(player_.form6));
}

TEST_F(Form1Test, TakesItsDialogAlongWhenItGoes) {
    player_.form6.Show();
    form_.Unload();
    EXPECT_FALSE(player_.form6.Loaded());
}

TEST_F(Form1Test, ShowsTheSizingPointerOverItsZones) {
    test::MovePointerOver(form_, 5160 - 100, 1000);
    EXPECT_EQ(test::PointerOf(form_), forms::Pointer::FourWaySizing);
    test::MovePointerOver(form_, 1000, 3855 - 100);
    EXPECT_EQ(test::PointerOf(form_), forms::Pointer::FourWaySizing);
    test::MovePointerOver(form_, 1000, 1000);
    EXPECT_EQ(test::PointerOf(form_), forms::Pointer::Arrow);
}

TEST_F(Form1Test, SetsTheEnginesPointerOverThePicture) {
    player_.engine.MouseMove({.X = 5160 - 149, .Y = 1000});
    EXPECT_EQ(player_.engine.CursorType(), core::kSizingCursor);
    player_.engine.MouseMove({.X = 5160 - 150, .Y = 1000});
    EXPECT_EQ(player_.engine.CursorType(), core::kNormalCursor);
}

TEST_F(Form1Test, ZonesOfThePictureFollowTheWindow) {
    player_.engine.SetWidth(300);  // the control's own size is not asked
    player_.engine.MouseMove({.X = 290, .Y = 1000});
    EXPECT_EQ(player_.engine.CursorType(), core::kNormalCursor);
}

struct Zone {
    base::Twips x;
    base::Twips y;
    HitCode code;
};

class Form1Zones : public Form1Test, public testing::WithParamInterface<Zone> {};

TEST_P(Form1Zones, APressOnTheBareWindowDragsByItsZone) {
    for (const int button : {base::kLeftButton, base::kRightButton}) {
        HitCode seen{};
        test::OnNextDrag(form_, [&](HitCode code) {
            seen = code;
            return form_.Bounds();
        });
        test::PressOn(form_, button, GetParam().x, GetParam().y);
        EXPECT_EQ(seen, GetParam().code);
    }
}

TEST_P(Form1Zones, ALeftPressOnThePictureDragsByItsZone) {
    HitCode seen{};
    test::OnNextDrag(form_, [&](HitCode code) {
        seen = code;
        return form_.Bounds();
    });
    player_.engine.MouseDown({.Button = base::kLeftButton, .X = GetParam().x, .Y = GetParam().y});
    EXPECT_EQ(seen, GetParam().code);
}

INSTANTIATE_TEST_SUITE_P(Every, Form1Zones,
                         testing::Values(Zone{5130, 3825, HitCode::BottomRight},
                                         Zone{5130, 1500, HitCode::Right},
                                         Zone{1500, 3825, HitCode::Bottom},
                                         Zone{1500, 1500, HitCode::Caption}));

TEST_F(Form1Test, RecordsItsGeometryAfterTheDrag) {
    test::OnNextDrag(form_, [](HitCode) { return base::Rect{1500, 1800, 4500, 3000}; });
    test::PressOn(form_, base::kLeftButton, 1500, 1500);
    EXPECT_EQ(form_.mX, 1500);
    EXPECT_EQ(form_.mY, 1800);
    EXPECT_EQ(form_.mW, 4500);
    EXPECT_EQ(form_.mH, 3000);
}

TEST_F(Form1Test, TheRemoteStaysWhenItIsNotToFollow) {
    const base::Point before = player_.form4.RemotePosition();
    test::OnNextDrag(form_, [](HitCode) { return base::Rect{1500, 1800, 5160, 3855}; });
    player_.engine.MouseDown({.Button = base::kLeftButton, .X = 1500, .Y = 1500});
    EXPECT_EQ(player_.form4.RemotePosition(), before);
    EXPECT_EQ(form_.mX, 1500);
}

TEST_F(Form1Test, TheRemoteFollowsOnceTheDragHasEnded) {
    SetMoveAlso();
    const base::Point before = player_.form4.RemotePosition();
    test::OnNextDrag(form_, [&](HitCode) {
        EXPECT_EQ(player_.form4.RemotePosition(), before);
        return base::Rect{3090 + 600, 1005 + 300, 5160, 3855};
    });
    player_.engine.MouseDown({.Button = base::kLeftButton, .X = 1500, .Y = 1500});
    EXPECT_EQ(player_.form4.RemotePosition(), (base::Point{before.x + 600, before.y + 300}));
    EXPECT_EQ(player_.form4.plX, base::RoundHalfEven(before.x + 600));
    EXPECT_EQ(player_.form4.plY, base::RoundHalfEven(before.y + 300));
}

TEST_F(Form1Test, ARightPressNeverDragsButTheRemoteFollows) {
    SetMoveAlso();
    const base::Point before = player_.form4.RemotePosition();
    form_.Move({3090 + 150, 1005 + 300, 5160, 3855});
    bool dragged = false;
    test::OnNextDrag(form_, [&](HitCode) {
        dragged = true;
        return form_.Bounds();
    });
    player_.engine.MouseDown({.Button = base::kRightButton, .X = 5130, .Y = 3825});
    EXPECT_FALSE(dragged);
    EXPECT_EQ(player_.form4.RemotePosition(), (base::Point{before.x + 150, before.y + 300}));
    EXPECT_EQ(form_.mX, 3240);
    EXPECT_EQ(form_.mY, 1305);
}

TEST_F(Form1Test, ARightPressOpensTheContextMenuAtThePointer) {
    player_.engine.MouseDown({.Button = base::kRightButton, .X = 600, .Y = 900});
    EXPECT_TRUE(test::OnScreen(player_.form5));
    EXPECT_TRUE(test::Topmost(player_.form5));
    EXPECT_TRUE(form_.menu_showing);
    EXPECT_EQ(player_.form5.Left(), 3090 + 600);
    EXPECT_EQ(player_.form5.Top(), 1005 + 900);
}

TEST_F(Form1Test, AnyPressOnThePictureClosesTheContextMenu) {
    for (const int button : {base::kLeftButton, base::kMiddleButton}) {
        player_.engine.MouseDown({.Button = base::kRightButton, .X = 600, .Y = 900});
        test::OnNextDrag(form_, [&](HitCode) { return form_.Bounds(); });
        player_.engine.MouseDown({.Button = button, .X = 1500, .Y = 1500});
        EXPECT_FALSE(player_.form5.Loaded());
        test::RunMessages();
    }
}

TEST_F(Form1Test, ASecondRightPressMovesTheContextMenu) {
    player_.engine.MouseDown({.Button = base::kRightButton, .X = 600, .Y = 900});
    player_.engine.MouseDown({.Button = base::kRightButton, .X = 1200, .Y = 1500});
    EXPECT_TRUE(test::OnScreen(player_.form5));
    EXPECT_EQ(player_.form5.Left(), 3090 + 1200);
    EXPECT_TRUE(form_.menu_showing);
}

TEST_F(Form1Test, TheMenuOfTheIconShowsBothWindows) {
    form_.i2_Click();
    EXPECT_FALSE(test::OnScreen(form_));
    EXPECT_FALSE(test::OnScreen(player_.form4));
    player_.engine.SetVisible(true);
    form_.i1_Click();
    EXPECT_TRUE(test::OnScreen(form_));
    EXPECT_TRUE(test::OnScreen(player_.form4));
    EXPECT_FALSE(player_.engine.Visible());
}

TEST_F(Form1Test, TheMenuOfTheIconClosesTheProgram) {
    form_.i3_Click();
    EXPECT_FALSE(form_.Loaded());
    EXPECT_FALSE(player_.form4.Loaded());
}

TEST_F(Form1Test, TheMenuOfTheIconRunsTheChosenItem) {
    test::ChooseInNextMenu(player_.form4, form_.med, form_.i2);
    player_.form4.PopupMenu(form_.med);
    EXPECT_FALSE(test::OnScreen(form_));
    EXPECT_EQ(form_.i1.Caption() + form_.i2.Caption() + form_.i3.Caption(), "ShowHideClose");
}

TEST_F(Form1Test, ClosingTheVideoWindowEndsTheProgram) {
    test::CloseBySystem(form_);
    EXPECT_FALSE(form_.Loaded());
    EXPECT_FALSE(player_.form4.Loaded());
}

TEST_F(Form1Test, TheEngineIsDetachedBeforeItsWindowGoes) {
    player_.engine.ForgetCalls();
    form_.Unload();
    EXPECT_TRUE(Called("Detach"));
}

TEST_F(Form1Test, ItsOperationsAreTheRemotesButtons) {
    PlayClip();
    form_.play_media();
    EXPECT_TRUE(Called("Play"));
    form_.pause_media();
    EXPECT_TRUE(Called("Pause"));
    player_.dialogs.answer = std::nullopt;
    form_.open_media();
    EXPECT_EQ(player_.dialogs.lastRequest.title, "Nuvex Quillon Player - Open Media");
}

// The remote without a list counts how often the end of a clip reached it.
class EndOfClip : public testing::Test {
protected:
    class CountingRemote final : public test::FakeRemote {
    public:
        int advances = 0;
        void next_playlist_item() override { ++advances; }
    };

    void SetUp() override {
        menu_.Connect(form_, form_, remote_, rate_);
        form_.Connect(remote_, menu_);
        form_.Load();
        engine_.Open("clip.avi");
        engine_.Play();
    }
    void TearDown() override {
        form_.Unload();
        test::RunMessages();
    }

    test::ScriptedEngine engine_;
    CountingRemote remote_;
    Form6 rate_{engine_};
    Form5 menu_;
    Form1 form_{engine_};
};

TEST_F(EndOfClip, AdvancesTheList) {
    engine_.PlayToEnd();
    EXPECT_EQ(remote_.advances, 1);
}

TEST_F(EndOfClip, AStopOneFrameBeforeDoesNot) {
    engine_.position = engine_.duration - 0.04;
    engine_.StopHere();
    EXPECT_EQ(remote_.advances, 0);
}

TEST_F(EndOfClip, APauseOrAStopOfAPausedClipAtTheEndDoesNot) {
    engine_.position = engine_.duration;
    engine_.Pause();
    engine_.StopHere();
    EXPECT_EQ(remote_.advances, 0);
}

TEST_F(EndOfClip, ClosingAClipThatPlaysDoesNot) {
    engine_.Open("bad.avi");
    EXPECT_EQ(remote_.advances, 0);
}

}  // namespace
}  // namespace nqp::video
