#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "player.h"

namespace nqp::remote {
namespace {

using test::Player;
using Calls = std::vector<std::string>;

constexpr base::Rect kVideo{1500, 1800, 4500, 3000};
constexpr base::Twips kRight = 600;
constexpr base::Twips kDown = 900;

bool Contains(const Calls& calls, const std::string& call) {
    return std::find(calls.begin(), calls.end(), call) != calls.end();
}

class RemoteFrame : public testing::Test {
protected:
    void Start(bool moveAlso) {
        player_.PutSetting(core::kMoveAlso, moveAlso ? "1" : "0");
        player_.PutSetting(core::kRememberWindow, "1");
        player_.PutSetting(core::kVideoLeft, "1500");
        player_.PutSetting(core::kVideoTop, "1800");
        player_.PutSetting(core::kVideoWidth, "4500");
        player_.PutSetting(core::kVideoHeight, "3000");
        player_.Start();
        player_.engine.ForgetCalls();
    }
    // The person takes the remote by its bare surface and lets go further to the right and down.
    void DragRemote(int button = base::kLeftButton) {
        const base::Rect from = remote_.Bounds();
        test::OnNextDrag(remote_, [this, from](forms::HitCode code) {
            EXPECT_EQ(code, forms::HitCode::Caption);
            videoSeenInDrag_ = test::OnScreen(player_.form1);
            return base::Rect{from.left + kRight, from.top + kDown, from.width, from.height};
        });
        test::PressOn(remote_, button, 30, 30);
        EXPECT_EQ(remote_.Left(), from.left + kRight);
    }

