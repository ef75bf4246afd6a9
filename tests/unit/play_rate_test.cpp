#include "video/play_rate.h"

#include <gtest/gtest.h>

namespace nqp::video {
namespace {

TEST(PlayRate, IsNormalInTheMiddleOfTheSlider) {
    EXPECT_EQ(RateOfStep(0), 1.0);
    EXPECT_EQ(StepOfRate(1.0), 0);
}

TEST(PlayRate, DoublesByEqualDistances) {
    EXPECT_EQ(RateOfStep(20), 2.0);
    EXPECT_EQ(RateOfStep(40), 4.0);
    EXPECT_EQ(RateOfStep(-20), 0.5);
    EXPECT_EQ(RateOfStep(-40), 0.25);
}

TEST(PlayRate, OfEveryStepComesBack) {
    for (int step = kSlowestStep; step <= kFastestStep; ++step) {
        EXPECT_EQ(StepOfRate(RateOfStep(step)), step);
    }
}

TEST(PlayRate, StaysInRange) {
    EXPECT_EQ(RateOfStep(1000), 4.0);
    EXPECT_EQ(StepOfRate(100.0), kFastestStep);
    EXPECT_EQ(StepOfRate(0.0), kSlowestStep);
    EXPECT_EQ(RateOfText("9"), 4.0);
    EXPECT_EQ(RateOfText("0.1"), 0.25);
}

TEST(PlayRate, ReadsAPointAndAComma) {
    EXPECT_EQ(RateOfText("1.5"), 1.5);
    EXPECT_EQ(RateOfText("1,5"), 1.5);
    EXPECT_EQ(RateOfText(" 0.75 "), 0.75);
    EXPECT_EQ(RateOfText("1.333"), 1.33);
}

TEST(PlayRate, RefusesWhatIsNoRate) {
    for (const char* text : {"", "fast", "-1", "0", "1.5x", "1.5.2"}) {
        EXPECT_EQ(RateOfText(text), std::nullopt) << text;
    }
}

TEST(PlayRate, IsShownWithTwoDecimals) {
    EXPECT_EQ(TextOfRate(1.0), "1.00");
    EXPECT_EQ(TextOfRate(0.25), "0.25");
}

}  // namespace
}  // namespace nqp::video
