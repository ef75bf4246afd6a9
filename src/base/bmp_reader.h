#pragma once

#include <optional>
#include <span>

#include "base/bitmap.h"

namespace nqp::base {

inline constexpr int kBmpLongestSide = 16384;
inline constexpr int kBmpMostPixels = 16'000'000;

// The picture in a BMP file: every header from the 12 to the 124 bytes long, 1 to 32 bits a pixel,
// plain, run-length encoded or with colour masks. Nothing when it is no such file, when its pixels
// are cut short, or when it is larger than the limits above.
//
// Only 32 bits a pixel have an alpha, and only when one of them is not zero: many programs write
// the fourth byte as zero and mean an opaque picture.
std::optional<Bitmap> ReadBmp(std::span<const char> file);

}  // namespace nqp::base
