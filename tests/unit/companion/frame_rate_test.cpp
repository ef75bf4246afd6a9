#include "cutter/frame_rate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace nqp::companion {
namespace {

std::vector<double> Regular(double rate, int count) {
    std::vector<double> times;
    for (int i = 0; i < count; ++i)
        times.push_back(i / rate);
    return times;
}

TEST(ChooseFrameRate, KeepsAGuessThatFits) {
    EXPECT_EQ(ChooseFrameRate({30000, 1001}, Regular(30000.0 / 1001, 100)),
              (FrameRate{30000, 1001}));
    EXPECT_EQ(ChooseFrameRate({50, 1}, Regular(10, 100)), (FrameRate{50, 1}));
}

TEST(ChooseFrameRate, AMeanOverPausesIsNoRate) {
    std::vector<double> times = Regular(25, 125);
    times.push_back(45);
    EXPECT_EQ(ChooseFrameRate({499, 60}, times), (FrameRate{25, 1}));
}

TEST(ChooseFrameRate, TheTickOfAClockIsNoRate) {
    EXPECT_EQ(ChooseFrameRate({90000, 1}, Regular(60000.0 / 1001, 100)), (FrameRate{60000, 1001}));
}

TEST(ChooseFrameRate, TimesInAnyOrderAndRoundedToMillisecondsWillDo) {
    std::vector<double> times = Regular(60, 100);
    for (double& time : times)
        time = std::round(time * 1000) / 1000;
    std::ranges::reverse(times);
    EXPECT_NEAR(ChooseFrameRate({8, 1}, times).Value(), 60, 3);
}

TEST(ChooseFrameRate, SomeFramesThatLieTooCloseDoNotCount) {
    std::vector<double> times = Regular(25, 200);
    times.push_back(1.0004);
    EXPECT_EQ(ChooseFrameRate({8, 1}, times), (FrameRate{25, 1}));
}

TEST(ChooseFrameRate, WithoutTimesTheGuessOrTheUsualOneIsTaken) {
    EXPECT_EQ(ChooseFrameRate({15, 1}, {}), (FrameRate{15, 1}));
    EXPECT_EQ(ChooseFrameRate({1000, 1}, {2.0}), (FrameRate{25, 1}));
    EXPECT_EQ(ChooseFrameRate({0, 0}, {}), (FrameRate{25, 1}));
}

TEST(ChooseFrameRate, APictureASecondIsRepeatedForAnExactEnd) {
    EXPECT_EQ(ChooseFrameRate({1, 2}, Regular(0.5, 50)), (FrameRate{20, 2}));
    EXPECT_EQ(ChooseFrameRate({1, 2'000'000'000}, {}), (FrameRate{25, 1}));
}

TEST(ChooseFrameRate, FramesAtNoRateAtAllMakeNotTooMany) {
    std::vector<double> times;
    for (int i = 0; i < 100; ++i)
        times.push_back(0.05 * i + 0.02 * std::sin(i));
    times.push_back(1.006);
    EXPECT_LE(ChooseFrameRate({90000, 1}, times).Value(), 120);
}

TEST(ChooseFrameRate, AnUnusualStepIsTakenAsItIs) {
    EXPECT_NEAR(ChooseFrameRate({1, 10}, Regular(7, 50)).Value(), 7, 0.01);
}

}  // namespace
}  // namespace nqp::companion
