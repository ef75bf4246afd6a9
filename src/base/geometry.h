#pragma once

#include <cstdint>

namespace nqp::base {

// The unit of every window coordinate in the program: 1/1440 inch, single precision.
using Twips = float;

inline constexpr Twips kTwipsPerInch = 1440.0F;
// The resolution that counts as 100 %: one pixel is then 15 twips.
inline constexpr int kDesignDpi = 96;

struct Point {
    Twips x = 0;
    Twips y = 0;
    bool operator==(const Point&) const = default;
};

struct Size {
    Twips width = 0;
    Twips height = 0;
    bool operator==(const Size&) const = default;
};

struct Rect {
    Twips left = 0;
    Twips top = 0;
    Twips width = 0;
    Twips height = 0;
    bool operator==(const Rect&) const = default;

    Twips right() const { return left + width; }
    Twips bottom() const { return top + height; }
};

// Pixels are whole; the nearest one is taken.
int TwipsToPixels(Twips twips, int dpi);
Twips PixelsToTwips(int pixels, int dpi);

// Rounds to the nearest whole number, halves to the even neighbour (2.5 -> 2, 3.5 -> 4).
// Values outside the 32-bit range, and NaN, are clamped to its ends or to 0.
std::int32_t RoundHalfEven(double value);

// The largest whole number not above the value (-1250.4 -> -1251), clamped like RoundHalfEven.
std::int32_t Floor(double value);

}  // namespace nqp::base
