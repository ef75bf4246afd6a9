#include "base/geometry.h"

#include <cmath>
#include <limits>

namespace nqp::base {
namespace {

std::int32_t Clamp(double whole) {
    using Limits = std::numeric_limits<std::int32_t>;
    if (std::isnan(whole)) return 0;
    if (whole <= static_cast<double>(Limits::min())) return Limits::min();
    if (whole >= static_cast<double>(Limits::max())) return Limits::max();
    return static_cast<std::int32_t>(whole);
}

}  // namespace

int TwipsToPixels(Twips twips, int dpi) {
    return Clamp(std::round(static_cast<double>(twips) * dpi / static_cast<double>(kTwipsPerInch)));
}

Twips PixelsToTwips(int pixels, int dpi) {
    return static_cast<Twips>(static_cast<double>(pixels) * static_cast<double>(kTwipsPerInch) /
                              dpi);
}

std::int32_t RoundHalfEven(double value) {
    const double down = std::floor(value);
    const double rest = value - down;
    if (rest > 0.5 || (rest == 0.5 && std::fmod(down, 2.0) != 0.0)) return Clamp(down + 1.0);
    return Clamp(down);
}

std::int32_t Floor(double value) {
    return Clamp(std::floor(value));
}

}  // namespace nqp::base
