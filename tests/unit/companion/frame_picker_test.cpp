#include "cutter/frame_picker.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace nqp::companion {
namespace {

constexpr double kNtsc = 30000.0 / 1001;

// How often each of the frames at these times is written.
std::vector<std::int64_t> Picked(FramePicker picker, const std::vector<double>& times, double end) {
    std::vector<std::int64_t> counts;
    picker.Begin(times.front());
    for (std::size_t i = 1; i < times.size(); ++i)
        counts.push_back(picker.Next(times[i]));
    counts.push_back(picker.Finish(end));
    return counts;
}

std::vector<double> Regular(double rate, int count, double first = 0) {
    std::vector<double> times;
    for (int i = 0; i < count; ++i)
        times.push_back(first + i / rate);
    return times;
}

std::int64_t Sum(const std::vector<std::int64_t>& counts) {
    std::int64_t sum = 0;
    for (const auto count : counts)
        sum += count;
    return sum;
}

TEST(FramePicker, WritesEveryFrameOfARegularClipOnce) {
    const auto counts = Picked({25, 100}, Regular(25, 75, 2.0), 5.0);
    EXPECT_EQ(counts, std::vector<std::int64_t>(75, 1));
}

TEST(FramePicker, DoesSoForTimesRoundedToMilliseconds) {
    std::vector<double> times = Regular(kNtsc, 900, 1001.0 / 30000 * 37);
    for (double& time : times)
        time = std::round(time * 1000) / 1000;
    const auto counts = Picked({kNtsc, 100}, times, times.back() + 0.0333);
    EXPECT_EQ(counts, std::vector<std::int64_t>(900, 1));
}

TEST(FramePicker, HalfOfTheFramesIsEverySecondOne) {
    const auto counts = Picked({25, 50}, Regular(25, 6), 0.24);
    EXPECT_EQ(counts, (std::vector<std::int64_t>{1, 0, 1, 0, 1, 0}));
}

TEST(FramePicker, SpreadsAnUnevenShare) {
    const auto counts = Picked({25, 40}, Regular(25, 10), 0.4);
    EXPECT_EQ(counts, (std::vector<std::int64_t>{1, 0, 1, 0, 0, 1, 0, 1, 0, 0}));
}

TEST(FramePicker, EveryShareKeepsTheLength) {
    for (int percentage = 1; percentage <= 100; ++percentage) {
        const auto counts = Picked({25, percentage}, Regular(25, 250), 10.0);
        EXPECT_EQ(Sum(counts), (250 * percentage + 99) / 100) << percentage;
    }
}

TEST(FramePicker, RepeatsAFrameThatIsShownForLonger) {
    const auto counts = Picked({10, 100}, {0.0, 0.1, 0.5, 0.6}, 1.0);
    EXPECT_EQ(counts, (std::vector<std::int64_t>{1, 4, 1, 4}));
}

TEST(FramePicker, PassesOverFramesThatComeTooFast) {
    const auto counts = Picked({10, 100}, {0.0, 0.01, 0.02, 0.1}, 0.2);
    EXPECT_EQ(counts, (std::vector<std::int64_t>{0, 0, 1, 1}));
}

TEST(FramePicker, EndsWithTheLastFrameBeforeTheEnd) {
    const auto counts = Picked({kNtsc, 100}, Regular(kNtsc, 90, 2.002), 5.0);
    EXPECT_EQ(Sum(counts), 90);
}

TEST(FramePicker, AFragmentShorterThanAFrameHasOne) {
    EXPECT_EQ(Picked({25, 100}, {2.0}, 2.001), (std::vector<std::int64_t>{1}));
    EXPECT_EQ(Picked({25, 1}, {2.0}, 2.001), (std::vector<std::int64_t>{1}));
}

TEST(FramePicker, FramesThatGoBackInTimeAreNotWrittenTwice) {
    const auto counts = Picked({25, 100}, {0.0, 0.04, 0.02, 0.08}, 0.12);
    EXPECT_EQ(Sum(counts), 3);
}

}  // namespace
}  // namespace nqp::companion
