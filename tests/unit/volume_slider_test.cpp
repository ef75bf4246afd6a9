#include "remote/volume_slider.h"

#include <gtest/gtest.h>

#include "scripted_engine.h"

namespace nqp::remote {
namespace {

constexpr VolumeTrack kTrack{100, 1220, 120};  // the knob has 1000 twips to go

TEST(VolumeTrack, IsLoudestAtTheTop) {
    EXPECT_EQ(kTrack.VolumeAt(100), 0);
}

TEST(VolumeTrack, IsTwentyFiveDecibelQuieterAtTheBottom) {
    EXPECT_EQ(kTrack.VolumeAt(1100), -2500);
}

TEST(VolumeTrack, TakesTheWholeNumberBelow) {
    EXPECT_EQ(kTrack.VolumeAt(101), -3);     // -2.5
    EXPECT_EQ(kTrack.VolumeAt(601), -1253);  // -1252.5
    EXPECT_EQ(kTrack.VolumeAt(1099), -2498);
}

TEST(VolumeTrack, KeepsTheKnobBetweenItsEnds) {
    EXPECT_EQ(kTrack.Clamped(-5000), 100);
    EXPECT_EQ(kTrack.Clamped(700), 700);
    EXPECT_EQ(kTrack.Clamped(99999), 1100);
}

TEST(ApplyVolume, TurnsTheBottomIntoSilence) {
    test::ScriptedEngine engine;
    ApplyVolume(engine, -2500);
    EXPECT_EQ(engine.Volume(), core::kSilent);
    ApplyVolume(engine, -2499);
    EXPECT_EQ(engine.Volume(), -2499);
}

}  // namespace
}  // namespace nqp::remote
