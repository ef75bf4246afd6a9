#include "base/resample.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace nqp::base {
namespace {

using SizeInPixels = std::pair<int, int>;

constexpr Pixel kRed = 0xFFFF0000U;
constexpr Pixel kGreen = 0xFF00FF00U;
constexpr Pixel kBlue = 0xFF0000FFU;

Bitmap Plain(int width, int height, Pixel pixel) {
    Bitmap bitmap(width, height);
    std::ranges::fill(bitmap.Pixels(), pixel);
    return bitmap;
}

// One row.
Bitmap Line(const std::vector<Pixel>& pixels) {
    Bitmap bitmap(static_cast<int>(pixels.size()), 1);
    std::ranges::copy(pixels, bitmap.Pixels().begin());
    return bitmap;
}

// The same for every run, without a pattern that a scale could follow.
Bitmap Noise(int width, int height) {
    Bitmap bitmap(width, height);
    std::uint32_t state = 1;
    for (Pixel& pixel : bitmap.Pixels()) {
        state = state * 1664525U + 1013904223U;
        const std::uint32_t mixed = state ^ state >> 13U;
        pixel = Premultiplied(mixed >> 24U, mixed >> 16U & 255U, mixed >> 8U & 255U, mixed & 255U);
    }
    return bitmap;
}

Bitmap Turned(const Bitmap& bitmap) {
    Bitmap turned(bitmap.Height(), bitmap.Width());
    for (int y = 0; y < bitmap.Height(); ++y) {
        for (int x = 0; x < bitmap.Width(); ++x)
            turned.Set(y, x, bitmap.At(x, y));
    }
    return turned;
}

bool NoColourIsAboveItsAlpha(const Bitmap& bitmap) {
    return std::ranges::all_of(bitmap.Pixels(), [](Pixel pixel) {
        const unsigned alpha = AlphaOf(pixel);
        return (pixel >> 16U & 255U) <= alpha && (pixel >> 8U & 255U) <= alpha &&
               (pixel & 255U) <= alpha;
    });
}

unsigned ChannelOf(Pixel pixel, unsigned shift) {
    return pixel >> shift & 255U;
}

// The mean over the area of a target pixel, computed the slow way.
Pixel MeanOf(const Bitmap& source, double left, double top, double width, double height) {
    Pixel mean = 0;
    for (const unsigned shift : {0U, 8U, 16U, 24U}) {
        double sum = 0;
        for (int y = 0; y < source.Height(); ++y) {
            for (int x = 0; x < source.Width(); ++x) {
                const double across = std::min(left + width, x + 1.0) - std::max(left, 1.0 * x);
                const double down = std::min(top + height, y + 1.0) - std::max(top, 1.0 * y);
                if (across > 0 && down > 0) {
                    sum += across * down * ChannelOf(source.At(x, y), shift);
                }
            }
        }
        mean |= static_cast<Pixel>(std::lround(sum / (width * height))) << shift;
    }
    return mean;
}

Bitmap SlowMeans(const Bitmap& source, int width, int height) {
    Bitmap target(width, height);
    const double across = 1.0 * source.Width() / width;
    const double down = 1.0 * source.Height() / height;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            target.Set(x, y, MeanOf(source, x * across, y * down, across, down));
        }
    }
    return target;
}

// ---- Resample ----

TEST(Resample, TheSameSizeIsTheSamePicture) {
    const Bitmap source = Noise(7, 5);
    EXPECT_EQ(Resample(source, 7, 5), source);
}

TEST(Resample, NothingOrAnImpossibleSizeIsEmpty) {
    constexpr int kMost = std::numeric_limits<int>::max();
    EXPECT_TRUE(Resample({}, 5, 5).Empty());
    EXPECT_TRUE(Resample({}, 0, 0).Empty());
    for (const auto& [width, height] :
         {SizeInPixels{0, 5}, {5, 0}, {-1, 5}, {5, -1}, {kMost, 1}, {kMost, kMost}}) {
        EXPECT_TRUE(Resample(Noise(3, 3), width, height).Empty()) << width << " x " << height;
    }
}

