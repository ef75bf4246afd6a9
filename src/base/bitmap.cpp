#include "base/bitmap.h"

namespace nqp::base {
namespace {

bool IsPossible(int width, int height) {
    return width > 0 && height > 0 && width <= Bitmap::kLongestSide &&
           height <= Bitmap::kLongestSide && width <= Bitmap::kMostPixels / height;
}

}  // namespace

Bitmap::Bitmap(int width, int height) {
    if (!IsPossible(width, height)) return;
    width_ = width;
    height_ = height;
    pixels_.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
}

bool Bitmap::Opaque() const {
    for (int y = 0; y < height_; ++y) {
        Pixel common = kOpaque;
        for (const Pixel pixel : Row(y))
            common &= pixel;
        if (common != kOpaque) return false;
    }
    return true;
}

}  // namespace nqp::base
