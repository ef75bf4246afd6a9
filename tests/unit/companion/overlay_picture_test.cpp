#include "cutter/overlay_picture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "base/file.h"
#include "cutter/bmp_writer.h"
#include "cutter/cut.h"

namespace nqp::companion {
namespace {

class OverlayPictureTest : public testing::Test {
protected:
    OverlayPictureTest() { std::filesystem::create_directories(folder_); }
    ~OverlayPictureTest() override { std::filesystem::remove_all(folder_); }

    // Every pixel has the colour 0x302010.
    std::string Picture(int width, int height) {
        std::vector<std::uint8_t> rows;
        for (int i = 0; i < width * height; ++i)
            rows.insert(rows.end(), {0x10, 0x20, 0x30});
        const auto file = BmpFile(width, height, rows.data(), 3L * width);
        const auto path = folder_ / "picture.bmp";
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(file.data()),
                   static_cast<std::streamsize>(file.size()));
        return base::Utf8FromPath(path);
    }

    std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / "nqp_overlay_picture_test";
};

TEST_F(OverlayPictureTest, LiesAtItsShareOfTheFreeTravel) {
    const auto placed = PlacePicture({.x = 500, .y = 250, .path = Picture(20, 10)}, 120, 90);
    EXPECT_EQ(placed.x, 50);
    EXPECT_EQ(placed.y, 20);
    EXPECT_EQ(placed.bitmap.At(0, 0), 0xFF302010U);
}

TEST_F(OverlayPictureTest, ReachesTheFarEdges) {
    const auto placed = PlacePicture({.x = 1000, .y = 1000, .path = Picture(21, 11)}, 120, 90);
    EXPECT_EQ(placed.x + placed.bitmap.Width(), 120);
    EXPECT_EQ(placed.y + placed.bitmap.Height(), 90);
}

TEST_F(OverlayPictureTest, ALargerOneIsScaledDownInItsShape) {
    const auto placed = PlacePicture({.x = 1000, .y = 0, .path = Picture(400, 100)}, 200, 100);
    EXPECT_EQ(placed.bitmap.Width(), 200);
    EXPECT_EQ(placed.bitmap.Height(), 50);
    EXPECT_EQ(placed.x, 0);
}

TEST_F(OverlayPictureTest, AMissingOneIsTold) {
    EXPECT_THROW(PlacePicture({.x = 0, .y = 0, .path = "/nowhere/picture.bmp"}, 20, 20), CutError);
}

TEST_F(OverlayPictureTest, ADamagedOneIsTold) {
    const auto path = folder_ / "damaged.bmp";
    std::ofstream(path) << "BM and nothing behind";
    EXPECT_THROW(PlacePicture({.x = 0, .y = 0, .path = base::Utf8FromPath(path)}, 20, 20),
                 CutError);
}

TEST(AtEvenPlace, KeepsEveryPixelWhereItWas) {
    base::Bitmap bitmap(3, 3);
    bitmap.Set(1, 2, base::kOpaque);
    const auto moved = AtEvenPlace({bitmap, 5, 7});
    EXPECT_EQ(moved.x, 4);
    EXPECT_EQ(moved.y, 6);
    EXPECT_EQ(moved.bitmap.Width() % 2, 0);
    EXPECT_EQ(moved.bitmap.Height() % 2, 0);
    EXPECT_EQ(moved.bitmap.At(2, 3), base::kOpaque);
    EXPECT_EQ(moved.bitmap.At(0, 0), 0U);
}

TEST(AtEvenPlace, LeavesAnEvenOneAlone) {
    const auto moved = AtEvenPlace({base::Bitmap(4, 2), 2, 8});
    EXPECT_EQ(moved.x, 2);
    EXPECT_EQ(moved.bitmap.Width(), 4);
}

}  // namespace
}  // namespace nqp::companion