TEST(Resample, APlainColourStaysExactlyAsItIs) {
    for (const Pixel pixel :
         {0U, 0xFFFFFFFFU, 0xFF000000U, 0xFF010203U, 0x80407F01U, 0x01010001U}) {
        for (const auto& [width, height] :
             {SizeInPixels{1, 1}, {3, 2}, {7, 7}, {10, 11}, {13, 5}, {5, 40}, {64, 64}, {33, 1}}) {
            EXPECT_EQ(Resample(Plain(10, 11, pixel), width, height), Plain(width, height, pixel))
                << std::hex << pixel << std::dec << " " << width << " x " << height;
        }
    }
}

TEST(Resample, HalfTheSizeIsTheMeanOfTwoByTwo) {
    Bitmap source(4, 2);
    const std::vector<Pixel> pixels = {0xFF000000U, 0xFF000001U, 0xFF0000FFU, 0xFF0000FFU,
                                       0xFF000001U, 0xFF000002U, 0xFF0000FFU, 0xFF0000FEU};
    std::ranges::copy(pixels, source.Pixels().begin());
    EXPECT_EQ(Resample(source, 2, 1), Line({0xFF000001U, 0xFF0000FFU}));
    const Bitmap noise = Noise(64, 48);
    EXPECT_EQ(Resample(noise, 32, 24), SlowMeans(noise, 32, 24));
}

TEST(Resample, AThirdOfTheSizeIsTheMeanOfThreeByThree) {
    const Bitmap noise = Noise(60, 45);
    EXPECT_EQ(Resample(noise, 20, 15), SlowMeans(noise, 20, 15));
}

TEST(Resample, AHalfIsRoundedUp) {
    EXPECT_EQ(Resample(Line({0xFF000000U, 0xFF000001U}), 1, 1), Line({0xFF000001U}));
    EXPECT_EQ(Resample(Line({0xFF000000U, 0xFF000000U, 0xFF000000U, 0xFF000000U, 0xFF000001U,
                             0xFF000002U}),
                       1, 1),
              Line({0xFF000001U}));
    EXPECT_EQ(Resample(Line({0xFF000000U, 0xFF000000U, 0xFF000001U}), 1, 1), Line({0xFF000000U}));
    // 98 times its inverse is less than 1 in floating point.
    std::vector<Pixel> pixels(98, 0xFF000000U);
    std::fill_n(pixels.begin(), 49, 0xFF000001U);
    EXPECT_EQ(Resample(Line(pixels), 1, 1), Line({0xFF000001U}));
}

TEST(Resample, AnyOtherShrinkingWeighsByArea) {
    // The middle pixel is shared by both.
    EXPECT_EQ(Resample(Line({0xFF00005AU, 0xFF000000U, 0xFF0000B4U}), 2, 1),
              Line({0xFF00003CU, 0xFF000078U}));
    const Bitmap noise = Noise(41, 23);
    for (const auto& [width, height] : {SizeInPixels{40, 22}, {17, 9}, {5, 23}, {41, 2}, {1, 1}}) {
        EXPECT_EQ(Resample(noise, width, height), SlowMeans(noise, width, height))
            << width << " x " << height;
    }
}

TEST(Resample, ATransparentColourDoesNotBleed) {
    const Pixel transparentRed = Premultiplied(255, 0, 0, 0);
    EXPECT_EQ(Resample(Line({transparentRed, kBlue}), 1, 1), Line({0x80000080U}));
    const Bitmap grown = Resample(Line({transparentRed, kBlue}), 9, 1);
    for (const Pixel pixel : grown.Pixels()) {
        EXPECT_EQ(ChannelOf(pixel, 16), 0U);
        EXPECT_EQ(ChannelOf(pixel, 0), AlphaOf(pixel));
    }
}

TEST(Resample, OpaqueStaysOpaque) {
    Bitmap source = Noise(20, 20);
    for (Pixel& pixel : source.Pixels())
        pixel |= kOpaque;
    for (const auto& [width, height] : {SizeInPixels{7, 9}, {55, 47}, {7, 50}, {50, 7}}) {
        EXPECT_TRUE(Resample(source, width, height).Opaque()) << width << " x " << height;
    }
}

