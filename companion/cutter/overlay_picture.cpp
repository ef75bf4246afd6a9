#include "cutter/overlay_picture.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/bmp_reader.h"
#include "base/file.h"
#include "base/resample.h"
#include "cutter/cut.h"

namespace nqp::companion {
namespace {

constexpr double kWholeWay = 1000;

base::Bitmap ReadPicture(const std::string& path) {
    const auto file = base::PathFromUtf8(path);
    if (!base::IsFile(file)) throw CutError("There is no picture " + path + ".");
    auto bitmap = base::ReadBmp(base::ReadFile(file));
    if (!bitmap || bitmap->Empty()) throw CutError(path + " is no bitmap that can be read.");
    return *std::move(bitmap);
}

base::Bitmap Fitting(base::Bitmap bitmap, int width, int height) {
    const double scale = std::min({1.0, static_cast<double>(width) / bitmap.Width(),
                                   static_cast<double>(height) / bitmap.Height()});
    if (scale == 1.0) return bitmap;
    const auto scaled = [scale](int side) {
        return std::max(1, static_cast<int>(std::lround(side * scale)));
    };
    return base::Resample(bitmap, scaled(bitmap.Width()), scaled(bitmap.Height()));
}

int PlaceOn(std::int32_t perMille, int room) {
    return static_cast<int>(std::lround(std::clamp(perMille / kWholeWay, 0.0, 1.0) * room));
}

}  // namespace

OverlayPicture PlacePicture(const core::PicturePlacement& placement, int width, int height) {
    base::Bitmap bitmap = Fitting(ReadPicture(placement.path), width, height);
    const int x = PlaceOn(placement.x, width - bitmap.Width());
    const int y = PlaceOn(placement.y, height - bitmap.Height());
    return {std::move(bitmap), x, y};
}

OverlayPicture AtEvenPlace(OverlayPicture picture) {
    const int left = picture.x % 2;
    const int top = picture.y % 2;
    const base::Bitmap& old = picture.bitmap;
    if (left == 0 && top == 0 && old.Width() % 2 == 0 && old.Height() % 2 == 0) return picture;
    const auto even = [](int side) { return side + side % 2; };
    base::Bitmap moved(even(old.Width() + left), even(old.Height() + top));
    for (int y = 0; y < old.Height(); ++y)
        std::ranges::copy(old.Row(y), moved.Row(y + top).begin() + left);
    return {std::move(moved), picture.x - left, picture.y - top};
}

}  // namespace nqp::companion
