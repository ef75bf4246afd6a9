#include <gtest/gtest.h>

#include <vector>

#include "player.h"

namespace nqp::remote {
namespace {

using test::Player;
using Calls = std::vector<std::string>;

constexpr base::Twips kFarOut = 30000;

class RemoteSliders : public testing::Test {
protected:
    void SetUp() override {
        player_.Start();
        player_.engine.Open("C:\\clip.avi");
        player_.engine.ForgetCalls();
    }
    // The knob is dragged by a distance with the pointer at the same place inside it.
    void Drag(forms::PictureBox& knob, base::Twips x, base::Twips y) {
        test::PressOn(knob, base::kLeftButton, 60, 60);
        test::MoveHolding(knob, base::kLeftButton, 60 + x, 60 + y);
        test::ReleaseOn(knob, base::kLeftButton, 60, 60);
    }
    base::Twips LastLeft() const { return remote_.Line12.X2() - remote_.Picture12.Width(); }
    base::Twips LastTop() const { return remote_.Line13.Y2() - remote_.Picture13.Height(); }

    Player player_;
    Form4& remote_ = player_.form4;
};

using PositionKnob = RemoteSliders;

TEST_F(PositionKnob, SeeksWhenItIsLetGoAndNotBefore) {
    test::PressOn(remote_.Picture12, base::kLeftButton, 60, 60);
    test::MoveHolding(remote_.Picture12, base::kLeftButton, 60 + 1500, 60);
    EXPECT_EQ(player_.engine.calls, Calls{});
    test::ReleaseOn(remote_.Picture12, base::kLeftButton, 60, 60);
    const double way = static_cast<double>(LastLeft() - remote_.Line11.X1());
    const int second = base::Floor(1500 / way * player_.engine.duration);
    EXPECT_EQ(player_.engine.calls, Calls{"CurrentPosition = " + std::to_string(second)});
    EXPECT_EQ(remote_.LastSeekTarget(), second);
}

TEST_F(PositionKnob, StopsAtTheEndsOfItsTrack) {
    Drag(remote_.Picture12, kFarOut, 0);
    EXPECT_EQ(remote_.Picture12.Left(), LastLeft());
    EXPECT_EQ(player_.engine.position, 100);
    Drag(remote_.Picture12, -kFarOut, 0);
    EXPECT_EQ(remote_.Picture12.Left(), remote_.Line12.X1());
    EXPECT_EQ(player_.engine.position, 0);
}

TEST_F(PositionKnob, AtTheEndSeeksToTheLastWholeSecond) {
    player_.engine.duration = 59.9;
    Drag(remote_.Picture12, kFarOut, 0);
    EXPECT_EQ(player_.engine.position, 59);
}

TEST_F(PositionKnob, LetGoWhereItWasPressedStillSeeks) {
    player_.engine.position = 33.4;
    remote_.Timer1.Timer();
    player_.engine.ForgetCalls();
    Drag(remote_.Picture12, 0, 0);
    EXPECT_EQ(player_.engine.calls.size(), 1U);
    EXPECT_NEAR(player_.engine.position, 33, 1);
}

TEST_F(PositionKnob, GoesToTheBeginningWhenNothingIsLoaded) {
    Player player;
    player.Start();
    player.engine.ForgetCalls();
    test::PressOn(player.form4.Picture12, base::kLeftButton, 60, 60);
    test::MoveHolding(player.form4.Picture12, base::kLeftButton, 900, 60);
    test::ReleaseOn(player.form4.Picture12, base::kLeftButton, 60, 60);
    EXPECT_EQ(player.engine.calls, Calls{"CurrentPosition = 0"});
}

TEST_F(PositionKnob, DoesNotMoveWithoutAPress) {
    const base::Twips left = remote_.Picture12.Left();
    test::MovePointerOver(remote_.Picture12, 900, 60);
    EXPECT_EQ(remote_.Picture12.Left(), left);
}

TEST_F(PositionKnob, IsDraggedWithAnyButton) {
    test::PressOn(remote_.Picture12, base::kRightButton, 60, 60);
    test::MoveHolding(remote_.Picture12, base::kRightButton, 60 + 1500, 60);
    test::ReleaseOn(remote_.Picture12, base::kRightButton, 60, 60);
    EXPECT_GT(player_.engine.position, 0);
}

TEST_F(PositionKnob, OnATrackWithoutRoomSeeksNowhere) {
    remote_.Line11.SetEnds({remote_.Line11.X1(), remote_.Line11.Y1()},
                           {remote_.Line11.X1() + remote_.Picture12.Width(), remote_.Line11.Y1()});
    Drag(remote_.Picture12, 0, 0);
    EXPECT_EQ(player_.engine.calls, Calls{});
}

TEST_F(PositionKnob, KeepsItsWidth) {
    remote_.Picture12.Move({remote_.Picture12.Left(), remote_.Picture12.Top(), 900, 210});
    EXPECT_EQ(remote_.Picture12.Width(), 255);
}

TEST_F(PositionKnob, AnswersTheArrowKeys) {
    player_.engine.position = 50;
    test::PressKeyIn(remote_.Picture12, base::kKeyRight);
    EXPECT_EQ(player_.engine.position, 55);
    test::PressKeyIn(remote_.Picture12, base::kKeyLeft);
    test::PressKeyIn(remote_.Picture12, base::kKeyLeft);
    EXPECT_EQ(player_.engine.position, 45);
    test::PressKeyIn(remote_.Picture12, base::kKeyHome);
    EXPECT_EQ(player_.engine.position, 0);
    test::PressKeyIn(remote_.Picture12, base::kKeyLeft);
    EXPECT_EQ(player_.engine.position, 0);
    test::PressKeyIn(remote_.Picture12, base::kKeyEnd);
    EXPECT_EQ(player_.engine.position, 100);
    test::PressKeyIn(remote_.Picture12, base::kKeyPageDown);
    EXPECT_EQ(player_.engine.position, 40);
}

using VolumeKnob = RemoteSliders;

TEST_F(VolumeKnob, SetsTheVolumeWhileItIsDragged) {
    test::PressOn(remote_.Picture13, base::kLeftButton, 60, 60);
    test::MoveHolding(remote_.Picture13, base::kLeftButton, 60, 60 + 150);
    const VolumeTrack track{remote_.Line13.Y1(), remote_.Line13.Y2(), remote_.Picture13.Height()};
    EXPECT_EQ(player_.engine.Volume(), track.VolumeAt(remote_.Line13.Y1() + 150));
    test::MoveHolding(remote_.Picture13, base::kLeftButton, 60, 60 + kFarOut);
    EXPECT_EQ(player_.engine.Volume(), core::kSilent);
    test::MoveHolding(remote_.Picture13, base::kLeftButton, 60, 60 - kFarOut);
    EXPECT_EQ(player_.engine.Volume(), core::kLoudest);
    player_.engine.ForgetCalls();
    test::ReleaseOn(remote_.Picture13, base::kLeftButton, 60, 60);
    EXPECT_EQ(player_.engine.calls, Calls{});
}

TEST_F(VolumeKnob, AtTheBottomIsSilenceInTwoSteps) {
    player_.engine.ForgetCalls();
    Drag(remote_.Picture13, 0, kFarOut);
    EXPECT_EQ(remote_.Picture13.Top(), LastTop());
    EXPECT_EQ(player_.engine.calls, (Calls{"Volume = -2500", "Volume = -10000"}));
}

TEST_F(VolumeKnob, JustAboveTheBottomIsQuietAndNotSilent) {
    remote_.Picture13.SetTop(LastTop() - 1);
    Drag(remote_.Picture13, 0, 0);
    EXPECT_GT(player_.engine.Volume(), -2500);
    EXPECT_LT(player_.engine.Volume(), -2400);
}

TEST_F(VolumeKnob, AnswersTheArrowKeys) {
    test::PressKeyIn(remote_.Picture13, base::kKeyEnd);
    EXPECT_EQ(player_.engine.Volume(), core::kSilent);
    test::PressKeyIn(remote_.Picture13, base::kKeyUp);
    EXPECT_EQ(player_.engine.Volume(), -2375);
    test::PressKeyIn(remote_.Picture13, base::kKeyHome);
    EXPECT_EQ(player_.engine.Volume(), core::kLoudest);
    test::PressKeyIn(remote_.Picture13, base::kKeyPageDown);
    EXPECT_EQ(player_.engine.Volume(), -500);
}

TEST_F(VolumeKnob, TellsItsPlaceToThoseWhoCannotSeeIt) {
    EXPECT_EQ(remote_.Picture13.State().accessibleValue, "100 %");
    Drag(remote_.Picture13, 0, kFarOut);
    EXPECT_EQ(remote_.Picture13.State().accessibleValue, "0 %");
}

// The timer is real in one of the backends, so that a test may be late, never early.
class Monitor : public RemoteSliders {
protected:
    std::string TimeShown() const { return test::TextOn(remote_.Label2); }
    bool Shows(const std::string& text) const {
        return test::WaitUntil([&] { return TimeShown() == text; });
    }
};

TEST_F(Monitor, MovesTheKnobAndWritesTheTime) {
    player_.engine.position = 75;
    EXPECT_TRUE(Shows("00:01:15"));
    const base::Twips way = LastLeft() - remote_.Line11.X1();
    EXPECT_NEAR(remote_.Picture12.Left(), remote_.Line11.X1() + way * 0.75F, 1);
    player_.engine.position = 100;
    EXPECT_TRUE(Shows("00:01:40"));
    EXPECT_NEAR(remote_.Picture12.Left(), LastLeft(), 1);
}

TEST_F(Monitor, KeepsItsLastReadingWhenNothingIsLoaded) {
    player_.engine.position = 75;
    ASSERT_TRUE(Shows("00:01:15"));
    const base::Twips left = remote_.Picture12.Left();
    player_.engine.Open("bad.avi");
    remote_.Timer1.Timer();
    EXPECT_EQ(TimeShown(), "00:01:15");
    EXPECT_EQ(remote_.Picture12.Left(), left);
}

TEST_F(Monitor, LeavesTheKnobOfAClipWithoutADuration) {
    player_.engine.duration = 0;
    const base::Twips left = remote_.Picture12.Left();
    remote_.Timer1.Timer();
    EXPECT_EQ(remote_.Picture12.Left(), left);
    EXPECT_EQ(TimeShown(), "00:00:00");
}

TEST_F(Monitor, ShowsTheTotalAfterAClickOnTheTime) {
    player_.engine.duration = 95 * 60;
    test::ClickOn(remote_.Label2);
    EXPECT_TRUE(Shows("01:35:00"));
    player_.engine.position = 12;
    remote_.Timer1.Timer();
    EXPECT_EQ(TimeShown(), "01:35:00");
    test::ClickOn(remote_.Label2);
    EXPECT_TRUE(Shows("00:00:12"));
}

TEST_F(Monitor, ShowsWhereTheKnobIsWhileItIsDragged) {
    test::PressOn(remote_.Picture12, base::kLeftButton, 60, 60);
    test::MoveHolding(remote_.Picture12, base::kLeftButton, 60 + kFarOut, 60);
    player_.engine.position = 3;
    EXPECT_TRUE(Shows("00:01:40"));
    EXPECT_EQ(remote_.Picture12.Left(), LastLeft());
    test::ReleaseOn(remote_.Picture12, base::kLeftButton, 60, 60);
    EXPECT_TRUE(Shows("00:01:40"));
}

TEST_F(Monitor, SaysLoadingUntilThePositionMoves) {
    player_.folder.Put("movie.avi", "a clip");
    player_.dialogs.answer = base::Utf8FromPath(player_.folder.Path() / "movie.avi");
    remote_.Picture11_Click();
    EXPECT_TRUE(Shows("Loading..."));
    EXPECT_TRUE(remote_.Flags().loading);
    player_.engine.position = 1;
    EXPECT_TRUE(Shows("00:00:01"));
    EXPECT_FALSE(remote_.Flags().loading);
}

TEST_F(Monitor, GoesOnWhileTheWindowsAreHidden) {
    remote_.Hide();
    player_.engine.position = 9;
    EXPECT_TRUE(Shows("00:00:09"));
}

TEST_F(PositionKnob, SeeksNowhereWithoutAPress) {
    player_.engine.position = 33.7;
    player_.engine.ForgetCalls();
    test::ReleaseOn(remote_.Picture12, base::kLeftButton, 60, 60);
    EXPECT_EQ(player_.engine.calls, Calls{});
}

TEST_F(PositionKnob, SeeksNowhereWithTheKeysInAClipWithoutADuration) {
    player_.engine.duration = 0;
    test::PressKeyIn(remote_.Picture12, base::kKeyRight);
    EXPECT_EQ(player_.engine.calls, Calls{});
}

}  // namespace
}  // namespace nqp::remote
