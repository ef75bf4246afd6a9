#include "base/geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace nqp::base {
namespace {

TEST(RoundHalfEven, TakesTheEvenNeighbourOfAHalf) {
    EXPECT_EQ(RoundHalfEven(0.5), 0);
    EXPECT_EQ(RoundHalfEven(1.5), 2);
    EXPECT_EQ(RoundHalfEven(2.5), 2);
    EXPECT_EQ(RoundHalfEven(-0.5), 0);
    EXPECT_EQ(RoundHalfEven(-1.5), -2);
    EXPECT_EQ(RoundHalfEven(-2.5), -2);
}

TEST(RoundHalfEven, TakesTheNearestOtherwise) {
    EXPECT_EQ(RoundHalfEven(2.4999), 2);
    EXPECT_EQ(RoundHalfEven(2.5001), 3);
    EXPECT_EQ(RoundHalfEven(-2.5001), -3);
}

TEST(RoundHalfEven, StaysWithin32Bits) {
    EXPECT_EQ(RoundHalfEven(1e300), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(RoundHalfEven(-1e300), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(RoundHalfEven(std::nan("")), 0);
}

TEST(Floor, GoesTowardsMinusInfinity) {
    EXPECT_EQ(Floor(-1250.4), -1251);
    EXPECT_EQ(Floor(-833.3), -834);
    EXPECT_EQ(Floor(59.9), 59);
    EXPECT_EQ(Floor(-2500.0), -2500);
}

TEST(Twips, AreFifteenToAPixelAtFullScale) {
    EXPECT_EQ(TwipsToPixels(5160, 96), 344);
    EXPECT_EQ(PixelsToTwips(257, 96), 3855.0F);
}

TEST(Twips, FollowTheResolution) {
    EXPECT_EQ(TwipsToPixels(5160, 144), 516);
    EXPECT_EQ(TwipsToPixels(5160, 192), 688);
    EXPECT_EQ(PixelsToTwips(688, 192), 5160.0F);
}

TEST(Twips, OfEveryPixelComeBackAtEveryScale) {
    for (const int dpi : {96, 120, 144, 168, 192}) {
        for (int pixel = -2000; pixel <= 8000; ++pixel) {
            ASSERT_EQ(TwipsToPixels(PixelsToTwips(pixel, dpi), dpi), pixel) << dpi;
        }
    }
}

}  // namespace
}  // namespace nqp::base