TEST(Resample, NoColourGetsAboveItsAlpha) {
    const Bitmap noise = Noise(31, 17);
    for (const auto& [width, height] :
         {SizeInPixels{10, 6}, {62, 34}, {100, 100}, {31, 90}, {7, 90}, {90, 5}, {200, 1}}) {
        EXPECT_TRUE(NoColourIsAboveItsAlpha(Resample(noise, width, height)))
            << width << " x " << height;
    }
}

TEST(Resample, GrowingKeepsAnEdgeWithinItsTwoColours) {
    // Interpolation swings over at an edge; at the ends of the range it has nowhere to go.
    const Bitmap grown =
        Resample(Line({0xFF000000U, 0xFF000000U, 0xFFFFFFFFU, 0xFFFFFFFFU}), 40, 1);
    EXPECT_EQ(grown.At(0, 0), 0xFF000000U);
    EXPECT_EQ(grown.At(39, 0), 0xFFFFFFFFU);
    for (int x = 1; x < grown.Width(); ++x) {
        EXPECT_LE(grown.At(x - 1, 0), grown.At(x, 0)) << x;
    }
}

TEST(Resample, GrowingKeepsARampStraight) {
    const Bitmap grown =
        Resample(Line({0xFF000000U, 0xFF000020U, 0xFF000040U, 0xFF000060U, 0xFF000080U}), 20, 1);
    for (int x = 6; x < 14; ++x) {
        const long expected = std::lround(((x + 0.5) / 4 - 0.5) * 0x20);
        EXPECT_EQ(ChannelOf(grown.At(x, 0), 0), static_cast<unsigned>(expected)) << x;
    }
}

TEST(Resample, GrowingByAnOddFactorMeetsThePixelsAgain) {
    const Bitmap noise = Noise(9, 8);
    const Bitmap grown = Resample(noise, 27, 24);
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 9; ++x)
            EXPECT_EQ(grown.At(3 * x + 1, 3 * y + 1), noise.At(x, y));
    }
}

TEST(Resample, GrowingIsTheSameFromBothSides) {
    Bitmap source = Noise(12, 1);
    for (int x = 0; x < 6; ++x)
        source.Set(11 - x, 0, source.At(x, 0));
    const Bitmap grown = Resample(source, 31, 1);
    for (int x = 0; x < 31; ++x)
        EXPECT_EQ(grown.At(x, 0), grown.At(30 - x, 0)) << x;
}

TEST(Resample, EachSideIsDecidedOnItsOwn) {
    const Bitmap noise = Noise(30, 10);
    EXPECT_EQ(Resample(noise, 10, 10), SlowMeans(noise, 10, 10));
    // Equal rows: what the height does changes nothing.
    Bitmap rows(30, 4);
    for (int y = 0; y < 4; ++y)
        std::ranges::copy(noise.Row(0), rows.Row(y).begin());
    const Bitmap line = Resample(rows, 10, 4);
    const Bitmap taller = Resample(rows, 10, 9);
    for (int y = 0; y < 9; ++y)
        EXPECT_TRUE(std::ranges::equal(taller.Row(y), line.Row(0))) << y;
}

TEST(Resample, RowsAndColumnsAreTreatedAlike) {
    const Bitmap noise = Noise(11, 14);
    for (const auto& [width, height] : {SizeInPixels{5, 6}, {22, 35}, {7, 20}, {20, 7}}) {
        EXPECT_EQ(Turned(Resample(noise, width, height)), Resample(Turned(noise), height, width))
            << width << " x " << height;
    }
}

TEST(Resample, TheLongestSidesDoNotOverflow) {
    const Pixel white = 0xFFFFFFFFU;
    const Bitmap wide = Plain(Bitmap::kLongestSide, 2, white);
    EXPECT_EQ(Resample(wide, 3, 1), Plain(3, 1, white));
    EXPECT_EQ(Resample(Turned(wide), 1, 3), Plain(1, 3, white));
    EXPECT_EQ(Resample(Turned(wide), 5, 3), Plain(5, 3, white));
    EXPECT_EQ(Resample(Plain(2, 2, white), Bitmap::kLongestSide, 3),
              Plain(Bitmap::kLongestSide, 3, white));
}

