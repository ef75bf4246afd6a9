#include "remote/time_read_out.h"

#include <gtest/gtest.h>

#include "base/time_text.h"

namespace nqp::remote {
namespace {

constexpr double kHour = 3600.0;

class TimeReadOutTest : public testing::Test {
protected:
    std::string Read(double position) { return time_.Read(position, kHour, loading_); }

    TimeReadOut time_;
    bool loading_ = false;
};

TEST(TimeText, HasTwoDigitsForEachPart) {
    EXPECT_EQ(base::TimeText(0), "00:00:00");
    EXPECT_EQ(base::TimeText(59), "00:00:59");
    EXPECT_EQ(base::TimeText(60), "00:01:00");
    EXPECT_EQ(base::TimeText(3599), "00:59:59");
    EXPECT_EQ(base::TimeText(3723), "01:02:03");
    EXPECT_EQ(base::TimeText(100 * 3600), "100:00:00");
}

TEST_F(TimeReadOutTest, RoundsToTheNearestSecondHalvesToTheEvenOne) {
    EXPECT_EQ(Read(3725.5), "01:02:06");
    EXPECT_EQ(Read(3724.5), "01:02:04");
    EXPECT_EQ(Read(0.4), "00:00:00");
}

TEST_F(TimeReadOutTest, ShowsTheTotalWhenItIsToldTo) {
    time_.show_total = true;
    EXPECT_EQ(time_.Read(0, 95 * 60, loading_), "01:35:00");
    EXPECT_EQ(time_.Read(12, 95 * 60, loading_), "01:35:00");
}

TEST_F(TimeReadOutTest, SaysLoadingFromTheSecondReadingOfAClipUntilItMoves) {
    time_.StartClip();
    loading_ = true;
    EXPECT_EQ(Read(0), "00:00:00");
    EXPECT_EQ(Read(0), "Loading...");
    EXPECT_EQ(Read(0.4), "Loading...");
    EXPECT_EQ(Read(0.6), "00:00:01");
    EXPECT_FALSE(loading_);
    EXPECT_EQ(Read(0.6), "00:00:01");
}

TEST_F(TimeReadOutTest, SaysLoadingAfterAClipThatEndedElsewhere) {
    Read(42);
    time_.StartClip();
    loading_ = true;
    EXPECT_EQ(Read(0), "00:00:00");
    EXPECT_EQ(Read(0), "Loading...");
}

TEST_F(TimeReadOutTest, SaysLoadingWhenAClipIsPlayedAgain) {
    Read(0);
    loading_ = true;
    EXPECT_EQ(Read(0), "Loading...");
    EXPECT_EQ(Read(1), "00:00:01");
    EXPECT_EQ(Read(1), "00:00:01");
}

TEST_F(TimeReadOutTest, NeverSaysLoadingWhileNothingIsStarted) {
    for (int reading = 0; reading < 3; ++reading)
        EXPECT_EQ(Read(5), "00:00:05");
}

TEST_F(TimeReadOutTest, LeavesLoadingAloneWhileItShowsTheTotal) {
    time_.show_total = true;
    loading_ = true;
    EXPECT_EQ(Read(3), "01:00:00");
    EXPECT_TRUE(loading_);
}

}  // namespace
}  // namespace nqp::remote
