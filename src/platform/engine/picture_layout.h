#pragma once

#include <cstdint>

#include "platform/pixels.h"

namespace nqp::platform {

// The largest place inside `area`, centred, that keeps the shape of `picture`; the rest of the area
// is bars. A picture without a shape fills the area.
inline PixelRect FitPicture(PixelSize area, PixelSize picture) {
    if (picture.width <= 0 || picture.height <= 0) return {0, 0, area.width, area.height};
    const auto scaled = [](int value, int numerator, int denominator) {
        return static_cast<int>((std::int64_t{value} * numerator + denominator / 2) / denominator);
    };
    PixelSize fitted{area.width, scaled(area.width, picture.height, picture.width)};
    if (fitted.height > area.height) {
        fitted = {scaled(area.height, picture.width, picture.height), area.height};
    }
    return {(area.width - fitted.width) / 2, (area.height - fitted.height) / 2, fitted.width,
            fitted.height};
}

}  // namespace nqp::platform
