#include <gtest/gtest.h>

#include <vector>

#include "player.h"
#include "remote/face.h"

namespace nqp::remote {
namespace {

using test::Player;
using Calls = std::vector<std::string>;

constexpr base::Twips kInside = 150;

struct TransportButton {
    int number;
    forms::PictureBox Form4::*normal;
    forms::PictureBox Form4::*highlighted;
    const char* tip;
};

const std::vector<TransportButton> kTransportButtons = {
    {2, &Form4::Picture2, &Form4::Picture7, "Play"},
    {3, &Form4::Picture3, &Form4::Picture8, "Stop"},
    {4, &Form4::Picture4, &Form4::Picture9, "Pause"},
    {6, &Form4::Picture6, &Form4::Picture11, "Open"},
};

class RemoteButtons : public testing::Test {
protected:
    void SetUp() override {
        player_.Start();
        player_.engine.Open("C:\\clip.avi");
        player_.engine.ForgetCalls();
    }
    void Hover(forms::PictureBox& box) { test::MovePointerOver(box, kInside, kInside); }

    Player player_;
    Form4& remote_ = player_.form4;
};

using Hovering = RemoteButtons;

TEST_F(Hovering, ShowsTheHighlightedTwinOfEachButton) {
    for (const TransportButton& button : kTransportButtons) {
        Hover(remote_.*button.normal);
        EXPECT_FALSE(test::ShownOn(remote_.*button.normal)) << button.tip;
        EXPECT_TRUE(test::ShownOn(remote_.*button.highlighted)) << button.tip;
        EXPECT_EQ(remote_.hover_button(), button.number);
    }
}

TEST_F(Hovering, OfAnotherButtonGivesTheFirstOneBack) {
    Hover(remote_.Picture2);
    Hover(remote_.Picture6);
    EXPECT_TRUE(test::ShownOn(remote_.Picture2));
    EXPECT_FALSE(test::ShownOn(remote_.Picture7));
    EXPECT_TRUE(test::ShownOn(remote_.Picture11));
}

TEST_F(Hovering, EndsOverTheBareSurface) {
    for (const TransportButton& button : kTransportButtons) {
        Hover(remote_.*button.normal);
        test::MovePointerOver(remote_, 15, 15);
        EXPECT_TRUE(test::ShownOn(remote_.*button.normal)) << button.tip;
        EXPECT_FALSE(test::ShownOn(remote_.*button.highlighted)) << button.tip;
        EXPECT_EQ(remote_.hover_button(), 0);
    }
}

TEST_F(Hovering, EndsOverThePositionKnobAndAtAPressOnTheTime) {
    Hover(remote_.Picture2);
    test::MovePointerOver(remote_.Picture12, 15, 15);
    EXPECT_EQ(remote_.hover_button(), 0);
    Hover(remote_.Picture2);
    test::PressOn(remote_.Label2, base::kLeftButton, 15, 15);
    EXPECT_EQ(remote_.hover_button(), 0);
}

TEST_F(Hovering, EndsWhenThePointerLeavesTheButton) {
    Hover(remote_.Picture2);
    test::MovePointerOff(remote_.Picture7);
    EXPECT_EQ(remote_.hover_button(), 0);
    Hover(remote_.Picture2);
    Hover(remote_.Picture4);
    test::MovePointerOff(remote_.Picture7);  // told late
    EXPECT_EQ(remote_.hover_button(), 4);
}

TEST_F(Hovering, KeepsTheKeyboardsFocusOnTheButton) {
    remote_.Picture2.SetFocus();
    Hover(remote_.Picture2);
    EXPECT_TRUE(remote_.Picture7.HasFocus());
    test::MovePointerOver(remote_, 15, 15);
    EXPECT_TRUE(remote_.Picture2.HasFocus());
}

TEST_F(RemoteButtons, HaveTheirToolTips) {
    for (const TransportButton& button : kTransportButtons) {
        EXPECT_EQ((remote_.*button.normal).ToolTipText(), button.tip);
        EXPECT_EQ((remote_.*button.highlighted).ToolTipText(), button.tip);
    }
    EXPECT_EQ(remote_.Picture12.ToolTipText(), "Position");
    EXPECT_EQ(remote_.Picture13.ToolTipText(), "Volume");
}

TEST_F(RemoteButtons, AllHaveANameForThoseWhoCannotSeeThem) {
    for (const forms::Control* control : remote_.Controls()) {
        if (control->State().kind == forms::ControlKind::PictureBox) {
            EXPECT_FALSE(control->State().accessibleName.empty()) << control->Name();
            EXPECT_NE(control->State().role, forms::Role::Image) << control->Name();
        }
    }
}

TEST_F(RemoteButtons, PlayStopAndPauseByTheirHighlightedTwins) {
    test::ClickOn(
        remote_.Picture2);  // the pointer was never over it: the press counts all the same
    EXPECT_EQ(player_.engine.State(), core::PlayState::Playing);
    Hover(remote_.Picture4);
    test::ClickOn(remote_.Picture9);
    EXPECT_EQ(player_.engine.State(), core::PlayState::Paused);
    test::ClickOn(remote_.Picture9);
    EXPECT_EQ(player_.engine.State(), core::PlayState::Playing);
    Hover(remote_.Picture3);
    player_.engine.position = 40;
    test::ClickOn(remote_.Picture8);
    EXPECT_EQ(player_.engine.position, 0);
    EXPECT_FALSE(player_.engine.Visible());
    Hover(remote_.Picture2);
    test::ClickOn(remote_.Picture7);
    EXPECT_EQ(player_.engine.State(), core::PlayState::Playing);
}

TEST_F(RemoteButtons, ArePressedWithEnterAndSpace) {
    test::PressKeyIn(remote_.Picture2, base::kKeySpace);
    EXPECT_EQ(player_.engine.State(), core::PlayState::Playing);
    test::PressKeyIn(remote_.Picture4, base::kKeyEnter);
    EXPECT_EQ(player_.engine.State(), core::PlayState::Paused);
    test::PressKeyIn(remote_.Picture15, base::kKeySpace);
    EXPECT_TRUE(test::ShownOn(remote_.List1));
    test::PressKeyIn(remote_.Picture1, base::kKeyEnter);
    EXPECT_FALSE(remote_.Loaded());
}

TEST_F(RemoteButtons, StopPutsTheKnobBack) {
    player_.form4.Picture7_Click();
    player_.engine.position = 50;
    remote_.Timer1.Timer();
    EXPECT_GT(remote_.Picture12.Left(), remote_.Line11.X1());
    player_.engine.position = 50;
    Hover(remote_.Picture3);
    test::ClickOn(remote_.Picture8);
    EXPECT_EQ(remote_.Picture12.Left(), remote_.Line11.X1());
}

TEST_F(RemoteButtons, OpenPutsTheKnobBack) {
    player_.engine.position = 50;
    remote_.Timer1.Timer();
    player_.folder.Put("movie.avi", "a clip");
    player_.dialogs.answer = base::Utf8FromPath(player_.folder.Path() / "movie.avi");
    Hover(remote_.Picture6);
    test::ClickOn(remote_.Picture11);
    EXPECT_EQ(remote_.Picture12.Left(), remote_.Line11.X1());
    EXPECT_EQ(player_.engine.State(), core::PlayState::Playing);
}

TEST_F(RemoteButtons, HelpOpensTheHelpFileBesideTheProgram) {
    test::ClickOn(remote_.Picture14);
    EXPECT_EQ(player_.shell.opened, Calls{base::Utf8FromPath(player_.folder.Path() / "nqp.chm")});
}

TEST_F(RemoteButtons, OptionsPausesWhatPlays) {
    remote_.Picture7_Click();
    test::OnNextModal([this] {
        EXPECT_EQ(player_.engine.State(), core::PlayState::Paused);
        player_.form2.Unload();
    });
    test::ClickOn(remote_.Picture10);
    EXPECT_TRUE(remote_.Flags().bPause);
    test::OnNextModal([this] { player_.form2.Unload(); });
    test::ClickOn(remote_.Picture10);  // and does not resume it
    EXPECT_EQ(player_.engine.State(), core::PlayState::Paused);
}

TEST_F(RemoteButtons, HideHidesTheRemoteOnly) {
    test::ClickOn(remote_.Picture5);
    EXPECT_FALSE(test::OnScreen(remote_));
    EXPECT_TRUE(remote_.Loaded());
    EXPECT_TRUE(test::OnScreen(player_.form1));
}

TEST_F(RemoteButtons, HideAllHidesBothWindowsAndTheIconBringsThemBack) {
    test::ClickOn(remote_.Picture16);
    EXPECT_FALSE(test::OnScreen(remote_));
    EXPECT_FALSE(test::OnScreen(player_.form1));
    test::ReportFromTrayIcon(remote_, 514);
    EXPECT_TRUE(test::OnScreen(remote_));
    EXPECT_TRUE(test::OnScreen(player_.form1));
}

TEST_F(RemoteButtons, ExitUnloadsBothWindows) {
    test::ClickOn(remote_.Picture1);
    EXPECT_FALSE(remote_.Loaded());
    EXPECT_FALSE(player_.form1.Loaded());
}

class PlaylistArea : public RemoteButtons {
protected:
    base::Twips ListBottom() const { return remote_.List1.Top() + remote_.List1.Height(); }
};

TEST_F(PlaylistArea, StartsHidden) {
    EXPECT_NEAR(remote_.Height(), face::kCompactHeight, 15);
    EXPECT_FALSE(test::ShownOn(remote_.List1));
}

TEST_F(PlaylistArea, OpensAndClosesWithTheButton) {
    test::ClickOn(remote_.Picture15);
    EXPECT_NEAR(remote_.Height(), face::kFirstExpandedHeight, 15);
    EXPECT_TRUE(test::ShownOn(remote_.List1));
    EXPECT_EQ(remote_.Picture17.Top(), remote_.Height() - remote_.Picture17.Height() + 20);
    EXPECT_EQ(remote_.List1.Top(), 875);
    EXPECT_EQ(remote_.List1.Height(), remote_.Height() - remote_.Picture17.Height() - 855 - 20);
    EXPECT_EQ(ListBottom() + 20, remote_.Picture17.Top());
    test::ClickOn(remote_.Picture15);
    EXPECT_NEAR(remote_.Height(), face::kCompactHeight, 15);
    EXPECT_FALSE(test::ShownOn(remote_.List1));
}

TEST_F(PlaylistArea, ComesBackAsHighAsItWas) {
    test::ClickOn(remote_.Picture15);
    test::PressOn(remote_.Picture17, base::kLeftButton, 60, 60);
    test::MoveHolding(remote_.Picture17, base::kLeftButton, 60, 60 + 1500);
    test::ReleaseOn(remote_.Picture17, base::kLeftButton, 60, 60);
    const base::Twips grown = remote_.Height();
    EXPECT_EQ(grown, face::kFirstExpandedHeight + 1500);
    test::ClickOn(remote_.Picture15);
    test::ClickOn(remote_.Picture15);
    EXPECT_EQ(remote_.Height(), grown);
    EXPECT_EQ(ListBottom() + 20, remote_.Picture17.Top());
}

class Grips : public RemoteButtons {
protected:
    void Drag(forms::PictureBox& grip, base::Twips x, base::Twips y) {
        test::PressOn(grip, base::kLeftButton, 60, 60);
        test::MoveHolding(grip, base::kLeftButton, 60 + x, 60 + y);
        test::ReleaseOn(grip, base::kLeftButton, 60, 60);
    }
};

TEST_F(Grips, OfTheBarSetsTheWidthOnly) {
    const base::Twips height = remote_.Height();
    Drag(remote_.Picture18, 1500, 900);
    EXPECT_EQ(remote_.Width(), face::kSmallestWidth + 1500);
    EXPECT_EQ(remote_.Height(), height);
}

TEST_F(Grips, MakeTheTitleAndTheTrackLongerAndMoveTheRightSide) {
    Drag(remote_.Picture18, 1500, 0);
    EXPECT_EQ(remote_.Label1.Width(), face::kTitle.width + 1500);
    EXPECT_EQ(remote_.Line11.X2(), face::kPositionEnd.x + 1500);
    EXPECT_EQ(remote_.Line12.X2(), face::kPositionEnd.x + 1500);
    EXPECT_EQ(remote_.Picture1.Left(), face::kExit.left + 1500);
    EXPECT_EQ(remote_.Picture2.Left(), face::kPlay.left);
    Drag(remote_.Picture18, -1500, 0);
    EXPECT_EQ(remote_.Picture1.Left(), face::kExit.left);
    EXPECT_EQ(remote_.Label1.Width(), face::kTitle.width);
}

TEST_F(Grips, DoNotMakeTheRemoteTooSmall) {
    Drag(remote_.Picture18, -6000, 0);
    EXPECT_EQ(remote_.Width(), face::kSmallestWidth);
    test::ClickOn(remote_.Picture15);
    Drag(remote_.Picture17, -6000, -9000);
    EXPECT_EQ(remote_.Width(), face::kSmallestWidth);
    EXPECT_EQ(remote_.Height(), face::kSmallestHeight);
    EXPECT_GT(remote_.List1.Height(), 0);
}

TEST_F(Grips, LetTheListGrowWithTheRemote) {
    test::ClickOn(remote_.Picture15);
    const base::Twips width = remote_.List1.Width();
    const base::Twips height = remote_.List1.Height();
    Drag(remote_.Picture17, 1500, 900);
    EXPECT_EQ(remote_.List1.Width(), width + 1500);
    EXPECT_EQ(remote_.List1.Height(), height + 900);
}

TEST_F(Grips, KeepAKnobOnItsTrack) {
    Drag(remote_.Picture18, 1500, 0);
    player_.engine.position = player_.engine.duration;
    remote_.Timer1.Timer();
    Drag(remote_.Picture18, -1500, 0);
    EXPECT_LE(remote_.Picture12.Left() + remote_.Picture12.Width(), remote_.Line12.X2());
}

TEST_F(PlaylistArea, OpensInsideTheScreen) {
    const base::Rect area = forms::WorkAreaAt({0, 0});
    remote_.MoveRemote({900, area.bottom() - 1500});
    test::ClickOn(remote_.Picture15);
    EXPECT_LE(remote_.Top() + remote_.Height(), area.bottom() + 15);
    EXPECT_NEAR(remote_.Height(), face::kFirstExpandedHeight, 15);
    EXPECT_EQ(remote_.plY, base::RoundHalfEven(remote_.Top()));
}

TEST_F(Grips, ThatAreHeldWhileTheListIsHiddenLetGo) {
    test::ClickOn(remote_.Picture15);
    test::PressOn(remote_.Picture17, base::kLeftButton, 60, 60);
    test::PressKeyIn(remote_.Picture15, base::kKeySpace);
    test::MoveHolding(remote_.Picture17, base::kLeftButton, 60, 3000);
    EXPECT_NEAR(remote_.Height(), face::kCompactHeight, 15);
}

}  // namespace
}  // namespace nqp::remote
