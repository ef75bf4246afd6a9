#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace nqp::companion {

// A BMP file of 24 bits a pixel. Rows come from the top, three bytes a pixel in the order blue,
// green, red, and lie `stride` bytes apart.
std::vector<std::uint8_t> BmpFile(int width, int height, const std::uint8_t* rows,
                                  std::ptrdiff_t stride);

}  // namespace nqp::companion
