#include "base/bmp_reader.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bmp_bytes.h"

namespace nqp::base {
namespace {

using namespace std::string_literals;
using test::BmpFile;
using test::LittleEndian;
using test::PackedRows;

constexpr std::uint32_t kRed = 0xFF0000;
constexpr std::uint32_t kGreen = 0x00FF00;
constexpr std::uint32_t kBlue = 0x0000FF;
constexpr std::uint32_t kWhite = 0xFFFFFF;
constexpr Pixel kBlack = kOpaque;

const std::vector<std::uint32_t> kFourColours = {kRed, kGreen, kBlue, kWhite};

std::optional<Bitmap> Read(const std::string& bytes) {
    // A vector of exactly this size lets the sanitizer see a read past the end.
    const std::vector<char> file(bytes.begin(), bytes.end());
    return ReadBmp(file);
}

std::optional<Bitmap> Read(const BmpFile& file) {
    return Read(file.Bytes());
}

// The pixels of a picture in rows from the top, "R", "G", "B" or "W" for the colours above, "." for
// black, "?" for any other; "none" for no picture.
std::string Drawn(const std::optional<Bitmap>& bitmap) {
    if (!bitmap) return "none";
    std::string drawn;
    for (int y = 0; y < bitmap->Height(); ++y) {
        if (y > 0) drawn += '/';
        for (const Pixel pixel : bitmap->Row(y)) {
            switch (pixel) {
                case kOpaque | kRed:
                    drawn += 'R';
                    break;
                case kOpaque | kGreen:
                    drawn += 'G';
                    break;
                case kOpaque | kBlue:
                    drawn += 'B';
                    break;
                case kOpaque | kWhite:
                    drawn += 'W';
                    break;
                case kBlack:
                    drawn += '.';
                    break;
                default:
                    drawn += '?';
            }
        }
    }
    return drawn;
}

// The only pixel of a picture.
Pixel Single(const std::optional<Bitmap>& bitmap) {
    if (!bitmap || bitmap->Width() != 1 || bitmap->Height() != 1) return 0xBAD;
    return bitmap->At(0, 0);
}

BmpFile OnePixel(unsigned bits, std::uint32_t value) {
    return {.bits = bits, .pixels = LittleEndian(value, 4)};
}

BmpFile OneMaskedPixel(unsigned bits, const std::vector<std::uint32_t>& masks,
                       std::uint32_t value) {
    BmpFile file = OnePixel(bits, value);
    file.compression = masks.size() == 4 ? test::kBmpMasksWithAlpha : test::kBmpMasks;
    file.masks = masks;
    return file;
}

// ---- pixels ----

TEST(Bitmap, StartsTransparent) {
    const Bitmap bitmap(3, 2);
    EXPECT_EQ(bitmap.Width(), 3);
    EXPECT_EQ(bitmap.Height(), 2);
    EXPECT_EQ(bitmap.Pixels().size(), 6U);
    EXPECT_EQ(bitmap.At(2, 1), 0U);
    EXPECT_FALSE(bitmap.Empty());
    EXPECT_FALSE(bitmap.Opaque());
}

TEST(Bitmap, RowsGoFromTheTop) {
    Bitmap bitmap(3, 2);
    bitmap.Set(1, 0, 7);
    bitmap.Row(1)[2] = 8;
    EXPECT_EQ(bitmap.Pixels()[1], 7U);
    EXPECT_EQ(bitmap.Pixels()[5], 8U);
    EXPECT_EQ(bitmap.At(2, 1), 8U);
}

TEST(Bitmap, AnImpossibleSizeIsAnEmptyPicture) {
    constexpr int kMost = std::numeric_limits<int>::max();
    EXPECT_TRUE(Bitmap().Empty());
    EXPECT_TRUE(Bitmap(0, 5).Empty());
    EXPECT_TRUE(Bitmap(5, -1).Empty());
    EXPECT_TRUE(Bitmap(kMost, kMost).Empty());
    EXPECT_TRUE(Bitmap(Bitmap::kLongestSide + 1, 1).Empty());
    EXPECT_TRUE(Bitmap(Bitmap::kLongestSide, Bitmap::kLongestSide).Empty());
    EXPECT_EQ(Bitmap(kMost, 5).Width(), 0);
}

TEST(Bitmap, IsOpaqueWhenEveryPixelIs) {
    Bitmap bitmap(2, 2);
    for (Pixel& pixel : bitmap.Pixels())
        pixel = kOpaque | kRed;
    EXPECT_TRUE(bitmap.Opaque());
    bitmap.Set(1, 1, Premultiplied(0, 0, 0, 254));
    EXPECT_FALSE(bitmap.Opaque());
}

TEST(Bitmap, ColoursAreMultipliedByTheAlphaAndRounded) {
    EXPECT_EQ(Premultiplied(1, 2, 3, 255), 0xFF010203U);
    EXPECT_EQ(Premultiplied(255, 255, 255, 0), 0U);
    EXPECT_EQ(Premultiplied(255, 1, 0, 128), 0x80800100U);  // 0.502 rounds up
    EXPECT_EQ(Premultiplied(100, 3, 255, 127), 0x7F32017FU);
}

// ---- depths ----

TEST(BmpReader, ReadsOneBit) {
    EXPECT_EQ(Drawn(Read(test::BmpIndexed(
                  10, 2, 1, {kBlue, kWhite},
                  [](int x, int y) { return static_cast<std::uint32_t>((x + y) % 2); }))),
              "BWBWBWBWBW/WBWBWBWBWB");
}

TEST(BmpReader, ReadsFourBits) {
    EXPECT_EQ(Drawn(Read(test::BmpIndexed(
                  5, 2, 4, kFourColours,
                  [](int x, int y) { return static_cast<std::uint32_t>((x + y) % 4); }))),
              "RGBWR/GBWRG");
}

TEST(BmpReader, ReadsEightBits) {
    EXPECT_EQ(Drawn(Read(test::BmpIndexed(
                  5, 2, 8, kFourColours,
                  [](int x, int y) { return static_cast<std::uint32_t>((x + y) % 4); }))),
              "RGBWR/GBWRG");
}

TEST(BmpReader, ReadsSixteenBitsAsThreeTimesFive) {
    EXPECT_EQ(Single(Read(OnePixel(16, 0x7FFF))), kOpaque | kWhite);
    EXPECT_EQ(Single(Read(OnePixel(16, 0x7C00))), kOpaque | kRed);
    EXPECT_EQ(Single(Read(OnePixel(16, 0x03E0))), kOpaque | kGreen);
    EXPECT_EQ(Single(Read(OnePixel(16, 0x001F))), kOpaque | kBlue);
    EXPECT_EQ(Single(Read(OnePixel(16, 0x8000))), kBlack);
    EXPECT_EQ(Single(Read(OnePixel(16, 0x0010))), 0xFF000084U);  // 16 * 255 / 31 = 131.6
}

TEST(BmpReader, ReadsTwentyFourBits) {
    const auto colours = [](int x, int y) { return y == 0 ? kRed >> (8 * x) : kWhite; };
    EXPECT_EQ(Drawn(Read(test::Bmp24(3, 2, colours))), "RGB/WWW");
    EXPECT_EQ(Drawn(Read(test::Bmp24(2, 1, 0x123456))), "??");
    EXPECT_EQ(Single(Read(test::Bmp24(1, 1, 0x123456))), 0xFF123456U);
}

TEST(BmpReader, ReadsThirtyTwoBits) {
    const auto colours = [](int x, int) { return kOpaque | kRed >> (8 * x); };
    EXPECT_EQ(Drawn(Read(test::Bmp32(3, 2, colours))), "RGB/RGB");
}

TEST(BmpReader, RefusesOtherDepths) {
    for (const unsigned bits : {0U, 2U, 3U, 5U, 15U, 31U, 33U, 48U, 64U, 0xFFFFU}) {
        EXPECT_EQ(Read(BmpFile{.bits = bits, .pixels = std::string(64, '\0')}), std::nullopt)
            << bits;
    }
}

// ---- headers ----

TEST(BmpReader, ReadsTheOldestHeader) {
    BmpFile file{.width = 4,
                 .height = 1,
                 .bits = 8,
                 .pixels = "\0\1\2\3"s,
                 .palette = kFourColours,
                 .headerBytes = 12};
    file.palette.resize(256);
    EXPECT_EQ(Drawn(Read(file)), "RGBW");
    file.bits = 1;
    file.pixels = "\xA0\0\0\0"s;
    file.palette = {kRed, kGreen};
    EXPECT_EQ(Drawn(Read(file)), "GRGR");
    file.bits = 24;
    file.pixels = PackedRows(4, 1, 24, [](int, int) { return kGreen; });
    file.palette.clear();
    EXPECT_EQ(Drawn(Read(file)), "GGGG");
}

TEST(BmpReader, ReadsEveryLengthOfHeader) {
    for (const std::uint32_t length : {40U, 52U, 56U, 108U, 124U}) {
        const BmpFile file{.width = 4,
                           .height = 1,
                           .bits = 8,
                           .pixels = "\3\2\1\0"s,
                           .palette = kFourColours,
                           .headerBytes = length,
                           .coloursUsed = 4};
        EXPECT_EQ(Drawn(Read(file)), "WBGR") << length;
    }
}

TEST(BmpReader, RefusesOtherLengthsOfHeader) {
    for (const std::uint32_t length : {0U, 11U, 13U, 16U, 39U, 41U, 125U, 0xFFFFFFFFU}) {
        std::string bytes = test::Bmp24(1, 1, kRed) + std::string(200, '\0');
        bytes.replace(14, 4, LittleEndian(length, 4));
        EXPECT_EQ(Read(bytes), std::nullopt) << length;
    }
}

TEST(BmpReader, RefusesAnotherKindOfFile) {
    EXPECT_EQ(Read(""), std::nullopt);
    EXPECT_EQ(Read("BM"), std::nullopt);
    std::string bytes = test::Bmp24(1, 1, kRed);
    bytes[1] = 'A';
    EXPECT_EQ(Read(bytes), std::nullopt);
}

TEST(BmpReader, TheLengthInTheFileHeaderDoesNotMatter) {
    std::string bytes = test::Bmp24(1, 1, kRed);
    bytes.replace(2, 4, LittleEndian(1, 4));
    EXPECT_EQ(Drawn(Read(bytes)), "R");
}

TEST(BmpReader, ANegativeHeightMeansRowsFromTheTop) {
    BmpFile file{.width = 1,
                 .height = -3,
                 .bits = 8,
                 .pixels = "\0\0\0\0\1\0\0\0\2\0\0\0"s,
                 .palette = kFourColours,
                 .coloursUsed = 4};
    EXPECT_EQ(Drawn(Read(file)), "R/G/B");
    file.height = 3;
    EXPECT_EQ(Drawn(Read(file)), "B/G/R");
}

// ---- palettes ----

TEST(BmpReader, AMissingPaletteEntryIsBlack) {
    EXPECT_EQ(Drawn(Read(test::BmpIndexed(3, 1, 8, {kRed, kGreen},
                                          [](int x, int) { return x == 2 ? 255U : 1U; }))),
              "GG.");
    EXPECT_EQ(Drawn(Read(test::BmpIndexed(3, 1, 4, {kRed, kGreen},
                                          [](int x, int) { return x == 2 ? 15U : 1U; }))),
              "GG.");
}

TEST(BmpReader, ThePaletteEndsWhereThePixelsStart) {
    BmpFile file{.width = 4,
                 .height = 1,
                 .bits = 8,
                 .pixels = "\0\1\2\3"s,
                 .palette = {kRed, kGreen},
                 .coloursUsed = 256};
    EXPECT_EQ(Drawn(Read(file)), "RG..");
    file.coloursUsed = 0;
    EXPECT_EQ(Drawn(Read(file)), "RG..");
    file.palette.clear();
    EXPECT_EQ(Drawn(Read(file)), "....");
}

TEST(BmpReader, TooManyColoursAreAsManyAsThePixelsCanName) {
    for (const std::uint32_t used : {3U, 257U, 0x40000000U, 0xFFFFFFFFU}) {
        BmpFile file{.width = 2,
                     .height = 1,
                     .bits = 1,
                     .pixels = "\x40\0\0\0"s,
                     .palette = kFourColours,
                     .coloursUsed = used};
        EXPECT_EQ(Drawn(Read(file)), "RG") << used;
        file.palette = {kRed, kGreen};
        file.pixelOffset = 0;
        EXPECT_EQ(Drawn(Read(file)), "RG") << used;
    }
}

TEST(BmpReader, ThePaletteOfATrueColourPictureIsPassedOver) {
    BmpFile file{.pixels = LittleEndian(kRed, 4), .palette = kFourColours, .coloursUsed = 4};
    EXPECT_EQ(Drawn(Read(file)), "R");
    file.pixelOffset = 0;
    EXPECT_EQ(Drawn(Read(file)), "R");
    file.coloursUsed = 0xFFFFFFFF;
    EXPECT_EQ(Read(file), std::nullopt);
}

// ---- where the pixels are ----

TEST(BmpReader, PixelsMayStandFurtherBehind) {
    BmpFile file{.pixels = "unused!!" + LittleEndian(kGreen, 4)};
    file.pixelOffset = 14 + 40 + 8;
    EXPECT_EQ(Drawn(Read(file)), "G");
}

TEST(BmpReader, AnOffsetIntoTheHeadersMeansRightAfterThem) {
    BmpFile file{.width = 4,
                 .height = 1,
                 .bits = 8,
                 .pixels = "\0\1\2\3"s,
                 .palette = kFourColours,
                 .coloursUsed = 4};
    for (const std::uint32_t offset : {0U, 1U, 14U, 53U}) {
        file.pixelOffset = offset;
        EXPECT_EQ(Drawn(Read(file)), "RGBW") << offset;
    }
    file = OneMaskedPixel(32, {0xFF, 0xFF00, 0xFF0000}, 0xFF0000);
    file.pixelOffset = 14 + 40;
    EXPECT_EQ(Drawn(Read(file)), "B");
}

TEST(BmpReader, AnOffsetBehindTheFileIsRefused) {
    BmpFile file{.pixels = LittleEndian(kGreen, 4)};
    for (const std::uint32_t offset : {55U, 58U, 59U, 1000U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        file.pixelOffset = offset;
        EXPECT_EQ(Read(file), std::nullopt) << offset;
    }
}

// ---- masks ----

TEST(BmpReader, ReadsSixteenBitsWithMasks) {
    const std::vector<std::uint32_t> masks = {0xF800, 0x07E0, 0x001F};
    EXPECT_EQ(Drawn(Read(OneMaskedPixel(16, masks, 0xF800))), "R");
    EXPECT_EQ(Drawn(Read(OneMaskedPixel(16, masks, 0x07E0))), "G");
    EXPECT_EQ(Drawn(Read(OneMaskedPixel(16, masks, 0x001F))), "B");
    EXPECT_EQ(Drawn(Read(OneMaskedPixel(16, masks, 0xFFFF))), "W");
    EXPECT_EQ(Single(Read(OneMaskedPixel(16, masks, 0x0400))), 0xFF008200U);  // 32 * 255 / 63
}

TEST(BmpReader, ReadsMasksInAnyPlaceAndOfAnyWidth) {
    EXPECT_EQ(Drawn(Read(OneMaskedPixel(32, {0xFF, 0xFF00, 0xFF0000}, 0xFF))), "R");
    EXPECT_EQ(Drawn(Read(OneMaskedPixel(32, {0xFF000000, 0xFF0000, 0xFF00}, 0xFF00))), "B");
    const std::vector<std::uint32_t> tenBits = {0x3FF00000, 0xFFC00, 0x3FF};
    EXPECT_EQ(Drawn(Read(OneMaskedPixel(32, tenBits, 0x3FFFFFFF))), "W");
    EXPECT_EQ(Single(Read(OneMaskedPixel(32, tenBits, 0x00000200))), 0xFF000080U);
    EXPECT_EQ(Single(Read(OneMaskedPixel(32, {0, 0, 0xFFFFFFFF}, 0x80000000))), 0xFF000080U);
    EXPECT_EQ(Drawn(Read(OneMaskedPixel(16, {1, 2, 4}, 5))), "?");
    EXPECT_EQ(Single(Read(OneMaskedPixel(16, {1, 2, 4}, 5))), 0xFFFF00FFU);
}

TEST(BmpReader, AMaskOfNoBitsIsAColourThatIsAbsent) {
    EXPECT_EQ(Drawn(Read(OneMaskedPixel(32, {0, 0xFF00, 0}, 0xFFFFFFFF))), "G");
    EXPECT_EQ(Drawn(Read(OneMaskedPixel(16, {0, 0, 0}, 0xFFFF))), ".");
}

TEST(BmpReader, AMaskWithAHoleIsRefused) {
    EXPECT_EQ(Read(OneMaskedPixel(32, {0xF0F, 0xFF0000, 0}, 0)), std::nullopt);
    EXPECT_EQ(Read(OneMaskedPixel(32, {0, 0x80000001, 0}, 0)), std::nullopt);
    EXPECT_EQ(Read(OneMaskedPixel(32, {1, 2, 4, 0x50}, 0)), std::nullopt);
}

TEST(BmpReader, MasksAreReadFromTheLongHeaders) {
    for (const std::uint32_t length : {52U, 56U, 108U, 124U}) {
        BmpFile file = OneMaskedPixel(32, {0xFF, 0xFF00, 0xFF0000}, 0xFF0000FF);
        file.headerBytes = length;
        EXPECT_EQ(Drawn(Read(file)), "R") << length;
        file.pixelOffset = 0;
        EXPECT_EQ(Drawn(Read(file)), "R") << length;
    }
}

TEST(BmpReader, MasksAreIgnoredWhereTheHeaderDoesNotSayThatTheyCount) {
    BmpFile file = OneMaskedPixel(32, {0xFF, 0xFF00, 0xFF0000, 0}, 0xFF0000FF);
    file.headerBytes = 124;
    file.compression = 0;
    EXPECT_EQ(Drawn(Read(file)), "B");
}

TEST(BmpReader, MasksOfOtherDepthsAreRefused) {
    for (const unsigned bits : {1U, 4U, 8U, 24U}) {
        EXPECT_EQ(Read(OneMaskedPixel(bits, {0xFF, 0xFF00, 0xFF0000}, 0)), std::nullopt) << bits;
    }
}

// ---- alpha ----

TEST(BmpReader, TheColoursOfThirtyTwoBitsAreMultipliedByTheAlpha) {
    EXPECT_EQ(Single(Read(test::Bmp32(1, 1, 0x80FF0000U))), 0x80800000U);
    EXPECT_EQ(Single(Read(test::Bmp32(1, 1, 0xFF123456U))), 0xFF123456U);
    EXPECT_EQ(Single(Read(test::Bmp32(1, 1, 0x01FFFFFFU))), 0x01010101U);
}

TEST(BmpReader, AnAlphaThatIsZeroEverywhereMeansOpaque) {
    const std::optional<Bitmap> bitmap = Read(test::Bmp32(2, 2, kGreen));
    EXPECT_EQ(Drawn(bitmap), "GG/GG");
    EXPECT_TRUE(bitmap && bitmap->Opaque());
}

TEST(BmpReader, OneAlphaMakesTheOthersCount) {
    const std::optional<Bitmap> bitmap =
        Read(test::Bmp32(2, 1, [](int x, int) { return x == 0 ? 0x01FFFFFFU : 0x00FFFFFFU; }));
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(bitmap->At(0, 0), 0x01010101U);
    EXPECT_EQ(bitmap->At(1, 0), 0U);
    EXPECT_FALSE(bitmap->Opaque());
}

TEST(BmpReader, TheAlphaMaskGivesTheAlpha) {
    const std::vector<std::uint32_t> masks = {0x0000000F, 0x000000F0, 0x00000F00, 0x0000F000};
    EXPECT_EQ(Single(Read(OneMaskedPixel(32, masks, 0x300F))), 0x33330000U);
    BmpFile file = OneMaskedPixel(32, masks, 0x300F);
    for (const std::uint32_t length : {56U, 108U, 124U}) {
        for (const std::uint32_t compression : {test::kBmpMasks, test::kBmpMasksWithAlpha}) {
            file.headerBytes = length;
            file.compression = compression;
            EXPECT_EQ(Single(Read(file)), 0x33330000U) << length;
        }
    }
}

TEST(BmpReader, WithoutAnAlphaMaskThePictureIsOpaque) {
    const std::vector<std::uint32_t> masks = {0xFF0000, 0xFF00, 0xFF};
    EXPECT_EQ(Single(Read(OneMaskedPixel(32, masks, 0x01020304))), 0xFF020304U);
    EXPECT_EQ(Single(Read(OneMaskedPixel(32, {0xFF0000, 0xFF00, 0xFF, 0}, 0x01020304))),
              0xFF020304U);
}

TEST(BmpReader, SixteenBitsHaveNoAlpha) {
    EXPECT_EQ(Drawn(Read(OneMaskedPixel(16, {0x7C00, 0x3E0, 0x1F, 0x8000}, 0x7C00))), "R");
    EXPECT_EQ(Drawn(Read(OneMaskedPixel(16, {0x7C00, 0x3E0, 0x1F, 0x8000}, 0xFC00))), "R");
    EXPECT_EQ(Drawn(Read(OneMaskedPixel(16, {0x0F00, 0x00F0, 0x000F, 0xF000}, 0x8F00))), "R");
}

// ---- run-length encoding ----

std::optional<Bitmap> Rle8(int width, int height, const std::string& commands) {
    return Read(test::BmpRle(width, height, 8, kFourColours, commands));
}

std::optional<Bitmap> Rle4(int width, int height, const std::string& commands) {
    return Read(test::BmpRle(width, height, 4, kFourColours, commands));
}

TEST(BmpReader, ReadsRunsOfEightBits) {
    EXPECT_EQ(Drawn(Rle8(4, 2, "\4\1\0\0\1\2\3\3\0\1"s)), "BWWW/GGGG");
}

TEST(BmpReader, ReadsRunsOfFourBits) {
    EXPECT_EQ(Drawn(Rle4(5, 2, "\5\x12\0\0\2\x30\3\x11\0\1"s)), "WRGGG/GBGBG");
}

TEST(BmpReader, ReadsPixelsOneByOneOfEightBits) {
    EXPECT_EQ(Drawn(Rle8(4, 2, "\0\3\1\2\3\xEE\1\1\0\0\0\4\3\2\1\0\0\1"s)), "WBGR/GBWG");
}

TEST(BmpReader, ReadsPixelsOneByOneOfFourBits) {
    EXPECT_EQ(Drawn(Rle4(6, 1, "\0\5\x12\x31\x2F\xEE\1\x30\0\1"s)), "GBWGBW");
    EXPECT_EQ(Drawn(Rle4(4, 1, "\0\3\x12\x3F\1\x10\0\1"s)), "GBWG");
}

TEST(BmpReader, PixelsThatAreNotWrittenAreTheFirstColour) {
    EXPECT_EQ(Drawn(Rle8(3, 2, "\1\1\0\1"s)), "RRR/GRR");
    EXPECT_EQ(Drawn(Rle8(3, 2, "\0\0\2\2\0\1"s)), "BBR/RRR");
    EXPECT_EQ(Drawn(Read(test::BmpRle(2, 1, 8, {}, "\0\1"s))), "..");
}

TEST(BmpReader, ADeltaMovesRightAndUp) {
    EXPECT_EQ(Drawn(Rle8(4, 3, "\1\1\0\2\1\2\1\3\0\1"s)), "RRWR/RRRR/GRRR");
    EXPECT_EQ(Drawn(Rle4(4, 2, "\0\2\3\0\1\x20\0\1"s)), "RRRR/RRRB");
}

TEST(BmpReader, ADeltaOutOfThePictureDrawsNothingMore) {
    EXPECT_EQ(Drawn(Rle8(2, 2, "\0\2\5\0\2\1\0\0\1\2\0\1"s)), "BR/RR");
    EXPECT_EQ(Drawn(Rle8(2, 2, "\0\2\0\7\2\1\0\0\2\2\0\1"s)), "RR/RR");
    EXPECT_EQ(Drawn(Rle8(2, 2, "\0\2\xFF\xFF\0\2\xFF\xFF\2\1"s)), "RR/RR");
}

TEST(BmpReader, RunsEndWithTheRow) {
    EXPECT_EQ(Drawn(Rle8(3, 2, "\xFF\1\1\2\0\0\2\3\0\1"s)), "WWR/GGG");
    EXPECT_EQ(Drawn(Rle8(2, 1, "\0\4\1\2\3\3\0\1"s)), "GB");
    EXPECT_EQ(Drawn(Rle4(3, 1, "\xFF\x12\0\1"s)), "GBG");
    EXPECT_EQ(Drawn(Rle4(3, 1, "\0\5\x12\x30\x10\0\0\1"s)), "GBW");
}

TEST(BmpReader, RowsAboveThePictureAreDropped) {
    EXPECT_EQ(Drawn(Rle8(2, 1, "\2\1\0\0\2\2\0\0\2\3\0\1"s)), "GG");
}

TEST(BmpReader, NothingIsReadAfterTheEndMark) {
    EXPECT_EQ(Drawn(Rle8(2, 2, "\2\1\0\1\2\2\0"s)), "RR/GG");
}

TEST(BmpReader, RunsNeedNoEndMark) {
    EXPECT_EQ(Drawn(Rle8(2, 2, "\2\1"s)), "RR/GG");
    EXPECT_EQ(Drawn(Rle8(2, 2, "\2\1\0\0"s)), "RR/GG");
}

TEST(BmpReader, RunsThatEndInsideOfACommandAreRefused) {
    EXPECT_EQ(Rle8(2, 2, "\2\1\2"s), std::nullopt);
    EXPECT_EQ(Rle8(2, 2, "\2\1\0"s), std::nullopt);
    EXPECT_EQ(Rle8(2, 2, "\0\2"s), std::nullopt);
    EXPECT_EQ(Rle8(2, 2, "\0\2\1"s), std::nullopt);
    EXPECT_EQ(Rle8(2, 2, "\0\3\1\1"s), std::nullopt);
    EXPECT_EQ(Rle8(2, 2, "\0\3\1\1\1"s), std::nullopt);
    EXPECT_EQ(Rle4(2, 2, "\0\5\x11\x11\x11"s), std::nullopt);
    EXPECT_EQ(Rle8(2, 2, ""), std::nullopt);
}

TEST(BmpReader, TheLengthOfTheImageEndsTheRuns) {
    BmpFile file{.width = 2,
                 .height = 1,
                 .bits = 8,
                 .pixels = "\1\1\1\2"s,
                 .palette = kFourColours,
                 .compression = test::kBmpRle8,
                 .coloursUsed = 4};
    EXPECT_EQ(Drawn(Read(file)), "GB");
    file.imageBytes = 2;
    EXPECT_EQ(Drawn(Read(file)), "GR");
    file.imageBytes = 3;
    EXPECT_EQ(Read(file), std::nullopt);
    file.imageBytes = 0xFFFFFFFF;
    EXPECT_EQ(Drawn(Read(file)), "GB");
}

TEST(BmpReader, RunsOfAnotherDepthOrFromTheTopAreRefused) {
    BmpFile file{.width = 2,
                 .height = 1,
                 .bits = 4,
                 .pixels = "\2\1\0\1\0\0\0\0"s,
                 .palette = kFourColours,
                 .compression = test::kBmpRle8,
                 .coloursUsed = 4};
    EXPECT_EQ(Read(file), std::nullopt);
    file.bits = 8;
    EXPECT_EQ(Drawn(Read(file)), "GG");
    file.height = -1;
    EXPECT_EQ(Read(file), std::nullopt);
    file.height = 1;
    file.compression = test::kBmpRle4;
    EXPECT_EQ(Read(file), std::nullopt);
}

TEST(BmpReader, OtherCompressionsAreRefused) {
    for (const std::uint32_t compression : {4U, 5U, 7U, 11U, 0xFFFFFFFFU}) {
        EXPECT_EQ(Read(BmpFile{.pixels = std::string(4, '\0'), .compression = compression}),
                  std::nullopt)
            << compression;
    }
}

// ---- damaged files ----

std::vector<std::string> OneOfEachKind() {
    const auto index = [](int x, int y) { return static_cast<std::uint32_t>((x + y) % 2); };
    std::vector<std::string> files = {
        test::BmpIndexed(3, 2, 1, {kRed, kGreen}, index),
        test::BmpIndexed(3, 2, 4, kFourColours, index),
        test::BmpIndexed(3, 2, 8, kFourColours, index),
        test::Bmp24(3, 2, kBlue),
        test::Bmp32(3, 2, 0x80FF8000U),
        test::BmpRle(3, 2, 8, kFourColours, "\2\1\0\2\0\1\0\3\1\2\3\0\0\0\0\1"s),
        test::BmpRle(3, 2, 4, kFourColours, "\2\x12\0\2\0\1\0\5\x12\x31\x20\0\0\0\0\1"s),
    };
    for (const std::uint32_t length : {12U, 52U, 56U, 108U, 124U}) {
        files.push_back(BmpFile{.width = 3,
                                .height = 2,
                                .bits = 24,
                                .pixels = PackedRows(3, 2, 24, index),
                                .headerBytes = length}
                            .Bytes());
    }
    for (const std::uint32_t length : {40U, 108U}) {
        files.push_back(BmpFile{
            .width = 3,
            .height = -2,
            .bits = 16,
            .pixels = PackedRows(3, 2, 16, index),
            .headerBytes = length,
            .compression = test::kBmpMasks,
            .masks = {0xF800, 0x7E0,
                      0x1F}}.Bytes());
    }
    return files;
}

TEST(BmpReader, AFileCutShortAnywhereIsNoPictureOrAWholeOne) {
    for (const std::string& whole : OneOfEachKind()) {
        ASSERT_TRUE(Read(whole));
        const bool plain = whole[30] != static_cast<char>(test::kBmpRle8) &&
                           whole[30] != static_cast<char>(test::kBmpRle4);
        for (std::size_t length = 0; length < whole.size(); ++length) {
            const std::optional<Bitmap> bitmap = Read(whole.substr(0, length));
            if (!bitmap) continue;
            EXPECT_FALSE(plain) << length << " of " << whole.size();
            EXPECT_EQ(bitmap->Width(), 3);
            EXPECT_EQ(bitmap->Height(), 2);
        }
    }
}

TEST(BmpReader, ADamagedByteIsNoPictureOrOneWithinTheLimits) {
    constexpr std::array<char, 5> kDamages = {'\0', '\1', '\x7F', '\x80', '\xFF'};
    // The bytes of the width and the height beyond the first: runs would fill millions of pixels.
    const auto isSide = [](std::size_t at) { return at >= 19 && at < 26 && at != 22; };
    for (const std::string& whole : OneOfEachKind()) {
        for (std::size_t at = 0; at < whole.size(); ++at) {
            if (isSide(at)) continue;
            for (const char damage : kDamages) {
                std::string damaged = whole;
                damaged[at] = damage;
                const std::optional<Bitmap> bitmap = Read(damaged);
                if (!bitmap) continue;
                EXPECT_FALSE(bitmap->Empty());
                EXPECT_LE(bitmap->Width(), kBmpLongestSide);
            }
        }
    }
}

TEST(BmpReader, ImpossibleSizesAreRefused) {
    constexpr int kMost = std::numeric_limits<int>::max();
    constexpr int kLeast = std::numeric_limits<int>::min();
    constexpr std::array<std::array<int, 2>, 12> kSizes = {{{0, 1},
                                                            {1, 0},
                                                            {-1, 1},
                                                            {kMost, 1},
                                                            {1, kMost},
                                                            {1, kLeast},
                                                            {kLeast, kLeast},
                                                            {kMost, kMost},
                                                            {0x10000, 0x10000},
                                                            {kBmpLongestSide + 1, 1},
                                                            {1, kBmpLongestSide + 1},
                                                            {1, -kBmpLongestSide - 1}}};
    for (const auto& [width, height] : kSizes) {
        for (const unsigned bits : {1U, 8U, 32U}) {
            const BmpFile file{
                .width = width, .height = height, .bits = bits, .pixels = std::string(2000, '\1')};
            EXPECT_EQ(Read(file), std::nullopt) << width << " x " << height;
        }
    }
}

TEST(BmpReader, TheLongestSideIsRead) {
    const std::string row(static_cast<std::size_t>(kBmpLongestSide) / 8, '\0');
    const BmpFile wide{.width = kBmpLongestSide, .bits = 1, .pixels = row, .palette = {kRed, 0}};
    const std::optional<Bitmap> bitmap = Read(wide);
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(bitmap->Width(), kBmpLongestSide);
    EXPECT_EQ(bitmap->At(kBmpLongestSide - 1, 0), kOpaque | kRed);
}

TEST(BmpReader, TheMostPixelsAreReadAndNoneMore) {
    constexpr int kSide = 4000;
    static_assert(kSide * kSide == kBmpMostPixels);
    const std::optional<Bitmap> bitmap = Rle8(kSide, kSide, "\0\1"s);
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(bitmap->At(kSide - 1, kSide - 1), kOpaque | kRed);
    EXPECT_EQ(Rle8(kSide, kSide + 1, "\0\1"s), std::nullopt);
}

}  // namespace
}  // namespace nqp::base
