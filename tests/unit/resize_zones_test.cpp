#include "video/resize_zones.h"

#include <gtest/gtest.h>

namespace nqp::video {
namespace {

using forms::HitCode;
constexpr base::Size kWindow{5160, 3855};

HitCode Zone(base::Twips x, base::Twips y) {
    return ZoneAt({x, y}, kWindow);
}

TEST(ResizeZones, TheCornerReaches200TwipsAndIsStrict) {
    EXPECT_EQ(Zone(5160 - 199, 3855 - 199), HitCode::BottomRight);
    EXPECT_EQ(Zone(5160 - 200, 3855 - 199), HitCode::Caption);
    EXPECT_EQ(Zone(5160 - 199, 3855 - 200), HitCode::Caption);
}

TEST(ResizeZones, TheEdgesReach150TwipsAndAreStrict) {
    EXPECT_EQ(Zone(5160 - 149, 1000), HitCode::Right);
    EXPECT_EQ(Zone(5160 - 150, 1000), HitCode::Caption);
    EXPECT_EQ(Zone(1000, 3855 - 149), HitCode::Bottom);
    EXPECT_EQ(Zone(1000, 3855 - 150), HitCode::Caption);
}

TEST(ResizeZones, TheCornerComesBeforeTheEdges) {
    EXPECT_EQ(Zone(5160 - 100, 3855 - 100), HitCode::BottomRight);
    EXPECT_EQ(Zone(5160 - 100, 3855 - 200), HitCode::Right);
    EXPECT_EQ(Zone(5160 - 200, 3855 - 100), HitCode::Bottom);
}

TEST(ResizeZones, TheRestMovesTheWindow) {
    EXPECT_EQ(Zone(0, 0), HitCode::Caption);
    EXPECT_EQ(Zone(2000, 2000), HitCode::Caption);
}

}  // namespace
}  // namespace nqp::video
