#include "video/form5.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "player.h"

namespace nqp::video {
namespace {

using test::Player;
using Calls = std::vector<std::string>;

enum Item {
    kPlay,
    kPause,
    kOpen,
    kFullScreen,
    kNothing,
    kShowControl,
    kOptions,
    kStandardSettings,
    kStatistics,
    kPlayRate,
    kMute,
    kExit
};

class Form5Test : public testing::Test {
protected:
    void SetUp() override {
        player_.Start();
        test::GoTo(player_.form1);
        player_.engine.Open("clip.avi");
        player_.engine.ForgetCalls();
    }
    void OpenMenu(base::Twips x = 600, base::Twips y = 600) {
        player_.engine.MouseDown({.Button = base::kRightButton, .X = x, .Y = y});
    }
    void Choose(int item) {
        OpenMenu();
        test::ClickOn(menu_.Label1[item]);
    }
    bool Called(const std::string& call) const {
        const Calls& calls = player_.engine.calls;
        return std::find(calls.begin(), calls.end(), call) != calls.end();
    }

    Player player_;
    Form5& menu_ = player_.form5;
};

TEST_F(Form5Test, HasItsTwelveCaptions) {
    OpenMenu();
    Calls captions;
    for (int item = 0; item < Form5::kLabelCount; ++item) {
        captions.push_back(test::TextOn(menu_.Label1[item]));
    }
    EXPECT_EQ(captions,
              (Calls{"Play", "Pause", "Open ...", "Fullscreen", "", "Show control", "Options",
                     "Standard settings", "Statistics", "Playrate", "Mute", "Exit"}));
}

TEST_F(Form5Test, EveryCommandClosesTheMenuFirst) {
    for (int item = 0; item < Form5::kLabelCount - 1; ++item) {
        if (item == kNothing) continue;
        if (item == kOptions) test::OnNextModal([this] { player_.form2.Unload(); });
        Choose(item);
        EXPECT_FALSE(menu_.Loaded()) << item;
        EXPECT_FALSE(player_.form1.menu_showing) << item;
    }
}

TEST_F(Form5Test, IsGoneByTheTimeItsCommandRuns) {
    bool goneThen = false;
    player_.dialogs.whenAsked = [&] { goneThen = !menu_.Loaded() && !player_.form1.menu_showing; };
    Choose(kOpen);
    EXPECT_TRUE(goneThen);
}

TEST_F(Form5Test, PlaysAndPauses) {
    Choose(kPlay);
    EXPECT_EQ(player_.engine.State(), core::PlayState::Playing);
    Choose(kPause);
    EXPECT_EQ(player_.engine.State(), core::PlayState::Paused);
}

TEST_F(Form5Test, OpensAFile) {
    Choose(kOpen);
    EXPECT_EQ(player_.dialogs.lastRequest.title, "Nuvex Quillon Player - Open Media");
}

TEST_F(Form5Test, SwitchesToFullScreen) {
    player_.form4.HideRemote();
    Choose(kFullScreen);
    EXPECT_EQ(player_.engine.DisplaySize(), core::kFullScreenDisplay);
    EXPECT_FALSE(test::OnScreen(player_.form4));
}

TEST_F(Form5Test, KeepsTheRemoteAboveTheFullScreenWhenThatIsSet) {
    player_.PutSetting(core::kHideControlInFullscreen, "0");
    player_.CancelOptions();
    player_.form4.HideRemote();
    Choose(kFullScreen);
    EXPECT_TRUE(test::OnScreen(player_.form4));
    EXPECT_TRUE(test::Topmost(player_.form4));
}

TEST_F(Form5Test, ShowsTheRemote) {
    player_.form4.HideRemote();
    Choose(kShowControl);
    EXPECT_TRUE(test::OnScreen(player_.form4));
}

TEST_F(Form5Test, OpensTheEnginesDialogs) {
    Choose(kStandardSettings);
    EXPECT_TRUE(Called("ShowDialog 2"));
    Choose(kStatistics);
    EXPECT_TRUE(Called("ShowDialog 1"));
}

TEST_F(Form5Test, OpensThePlayRateDialogInTheMiddleOfTheScreen) {
    Choose(kPlayRate);
    EXPECT_TRUE(test::OnScreen(player_.form6));
    EXPECT_TRUE(test::Topmost(player_.form6));
    const base::Size screen = forms::ScreenSize();
    EXPECT_NEAR(player_.form6.Left(), (screen.width - player_.form6.Width()) / 2, 15);
    EXPECT_NEAR(player_.form6.Top(), (screen.height - player_.form6.Height()) / 2, 15);
}

TEST_F(Form5Test, ExitEndsTheProgram) {
    Choose(kExit);
    EXPECT_FALSE(player_.form1.Loaded());
    EXPECT_FALSE(player_.form4.Loaded());
}

TEST_F(Form5Test, MuteGivesBackTheVolumeToTheHundredth) {
    player_.engine.SetVolume(-1234);
    Choose(kMute);
    EXPECT_EQ(player_.engine.Volume(), core::kSilent);
    Choose(kMute);
    EXPECT_EQ(player_.engine.Volume(), -1234);
}

TEST_F(Form5Test, MuteOutlivesASeekAPauseAndAnotherClip) {
    player_.engine.SetVolume(-77);
    Choose(kMute);
    player_.engine.SetCurrentPosition(5);
    Choose(kPlay);
    Choose(kPause);
    player_.engine.Open("other.avi");
    EXPECT_EQ(player_.engine.Volume(), core::kSilent);
    Choose(kMute);
    EXPECT_EQ(player_.engine.Volume(), -77);
}

TEST_F(Form5Test, AVolumeSetWhileMutedEndsTheMute) {
    player_.engine.SetVolume(-100);
    Choose(kMute);
    player_.engine.SetVolume(-600);
    Choose(kMute);
    EXPECT_EQ(player_.engine.Volume(), core::kSilent);
    Choose(kMute);
    EXPECT_EQ(player_.engine.Volume(), -600);
}

TEST_F(Form5Test, ThePointerHighlightsALabel) {
    OpenMenu();
    EXPECT_EQ(menu_.highlighted_item, 0);
    const forms::Color plain = menu_.Label1[kPause].BackColor();
    test::MovePointerOver(menu_.Label1[kPause], 100, 100);
    EXPECT_EQ(menu_.highlighted_item, kPause + 1);
    EXPECT_NE(menu_.Label1[kPause].BackColor(), plain);
    test::MovePointerOver(menu_.Label1[kExit], 100, 100);
    EXPECT_EQ(menu_.Label1[kPause].BackColor(), plain);
    test::MovePointerOver(menu_, 10, 10);
    EXPECT_EQ(menu_.highlighted_item, 0);
}

TEST_F(Form5Test, TheArrowsGoRoundAndPassOverTheSeparator) {
    OpenMenu();
    for (int item = 0; item < Form5::kLabelCount; ++item) {
        if (item == kNothing) continue;
        test::PressKey(menu_, base::kKeyDown);
        EXPECT_EQ(menu_.highlighted_item, item + 1);
    }
    test::PressKey(menu_, base::kKeyDown);
    EXPECT_EQ(menu_.highlighted_item, kPlay + 1);
    test::PressKey(menu_, base::kKeyUp);
    EXPECT_EQ(menu_.highlighted_item, kExit + 1);
    test::PressKey(menu_, base::kKeyHome);
    EXPECT_EQ(menu_.highlighted_item, kPlay + 1);
    test::PressKey(menu_, base::kKeyEnd);
    EXPECT_EQ(menu_.highlighted_item, kExit + 1);
    for (int step = 0; step < 7; ++step)
        test::PressKey(menu_, base::kKeyUp);
    EXPECT_EQ(menu_.highlighted_item, kFullScreen + 1);
}

TEST_F(Form5Test, EnterRunsTheHighlightedCommand) {
    OpenMenu();
    test::PressKey(menu_, base::kKeyDown);
    test::PressKey(menu_, base::kKeyEnter);
    EXPECT_FALSE(menu_.Loaded());
    EXPECT_EQ(player_.engine.State(), core::PlayState::Playing);
}

TEST_F(Form5Test, EnterWithoutAHighlightDoesNothing) {
    OpenMenu();
    test::PressKey(menu_, base::kKeyEnter);
    EXPECT_TRUE(menu_.Loaded());
    EXPECT_EQ(player_.engine.State(), core::PlayState::Stopped);
}

TEST_F(Form5Test, EscapeClosesIt) {
    OpenMenu();
    test::PressKey(menu_, base::kKeyEscape);
    EXPECT_FALSE(menu_.Loaded());
    EXPECT_FALSE(player_.form1.menu_showing);
}

TEST_F(Form5Test, AClickElsewhereClosesIt) {
    OpenMenu();
    test::GoTo(player_.form4);
    EXPECT_FALSE(menu_.Loaded());
    OpenMenu();
    test::GoToAnotherProgram();
    EXPECT_FALSE(menu_.Loaded());
}

TEST_F(Form5Test, OpensWithoutAHighlightEveryTime) {
    OpenMenu();
    test::PressKey(menu_, base::kKeyDown);
    test::PressKey(menu_, base::kKeyEscape);
    OpenMenu();
    EXPECT_EQ(menu_.highlighted_item, 0);
    EXPECT_EQ(menu_.Label1[kPlay].BackColor(), menu_.Label1[kPause].BackColor());
}

TEST_F(Form5Test, OpensFromTheKeyboard) {
    for (const base::KeyEvent key :
         {base::KeyEvent{base::kKeyMenu, 0}, base::KeyEvent{base::kKeyF10, base::kShiftKey}}) {
        test::PressKey(player_.form1, key.KeyCode, key.Shift);
        EXPECT_TRUE(test::OnScreen(menu_));
        EXPECT_TRUE(player_.form1.menu_showing);
        test::PressKey(menu_, base::kKeyEscape);
    }
    test::PressKey(player_.form1, base::kKeyF10);
    EXPECT_FALSE(menu_.Loaded());
}

TEST_F(Form5Test, StaysOnTheScreen) {
    const base::Rect area = forms::WorkAreaAt({0, 0});
    player_.form1.Move({area.right() - 1500, area.bottom() - 1500, 5160, 3855});
    OpenMenu(1200, 1200);
    EXPECT_LE(menu_.Left() + menu_.Width(), area.right() + 15);
    EXPECT_LE(menu_.Top() + menu_.Height(), area.bottom() + 15);
    player_.form1.Move({-3000, -1500, 5160, 3855});
    OpenMenu(300, 300);
    EXPECT_GE(menu_.Left(), area.left);
    EXPECT_GE(menu_.Top(), area.top);
}

}  // namespace
}  // namespace nqp::video