// ---- ExtendAt ----

TEST(ExtendAt, TheColumnIsRepeated) {
    EXPECT_EQ(ExtendAt(Line({kRed, kGreen, kBlue}), 1, 0, 5, 1),
              Line({kRed, kGreen, kGreen, kGreen, kBlue}));
    EXPECT_EQ(ExtendAt(Line({kRed, kGreen, kBlue}), 0, 0, 5, 1),
              Line({kRed, kRed, kRed, kGreen, kBlue}));
    EXPECT_EQ(ExtendAt(Line({kRed, kGreen, kBlue}), 2, 0, 5, 1),
              Line({kRed, kGreen, kBlue, kBlue, kBlue}));
}

TEST(ExtendAt, TheRowIsRepeated) {
    const Bitmap column = Turned(Line({kRed, kGreen, kBlue}));
    EXPECT_EQ(ExtendAt(column, 0, 1, 1, 5), Turned(Line({kRed, kGreen, kGreen, kGreen, kBlue})));
}

TEST(ExtendAt, BothSidesGrowTogether) {
    Bitmap source(2, 2);
    source.Set(0, 0, 1);
    source.Set(1, 0, 2);
    source.Set(0, 1, 3);
    source.Set(1, 1, 4);
    const Bitmap larger = ExtendAt(source, 0, 1, 3, 3);
    const std::vector<Pixel> expected = {1, 1, 2, 3, 3, 4, 3, 3, 4};
    EXPECT_TRUE(std::ranges::equal(larger.Pixels(), expected));
}

TEST(ExtendAt, WhatLiesBehindKeepsItsDistanceToTheFarEdges) {
    const Bitmap source = Noise(20, 10);
    const Bitmap larger = ExtendAt(source, 7, 4, 33, 25);
    for (int y = 0; y < 10; ++y) {
        for (int x = 0; x < 20; ++x) {
            const int right = x > 7 ? x + 13 : x;
            const int down = y > 4 ? y + 15 : y;
            EXPECT_EQ(larger.At(right, down), source.At(x, y));
        }
    }
}

TEST(ExtendAt, TheSameSizeIsTheSamePicture) {
    const Bitmap source = Noise(6, 5);
    EXPECT_EQ(ExtendAt(source, 3, 2, 6, 5), source);
}

TEST(ExtendAt, ASmallerSizeKeepsTheLeftAndTheTop) {
    const Bitmap source = Noise(6, 5);
    const Bitmap smaller = ExtendAt(source, 1, 1, 4, 3);
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 4; ++x)
            EXPECT_EQ(smaller.At(x, y), source.At(x, y));
    }
    EXPECT_EQ(ExtendAt(Line({kRed, kGreen, kBlue}), 1, 0, 2, 2),
              ExtendAt(Line({kRed, kGreen}), 1, 0, 2, 2));
}

TEST(ExtendAt, APlaceOutsideStandsForTheNearestInside) {
    const Bitmap source = Noise(6, 5);
    constexpr int kMost = std::numeric_limits<int>::max();
    EXPECT_EQ(ExtendAt(source, -3, kMost, 9, 9), ExtendAt(source, 0, 4, 9, 9));
    EXPECT_EQ(ExtendAt(source, 6, -kMost, 9, 9), ExtendAt(source, 5, 0, 9, 9));
}

TEST(ExtendAt, NothingOrAnImpossibleSizeIsEmpty) {
    constexpr int kMost = std::numeric_limits<int>::max();
    EXPECT_TRUE(ExtendAt({}, 0, 0, 5, 5).Empty());
    EXPECT_TRUE(ExtendAt(Noise(3, 3), 1, 1, 0, 5).Empty());
    EXPECT_TRUE(ExtendAt(Noise(3, 3), 1, 1, 5, -5).Empty());
    EXPECT_TRUE(ExtendAt(Noise(3, 3), 1, 1, kMost, kMost).Empty());
}

}  // namespace
}  // namespace nqp::base