    Player player_{"C:\\clips\\movie.avi"};
    Form4& remote_ = player_.form4;
    bool videoSeenInDrag_ = false;
};

TEST_F(RemoteFrame, IsDraggedByItsSurfaceWithAnyButton) {
    Start(false);
    for (const int button : {base::kLeftButton, base::kRightButton})
        DragRemote(button);
    EXPECT_EQ(remote_.plX, base::RoundHalfEven(remote_.Left()));
    EXPECT_EQ(remote_.plY, base::RoundHalfEven(remote_.Top()));
}

TEST_F(RemoteFrame, LeavesTheVideoWindowWhereItIsUnlessToldOtherwise) {
    Start(false);
    DragRemote();
    EXPECT_TRUE(videoSeenInDrag_);
    EXPECT_EQ(player_.form1.Bounds(), kVideo);
    EXPECT_EQ(player_.form1.mX, 1500);
}

TEST_F(RemoteFrame, TakesTheVideoWindowAlong) {
    Start(true);
    DragRemote();
    EXPECT_FALSE(videoSeenInDrag_);
    EXPECT_TRUE(test::OnScreen(player_.form1));
    EXPECT_EQ(player_.form1.Bounds(),
              (base::Rect{kVideo.left + kRight, kVideo.top + kDown, 4500, 3000}));
    EXPECT_EQ(player_.form1.mX, 2100);
    EXPECT_EQ(player_.form1.mY, 2700);
    EXPECT_EQ(remote_.plX, base::RoundHalfEven(remote_.Left()));
}

TEST_F(RemoteFrame, TakesTheVideoWindowAlongAgainAndAgain) {
    Start(true);
    DragRemote();
    DragRemote();
    EXPECT_EQ(player_.form1.Left(), kVideo.left + 2 * kRight);
    EXPECT_EQ(player_.form1.Top(), kVideo.top + 2 * kDown);
}

TEST_F(RemoteFrame, KeepsThePictureOfTheWindowThatItTakesAlong) {
    Start(true);
    test::GoTo(player_.form1);
    test::GoTo(remote_);
    remote_.Picture7_Click();
    ASSERT_TRUE(player_.engine.Visible());
    DragRemote();
    EXPECT_TRUE(player_.engine.Visible());
    EXPECT_TRUE(test::Active(remote_));
}

TEST_F(RemoteFrame, SavesWhereTheVideoWindowWasTakenTo) {
    Start(true);
    DragRemote();
    remote_.Picture1_Click();
    EXPECT_EQ(player_.Setting(core::kVideoLeft), "2100");
    EXPECT_EQ(player_.Setting(core::kVideoTop), "2700");
}

TEST_F(RemoteFrame, LeavesThePictureOfAnOpenClipAlone) {
    Start(false);
    DragRemote();
    EXPECT_FALSE(Contains(player_.engine.calls, "Visible = false"));
}

TEST(RemoteFrameWithoutAClip, HidesThePictureWhenItIsDragged) {
    Player player;
    player.Start();
    player.engine.ForgetCalls();
    test::OnNextDrag(player.form4, [&](forms::HitCode) { return player.form4.Bounds(); });
    test::PressOn(player.form4, base::kLeftButton, 30, 30);
    EXPECT_TRUE(Contains(player.engine.calls, "Visible = false"));
}

TEST(RemoteFrameAtTheEnd, PutsEverythingAwayInOrder) {
    Player player;
    player.PutSetting(core::kVolumeKnobTop, "200");
    player.Start();
    test::CloseBySystem(player.form4);
    EXPECT_FALSE(player.form4.Loaded());
    EXPECT_FALSE(player.form1.Loaded());
    EXPECT_EQ(player.tray.calls.back(), "Delete ");
    EXPECT_EQ(player.Setting(core::kVolumeKnobTop), "200");
}

TEST(RemoteTitle, IsWholeInTheToolTipHoweverLongItIs) {
    const std::string name(400, 'x');
    Player player("C:\\clips\\" + name + ".avi");
    player.Start();
    EXPECT_EQ(player.form4.Label1.ToolTipText(), name);
    EXPECT_EQ(player.form4.Label1.Caption(), name);
}

TEST(TrayMenu, ShowsAndHidesAndClosesFromTheIcon) {
    Player player("/START");
    player.Start();
    test::CancelNextMenu(player.form4);
    test::ReportFromTrayIcon(player.form4, 517);
    EXPECT_FALSE(test::OnScreen(player.form1));
    EXPECT_FALSE(test::OnScreen(player.form4));
    test::ChooseInNextMenu(player.form4, player.form1.med, player.form1.i1);
    test::ReportFromTrayIcon(player.form4, 517);
    EXPECT_TRUE(test::OnScreen(player.form4));
    test::ChooseInNextMenu(player.form4, player.form1.med, player.form1.i2);
    test::ReportFromTrayIcon(player.form4, 517);
    EXPECT_FALSE(test::OnScreen(player.form1));
    EXPECT_FALSE(test::OnScreen(player.form4));
    test::ChooseInNextMenu(player.form4, player.form1.med, player.form1.i3);
    test::ReportFromTrayIcon(player.form4, 517);
    EXPECT_FALSE(player.form4.Loaded());
}

TEST_F(RemoteFrame, LeavesTheFullScreenPictureAlone) {
    Start(true);
    remote_.Picture7_Click();
    player_.engine.SetDisplaySize(core::kFullScreenDisplay);
    DragRemote();
    EXPECT_EQ(player_.engine.DisplaySize(), core::kFullScreenDisplay);
    EXPECT_EQ(player_.form1.Bounds(), kVideo);
}

TEST_F(RemoteFrame, KeepsTheOtherWindowsOfTheVideoOpen) {
    Start(true);
    player_.form6.Show();
    DragRemote();
    EXPECT_TRUE(player_.form6.Loaded());
}

TEST_F(RemoteFrame, TakesTheVideoWindowAsFarAsItIsDraggedWhereverItWasBefore) {
    Start(true);
    remote_.Move({remote_.Left() + 3000, remote_.Top(), remote_.Width(), remote_.Height()});
    DragRemote();
    EXPECT_EQ(player_.form1.Left(), kVideo.left + kRight);
}

TEST_F(RemoteFrame, ClosedInTheMiddleOfADragStaysClosed) {
    Start(true);
    test::OnNextDrag(remote_, [this](forms::HitCode) {
        remote_.Picture1_Click();
        return base::Rect{};
    });
    test::PressOn(remote_, base::kLeftButton, 30, 30);
    EXPECT_FALSE(remote_.Loaded());
    EXPECT_FALSE(player_.form1.Loaded());
}

}  // namespace
}  // namespace nqp::remote
