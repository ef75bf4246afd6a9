#include <gtest/gtest.h>

#include <algorithm>

#include "core/settings_file.h"
#include "player.h"

namespace nqp::test {
namespace {

constexpr char kFile[] = "C:\\clips\\evening.news.avi";

// Sets the present minute.
void PutSchedule(const Player& player) {
    const core::LocalTime& now = player.clock.now;
    player.PutSetting(core::kScheduledMonth, std::to_string(now.month));
    player.PutSetting(core::kScheduledDay, std::to_string(now.day));
    player.PutSetting(core::kScheduledHour, std::to_string(now.hour));
    player.PutSetting(core::kScheduledMinute, std::to_string(now.minute));
    player.PutSetting(core::kScheduledFile, kFile);
}

// "/START": the program lives in its icon until the minute comes.
class ScheduledPlay : public testing::Test {
protected:
    ScheduledPlay() { PutSchedule(player_); }
    void Tick() const { remote_.Timer2.Timer(); }
    bool Opened() const { return !player_.engine.FileName().empty(); }

    Player player_{"/START"};
    remote::Form4& remote_ = player_.form4;
};

TEST_F(ScheduledPlay, OpensItsFileAndShowsTheWindows) {
    player_.Start();
    ASSERT_FALSE(OnScreen(player_.form1));
    Tick();
    EXPECT_EQ(player_.engine.FileName(), kFile);
    EXPECT_EQ(remote_.glob_FilePath(), kFile);
    EXPECT_TRUE(OnScreen(player_.form1));
    EXPECT_TRUE(OnScreen(remote_));
    EXPECT_EQ(TextOn(remote_.Label1), "Nuvex Quillon Player");
    EXPECT_EQ(remote_.Label1.ToolTipText(), "Nuvex Quillon Player");
    EXPECT_TRUE(remote_.Flags().ready_to_play);
    EXPECT_FALSE(remote_.Flags().bPause);
}

TEST(ScheduledFile, PlaysInSightWithAutostartOffAndOn) {
    for (const char* autostart : {"0", "1"}) {
        Player player("/START");
        PutSchedule(player);
        player.PutSetting(core::kAutostartPlayback, autostart);
        player.Start();
        player.form4.Timer2.Timer();
        EXPECT_EQ(player.engine.State(), core::PlayState::Playing) << autostart;
        EXPECT_TRUE(player.engine.Visible()) << autostart;
        EXPECT_TRUE(player.form4.Flags().loading) << autostart;
    }
}

TEST_F(ScheduledPlay, ResetsTheFragmentBounds) {
    player_.Start();
    remote_.Text1.SetText("12");
    remote_.Text6.SetText("34");
    Tick();
    EXPECT_EQ(remote_.Text1.Text(), "00");
    EXPECT_EQ(remote_.Text6.Text(), "00");
}

TEST_F(ScheduledPlay, WaitsForItsMinute) {
    player_.Start();
    const core::LocalTime then = player_.clock.now;
    player_.clock.now.minute = then.minute - 1;
    Tick();
    EXPECT_FALSE(Opened());
    player_.clock.now.minute = then.minute;
    Tick();
    EXPECT_TRUE(Opened());
}

// The timer is quicker than the minute.
TEST_F(ScheduledPlay, StartsAgainInTheSameMinuteAndNotInTheNext) {
    player_.Start();
    Tick();
    player_.engine.ForgetCalls();
    Tick();
    EXPECT_EQ(std::ranges::count(player_.engine.calls, std::string("Open ") + kFile), 1);
    player_.engine.ForgetCalls();
    player_.clock.now.minute += 1;
    Tick();
    EXPECT_TRUE(player_.engine.calls.empty());
    EXPECT_LT(remote_.Timer2.Interval(), 60'000);
}

TEST_F(ScheduledPlay, ThatWasNeverSetNeverStarts) {
    for (const int record : {core::kScheduledMonth, core::kScheduledDay, core::kScheduledHour,
                             core::kScheduledMinute}) {
        player_.PutSetting(record, "");
    }
    player_.clock.now = {.month = 1, .day = 1, .hour = 0, .minute = 0};
    player_.Start();
    Tick();
    EXPECT_FALSE(Opened());
}

TEST_F(ScheduledPlay, WithoutAFileShowsTheWindowsAndPlaysNothing) {
    player_.PutSetting(core::kScheduledFile, "");
    player_.Start();
    Tick();
    EXPECT_EQ(player_.engine.State(), core::PlayState::Stopped);
    EXPECT_TRUE(OnScreen(remote_));
}

TEST_F(ScheduledPlay, TakesTheScheduleOfTheOptionsAtOnce) {
    player_.PutSetting(core::kScheduledDay, "");
    player_.Start();
    Tick();
    EXPECT_FALSE(Opened());
    player_.ChangeOptions([this] { ChooseItem(player_.form2.Combo2, player_.clock.now.day - 1); });
    Tick();
    EXPECT_TRUE(Opened());
}

}  // namespace
}  // namespace nqp::test
