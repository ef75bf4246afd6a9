#include "cutter/bmp_writer.h"

#include <algorithm>
#include <cstddef>

namespace nqp::companion {
namespace {

constexpr std::uint32_t kFileHeaderBytes = 14;
constexpr std::uint32_t kInfoHeaderBytes = 40;
constexpr std::uint32_t kHeaderBytes = kFileHeaderBytes + kInfoHeaderBytes;
constexpr std::uint32_t kBitsPerPixel = 24;
constexpr std::uint32_t kBytesPerPixel = 3;
constexpr std::uint32_t kRowUnit = 4;            // a row is filled up to a multiple of it
constexpr std::uint32_t kPixelsPerMetre = 3780;  // 96 to the inch

class Bytes {
public:
    explicit Bytes(std::vector<std::uint8_t>& to) : to_(to) {}

    void Put16(std::uint32_t value) { Put(value, 2); }
    void Put32(std::uint32_t value) { Put(value, 4); }

private:
    void Put(std::uint32_t value, int count) {
        for (int i = 0; i < count; ++i)
            to_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }

    std::vector<std::uint8_t>& to_;
};

}  // namespace

std::vector<std::uint8_t> BmpFile(int width, int height, const std::uint8_t* rows,
                                  std::ptrdiff_t stride) {
    const auto columns = static_cast<std::uint32_t>(width);
    const auto lines = static_cast<std::uint32_t>(height);
    const std::uint32_t used = columns * kBytesPerPixel;
    const std::uint32_t row = (used + kRowUnit - 1) / kRowUnit * kRowUnit;
    std::vector<std::uint8_t> file;
    file.reserve(kHeaderBytes + std::size_t{row} * lines);
    Bytes header(file);
    header.Put16('B' | 'M' << 8);
    header.Put32(kHeaderBytes + row * lines);
    header.Put32(0);
    header.Put32(kHeaderBytes);
    header.Put32(kInfoHeaderBytes);
    header.Put32(columns);
    header.Put32(lines);
    header.Put16(1);
    header.Put16(kBitsPerPixel);
    header.Put32(0);
    header.Put32(row * lines);
    header.Put32(kPixelsPerMetre);
    header.Put32(kPixelsPerMetre);
    header.Put32(0);
    header.Put32(0);
    for (int y = height - 1; y >= 0; --y) {
        const std::uint8_t* const from = rows + y * stride;
        file.insert(file.end(), from, from + used);
        file.resize(file.size() + row - used);
    }
    return file;
}

}  // namespace nqp::companion
