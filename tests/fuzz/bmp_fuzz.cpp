#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "base/bmp_reader.h"
#include "base/resample.h"

namespace {

using namespace nqp::base;

// Runs let a few bytes claim a picture of many pixels, which would take most of the time.
constexpr std::uint64_t kMostClaimed = 100'000;
constexpr std::size_t kMostResampled = 1'000;

std::uint64_t ClaimedPixels(std::span<const std::uint8_t> file) {
    if (file.size() < 26) return 0;
    const auto number = [file](std::size_t offset, std::size_t bytes) {
        std::uint32_t value = 0;
        while (bytes-- > 0)
            value = value << 8U | file[offset + bytes];
        return value;
    };
    if (number(14, 4) == 12) return std::uint64_t{number(18, 2)} * number(20, 2);
    const auto side = [&number](std::size_t offset) {
        const std::int64_t value = static_cast<std::int32_t>(number(offset, 4));
        return static_cast<std::uint64_t>(value < 0 ? -value : value);
    };
    return side(18) * side(22);
}

void MustHold(bool holds) {
    if (!holds) std::abort();
}

void CheckPixels(const Bitmap& bitmap) {
    for (const Pixel pixel : bitmap.Pixels()) {
        const unsigned alpha = AlphaOf(pixel);
        MustHold((pixel >> 16U & 255U) <= alpha && (pixel >> 8U & 255U) <= alpha &&
                 (pixel & 255U) <= alpha);
    }
}

void CheckSizes(const Bitmap& bitmap) {
    const bool opaque = bitmap.Opaque();
    for (const int width : {1, 7, bitmap.Width(), 40}) {
        for (const int height : {1, 5, bitmap.Height(), 33}) {
            for (const Bitmap& other : {Resample(bitmap, width, height),
                                        ExtendAt(bitmap, 3, bitmap.Height() / 2, width, height)}) {
                MustHold(other.Width() == width && other.Height() == height);
                MustHold(!opaque || other.Opaque());
                CheckPixels(other);
            }
        }
    }
    MustHold(Resample(bitmap, bitmap.Width(), bitmap.Height()) == bitmap);
}

}  // namespace

// Any bytes as a BMP file, and what is read at other sizes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (ClaimedPixels({data, size}) > kMostClaimed) return 0;
    const auto bitmap = ReadBmp({reinterpret_cast<const char*>(data), size});
    if (!bitmap) return 0;
    MustHold(!bitmap->Empty() && bitmap->Width() <= kBmpLongestSide &&
             bitmap->Height() <= kBmpLongestSide);
    CheckPixels(*bitmap);
    if (bitmap->Pixels().size() <= kMostResampled) CheckSizes(*bitmap);
    return 0;
}
