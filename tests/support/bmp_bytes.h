#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace nqp::test {

inline constexpr std::uint32_t kBmpRle8 = 1;
inline constexpr std::uint32_t kBmpRle4 = 2;
inline constexpr std::uint32_t kBmpMasks = 3;
inline constexpr std::uint32_t kBmpMasksWithAlpha = 6;

inline std::string LittleEndian(std::uint32_t value, std::size_t count) {
    std::string bytes;
    for (; bytes.size() < count; value >>= 8U)
        bytes += static_cast<char>(value & 0xFFU);
    return bytes;
}

// The bytes of a BMP file, put together from its parts; nothing checks that they fit together.
struct BmpFile {
    int width = 1;
    int height = 1;  // negative for rows from the top
    unsigned bits = 24;
    std::string pixels = {};                  // as they stand in the file
    std::vector<std::uint32_t> palette = {};  // 0xRRGGBB
    std::uint32_t headerBytes = 40;           // 12 for the oldest header
    std::uint32_t compression = 0;
    std::vector<std::uint32_t> masks = {};  // red, green, blue, alpha
    std::uint32_t imageBytes = 0;
    std::uint32_t coloursUsed = 0;
    std::optional<std::uint32_t> pixelOffset = {};  // instead of where the pixels are

    std::string Bytes() const {
        const std::string headers = Header() + Palette();
        const std::size_t offset = 14 + headers.size();
        return "BM" + Whole(offset + pixels.size()) + Whole(0) +
               Whole(pixelOffset ? *pixelOffset : offset) + headers + pixels;
    }

private:
    static std::string Whole(std::size_t value) {
        return LittleEndian(static_cast<std::uint32_t>(value), 4);
    }

    std::string Header() const {
        const bool oldest = headerBytes == 12;
        const std::size_t side = oldest ? 2 : 4;
        std::string header = Whole(headerBytes) +
                             LittleEndian(static_cast<std::uint32_t>(width), side) +
                             LittleEndian(static_cast<std::uint32_t>(height), side) +
                             LittleEndian(1, 2) + LittleEndian(bits, 2);
        if (oldest) return header;
        header += Whole(compression) + Whole(imageBytes) + Whole(0) + Whole(0) +
                  Whole(coloursUsed) + Whole(0);
        for (const std::uint32_t mask : masks)
            header += Whole(mask);
        if (header.size() < headerBytes) header.resize(headerBytes);
        return header;
    }

    std::string Palette() const {
        std::string bytes;
        for (const std::uint32_t colour : palette) {
            bytes += LittleEndian(colour, headerBytes == 12 ? 3 : 4);
        }
        return bytes;
    }
};

// What stands at x and y, counted from the upper left corner: a palette index or a colour.
using ValueAt = std::function<std::uint32_t(int x, int y)>;

// The pixels of a file that is not compressed: rows from the bottom, each padded to 32 bits.
inline std::string PackedRows(int width, int height, unsigned bits, const ValueAt& valueAt) {
    std::string bytes;
    for (int y = height - 1; y >= 0; --y) {
        std::string row;
        for (int x = 0; x < width; ++x) {
            if (bits >= 8) {
                row += LittleEndian(valueAt(x, y), bits / 8);
                continue;
            }
            const int perByte = static_cast<int>(8 / bits);
            if (x % perByte == 0) row += '\0';
            const unsigned shift = 8 - bits * static_cast<unsigned>(x % perByte + 1);
            row.back() =
                static_cast<char>(static_cast<unsigned char>(row.back()) | valueAt(x, y) << shift);
        }
        row.resize((row.size() + 3) / 4 * 4);
        bytes += row;
    }
    return bytes;
}

inline std::string Bmp24(int width, int height, const ValueAt& colourAt) {
    return BmpFile{.width = width,
                   .height = height,
                   .bits = 24,
                   .pixels = PackedRows(width, height, 24, colourAt)}
        .Bytes();
}

// Of one colour, 0xRRGGBB.
inline std::string Bmp24(int width, int height, std::uint32_t colour) {
    return Bmp24(width, height, [colour](int, int) { return colour; });
}

// Colours are 0xAARRGGBB, not multiplied by the alpha.
inline std::string Bmp32(int width, int height, const ValueAt& colourAt) {
    return BmpFile{.width = width,
                   .height = height,
                   .bits = 32,
                   .pixels = PackedRows(width, height, 32, colourAt)}
        .Bytes();
}

inline std::string Bmp32(int width, int height, std::uint32_t colour) {
    return Bmp32(width, height, [colour](int, int) { return colour; });
}

// Of 1, 4 or 8 bits a pixel.
inline std::string BmpIndexed(int width, int height, unsigned bits,
                              const std::vector<std::uint32_t>& palette, const ValueAt& indexAt) {
    return BmpFile{.width = width,
                   .height = height,
                   .bits = bits,
                   .pixels = PackedRows(width, height, bits, indexAt),
                   .palette = palette,
                   .coloursUsed = static_cast<std::uint32_t>(palette.size())}
        .Bytes();
}

// Run-length encoded; the commands draw from the lower left corner.
inline std::string BmpRle(int width, int height, unsigned bits,
                          const std::vector<std::uint32_t>& palette, const std::string& commands) {
    return BmpFile{.width = width,
                   .height = height,
                   .bits = bits,
                   .pixels = commands,
                   .palette = palette,
                   .compression = bits == 8 ? kBmpRle8 : kBmpRle4,
                   .coloursUsed = static_cast<std::uint32_t>(palette.size())}
        .Bytes();
}

}  // namespace nqp::test
