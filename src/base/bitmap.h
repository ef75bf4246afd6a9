#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace nqp::base {

// 0xAARRGGBB with the colours multiplied by the alpha, as the platform blends them: no colour is
// above the alpha.
using Pixel = std::uint32_t;

// The alpha of a pixel that hides what is behind it; also the opaque black pixel.
inline constexpr Pixel kOpaque = 0xFF000000U;

constexpr unsigned AlphaOf(Pixel pixel) {
    return pixel >> 24U;
}

// The pixel of a colour that is not multiplied by its alpha. All four are 0..255.
constexpr Pixel Premultiplied(unsigned red, unsigned green, unsigned blue, unsigned alpha) {
    constexpr unsigned kMost = 255;
    const auto scaled = [alpha](unsigned colour) { return (colour * alpha + kMost / 2) / kMost; };
    return alpha << 24U | scaled(red) << 16U | scaled(green) << 8U | scaled(blue);
}

// A picture: rows from the top, one pixel after the other. Coordinates given to it lie inside.
class Bitmap {
public:
    static constexpr int kLongestSide = 32767;
    static constexpr int kMostPixels = 1 << 26;

    // Without a pixel.
    Bitmap() = default;
    // Every pixel is transparent. A size below 1 or above the limits makes an empty picture.
    Bitmap(int width, int height);

    int Width() const { return width_; }
    int Height() const { return height_; }
    bool Empty() const { return pixels_.empty(); }

    // Whether every alpha is 255. Goes over the picture, so whoever draws it often keeps the
    // answer.
    bool Opaque() const;

    Pixel At(int x, int y) const { return pixels_[IndexOf(x, y)]; }
    void Set(int x, int y, Pixel pixel) { pixels_[IndexOf(x, y)] = pixel; }

    std::span<const Pixel> Pixels() const { return pixels_; }
    std::span<Pixel> Pixels() { return pixels_; }
    std::span<const Pixel> Row(int y) const { return Pixels().subspan(IndexOf(0, y), RowLength()); }
    std::span<Pixel> Row(int y) { return Pixels().subspan(IndexOf(0, y), RowLength()); }

    bool operator==(const Bitmap&) const = default;

private:
    std::size_t RowLength() const { return static_cast<std::size_t>(width_); }
    std::size_t IndexOf(int x, int y) const {
        return static_cast<std::size_t>(y) * RowLength() + static_cast<std::size_t>(x);
    }

    int width_ = 0;
    int height_ = 0;
    std::vector<Pixel> pixels_;
};

}  // namespace nqp::base
