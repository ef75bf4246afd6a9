#include "remote/position_slider.h"

#include <gtest/gtest.h>

#include "forms/run_time_error.h"

namespace nqp::remote {
namespace {

constexpr PositionTrack kTrack{100, 1100, 100, 1100, 200};  // room for 800 twips

TEST(PositionTrack, KeepsTheKnobBetweenItsEnds) {
    EXPECT_EQ(kTrack.Clamped(99), 100);
    EXPECT_EQ(kTrack.Clamped(100), 100);
    EXPECT_EQ(kTrack.Clamped(500), 500);
    EXPECT_EQ(kTrack.Clamped(900), 900);
    EXPECT_EQ(kTrack.Clamped(901), 900);
}

TEST(PositionTrack, MeasuresAtTheLeftEdgeOfTheKnob) {
    EXPECT_EQ(kTrack.SecondAt(100, 60), 0);
    EXPECT_EQ(kTrack.SecondAt(500, 60), 30);
    EXPECT_EQ(kTrack.SecondAt(900, 60), 60);
}

TEST(PositionTrack, DropsTheFractionOfASecond) {
    EXPECT_EQ(kTrack.SecondAt(900, 59.9), 59);
    EXPECT_EQ(kTrack.SecondAt(501, 60), 30);
    EXPECT_EQ(kTrack.SecondAt(499, 60), 29);
}

TEST(PositionTrack, StandsForTheBeginningWhenNothingIsLoaded) {
    EXPECT_EQ(kTrack.SecondAt(900, 0), 0);
}

TEST(PositionTrack, MeasuresAgainstItsOtherLine) {
    constexpr PositionTrack apart{100, 1100, 0, 1200, 200};
    EXPECT_EQ(apart.Clamped(0), 100);
    EXPECT_EQ(apart.SecondAt(500, 100), 50);
}

TEST(PositionTrack, AsLongAsItsKnobCannotBeMeasured) {
    constexpr PositionTrack full{100, 300, 100, 300, 200};
    EXPECT_FALSE(full.HasRoom());
    EXPECT_THROW(static_cast<void>(full.SecondAt(100, 60)), forms::RunTimeError);
}

TEST(PositionTrack, PlacesTheKnobByThePosition) {
    EXPECT_EQ(kTrack.LeftAt(0, 60), 100);
    EXPECT_EQ(kTrack.LeftAt(15, 60), 300);
    EXPECT_EQ(kTrack.LeftAt(60, 60), 900);
}

}  // namespace
}  // namespace nqp::remote
