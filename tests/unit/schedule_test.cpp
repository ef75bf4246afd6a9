#include "core/schedule.h"

#include <gtest/gtest.h>

#include "core/settings_file.h"
#include "options/schedule_summary.h"
#include "temp_folder.h"

namespace nqp {
namespace {

using options::ScheduleChoice;
using options::Summarize;

core::SharedSettings At(int month, int day, int hour, int minute) {
    core::SharedSettings settings;
    settings.scheduled_month = month;
    settings.scheduled_day = day;
    settings.scheduled_hour = hour;
    settings.scheduled_minute = minute;
    return settings;
}

TEST(Schedule, IsTheMinuteInWhichAllFourAreEqual) {
    const core::LocalTime now{.month = 12, .day = 31, .hour = 23, .minute = 59};
    EXPECT_TRUE(core::IsScheduled(At(12, 31, 23, 59), now));
    EXPECT_FALSE(core::IsScheduled(At(11, 31, 23, 59), now));
    EXPECT_FALSE(core::IsScheduled(At(12, 30, 23, 59), now));
    EXPECT_FALSE(core::IsScheduled(At(12, 31, 22, 59), now));
    EXPECT_FALSE(core::IsScheduled(At(12, 31, 23, 58), now));
}

TEST(Schedule, ThatWasNeverSetIsNeverReached) {
    EXPECT_FALSE(core::IsScheduled(At(0, 0, 0, 0), {.month = 1, .day = 1, .hour = 0, .minute = 0}));
}

ScheduleChoice Whole() {
    return {.month = 3, .day = 5, .hour = "7", .minute = "5", .file = "C:\\clips\\Sea & sun.avi"};
}

// What the dialog says and what the player does are the same for every time that can be entered.
TEST(ScheduleSummary, AgreesWithWhatPlays) {
    const test::TempFolder folder;
    for (const char* hour : {"", "0", "07", "7", "23", "24", "99999999999"}) {
        for (const char* minute : {"", "0", "05", "59", "60", "99999999999"}) {
            core::SettingsFile file(folder.Path());
            file.SetText(core::kScheduledMonth, "3");
            file.SetText(core::kScheduledDay, "5");
            file.SetText(core::kScheduledHour, hour);
            file.SetText(core::kScheduledMinute, minute);
            core::SharedSettings settings;
            file.ApplyFragmentsAndSchedule(settings);
            bool plays = false;
            for (int now = 0; now < 24 * 60; ++now) {
                plays = plays ||
                        core::IsScheduled(
                            settings, {.month = 3, .day = 5, .hour = now / 60, .minute = now % 60});
            }
            const auto summary = Summarize(
                {.month = 3, .day = 5, .hour = hour, .minute = minute, .file = "C:\\a.avi"});
            EXPECT_NE(summary.halfSet, plays) << hour << ":" << minute;
        }
    }
}

TEST(ScheduleSummary, SaysWhatWillPlayWhen) {
    EXPECT_EQ(Summarize(Whole()).sentence, "Plays Sea & sun.avi on 5 March at 7:05, every year.");
    EXPECT_FALSE(Summarize(Whole()).halfSet);
}

TEST(ScheduleSummary, TakesAnEmptyTimeForMidnight) {
    ScheduleChoice choice = Whole();
    choice.hour.clear();
    choice.minute.clear();
    EXPECT_EQ(Summarize(choice).sentence, "Plays Sea & sun.avi on 5 March at 0:00, every year.");
}

TEST(ScheduleSummary, KnowsTheLeapDay) {
    ScheduleChoice choice = Whole();
    choice.month = 2;
    choice.day = 29;
    EXPECT_EQ(Summarize(choice).sentence,
              "Plays Sea & sun.avi on 29 February at 7:05, in leap years.");
}

TEST(ScheduleSummary, SaysWhenNothingIsSet) {
    EXPECT_EQ(Summarize({}).sentence, "Nothing is scheduled.");
    EXPECT_FALSE(Summarize({}).halfSet);
    EXPECT_FALSE(Summarize({.hour = "0", .minute = "00", .file = {}}).halfSet);
}

TEST(ScheduleSummary, SaysWhatIsMissing) {
    ScheduleChoice choice = Whole();
    choice.file.clear();
    EXPECT_TRUE(Summarize(choice).halfSet);
    EXPECT_EQ(Summarize(choice).sentence, "Nothing will play: choose a file.");
    choice.day = 0;
    EXPECT_EQ(Summarize(choice).sentence, "Nothing will play: choose a day and a file.");
    choice.month = 0;
    EXPECT_EQ(Summarize(choice).sentence, "Nothing will play: choose a month, a day and a file.");
}

TEST(ScheduleSummary, KnowsTheDaysThatNoMonthHas) {
    ScheduleChoice choice = Whole();
    choice.month = 4;
    choice.day = 31;
    EXPECT_EQ(Summarize(choice).sentence, "Nothing will play: April has no day 31.");
    EXPECT_TRUE(Summarize(choice).halfSet);
}

TEST(ScheduleSummary, KnowsTheTimesThatNoDayHas) {
    for (const auto& [hour, minute] : std::initializer_list<std::pair<const char*, const char*>>{
             {"24", "0"}, {"0", "60"}, {"99999999999", "0"}, {"7", "99999999999"}}) {
        ScheduleChoice choice = Whole();
        choice.hour = hour;
        choice.minute = minute;
        EXPECT_TRUE(Summarize(choice).halfSet) << hour << ":" << minute;
        EXPECT_EQ(Summarize(choice).sentence,
                  "Nothing will play: the time goes from 0:00 to 23:59.");
    }
}

}  // namespace
}  // namespace nqp
