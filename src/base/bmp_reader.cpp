#include "base/bmp_reader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace nqp::base {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kFileHeaderBytes = 14;
constexpr std::size_t kCoreHeaderBytes = 12;
constexpr std::size_t kInfoHeaderBytes = 40;
// From this length on the header holds a mask for the alpha too.
constexpr std::size_t kAlphaMaskHeaderBytes = 56;
constexpr std::array<std::size_t, 6> kHeaderLengths = {
    kCoreHeaderBytes, kInfoHeaderBytes, 52, kAlphaMaskHeaderBytes, 108, 124};

constexpr std::size_t kMasksOffset = kFileHeaderBytes + kInfoHeaderBytes;
constexpr std::size_t kMaskBytes = 4;

constexpr unsigned kMostPaletteBits = 8;

enum Compression : std::uint32_t {
    kPlain = 0,
    kRle8 = 1,
    kRle4 = 2,
    kMasks = 3,
    kMasksWithAlpha = 6,
};

// Little endian; the caller has made sure that the bytes are there.
std::uint32_t Read16(Bytes bytes, std::size_t offset) {
    return bytes[offset] | static_cast<std::uint32_t>(bytes[offset + 1]) << 8U;
}

std::uint32_t Read32(Bytes bytes, std::size_t offset) {
    return Read16(bytes, offset) | Read16(bytes, offset + 2) << 16U;
}

using Palette = std::array<Pixel, 1U << kMostPaletteBits>;

struct Masks {
    std::uint32_t red = 0;
    std::uint32_t green = 0;
    std::uint32_t blue = 0;
    std::uint32_t alpha = 0;
};

constexpr Masks kMasks555 = {0x7C00, 0x03E0, 0x001F, 0};
constexpr Masks kMasks8888 = {0x00FF0000, 0x0000FF00, 0x000000FF, 0xFF000000};

// What the headers say.
struct Header {
    std::size_t bytes = 0;
    std::int64_t width = 0;
    std::int64_t height = 0;  // negative when the rows go from the top
    unsigned bits = 0;        // of a pixel
    std::uint32_t compression = kPlain;
    std::uint32_t imageBytes = 0;   // 0 when not given
    std::uint32_t coloursUsed = 0;  // entries of the palette, 0 for all
    std::uint32_t pixelOffset = 0;

    bool HasMasks() const { return compression == kMasks || compression == kMasksWithAlpha; }
    bool IsRunLength() const { return compression == kRle8 || compression == kRle4; }
};

std::optional<Header> ReadHeader(Bytes file) {
    if (file.size() < kFileHeaderBytes + kCoreHeaderBytes) return std::nullopt;
    if (file[0] != 'B' || file[1] != 'M') return std::nullopt;
    Header header;
    header.pixelOffset = Read32(file, 10);
    header.bytes = Read32(file, 14);
    if (std::ranges::find(kHeaderLengths, header.bytes) == kHeaderLengths.end() ||
        file.size() - kFileHeaderBytes < header.bytes) {
        return std::nullopt;
    }
    if (header.bytes == kCoreHeaderBytes) {
        header.width = Read16(file, 18);
        header.height = Read16(file, 20);
        header.bits = Read16(file, 24);
        return header;
    }
    header.width = static_cast<std::int32_t>(Read32(file, 18));
    header.height = static_cast<std::int32_t>(Read32(file, 22));
    header.bits = Read16(file, 28);
    header.compression = Read32(file, 30);
    header.imageBytes = Read32(file, 34);
    header.coloursUsed = Read32(file, 46);
    return header;
}

bool IsReadableSize(std::int64_t width, std::int64_t rows) {
    return width >= 1 && rows >= 1 && width <= kBmpLongestSide && rows <= kBmpLongestSide &&
           width * rows <= kBmpMostPixels;
}

bool IsReadableFormat(const Header& header) {
    constexpr std::array<unsigned, 6> kPlainBits = {1, 4, 8, 16, 24, 32};
    switch (header.compression) {
        case kPlain:
            return std::ranges::find(kPlainBits, header.bits) != kPlainBits.end();
        case kRle8:
            return header.bits == 8 && header.height > 0;
        case kRle4:
            return header.bits == 4 && header.height > 0;
        case kMasks:
        case kMasksWithAlpha:
            return header.bits == 16 || header.bits == 32;
        default:
            return false;
    }
}

// Where the parts of a readable file are.
struct Layout {
    int width = 0;
    int height = 0;
    bool topDown = false;
    bool runLength = false;
    unsigned bits = 0;
    Masks masks;
    Palette palette{};
    Bytes pixels;  // to the end of the file, or of the image where that says where it ends

    std::size_t RowBytes() const { return (static_cast<std::size_t>(width) * bits + 31) / 32 * 4; }
};

// Masks follow the first 40 bytes of the header, inside of a longer one and after a short one.
std::size_t MaskCount(const Header& header) {
    const bool alpha =
        header.bytes >= kAlphaMaskHeaderBytes || header.compression == kMasksWithAlpha;
    return alpha ? 4 : 3;
}

std::size_t PaletteOffset(const Header& header) {
    if (!header.HasMasks()) return kFileHeaderBytes + header.bytes;
    return std::max(kFileHeaderBytes + header.bytes, kMasksOffset + MaskCount(header) * kMaskBytes);
}

bool IsContiguous(std::uint32_t mask) {
    if (mask == 0) return true;
    const std::uint32_t low = mask >> static_cast<unsigned>(std::countr_zero(mask));
    return (low & (low + 1)) == 0;
}

std::optional<Masks> ReadMasks(Bytes file, const Header& header) {
    if (!header.HasMasks()) return header.bits == 16 ? kMasks555 : kMasks8888;
    const std::size_t count = MaskCount(header);
    if (file.size() < kMasksOffset + count * kMaskBytes) return std::nullopt;
    Masks masks{Read32(file, kMasksOffset), Read32(file, kMasksOffset + kMaskBytes),
                Read32(file, kMasksOffset + 2 * kMaskBytes), 0};
    if (count == 4 && header.bits == 32) masks.alpha = Read32(file, kMasksOffset + 3 * kMaskBytes);
    const bool contiguous = IsContiguous(masks.red) && IsContiguous(masks.green) &&
                            IsContiguous(masks.blue) && IsContiguous(masks.alpha);
    return contiguous ? std::optional(masks) : std::nullopt;
}

std::size_t PaletteEntryBytes(const Header& header) {
    return header.bytes == kCoreHeaderBytes ? 3 : 4;
}

// How many entries stand between the headers and the pixels. Pictures of more than 8 bits may have
// a palette too, as a hint for screens of few colours.
std::uint64_t PaletteEntries(const Header& header) {
    if (header.bits > kMostPaletteBits) return header.coloursUsed;
    const std::uint32_t all = 1U << header.bits;
    return header.coloursUsed == 0 ? all : std::min(header.coloursUsed, all);
}

std::uint64_t PaletteEnd(const Header& header) {
    return PaletteOffset(header) + PaletteEntries(header) * PaletteEntryBytes(header);
}

// An offset into the headers is a missing one.
std::uint64_t PixelOffset(const Header& header) {
    return header.pixelOffset >= PaletteOffset(header) ? header.pixelOffset : PaletteEnd(header);
}

// Entries that the file does not have are black. The pixels start inside of the file.
Palette ReadPalette(Bytes file, const Header& header) {
    Palette palette;
    palette.fill(kOpaque);
    const std::uint64_t end = std::min(PaletteEnd(header), PixelOffset(header));
    const std::size_t entryBytes = PaletteEntryBytes(header);
    std::size_t at = PaletteOffset(header);
    for (Pixel& colour : palette) {
        if (at + entryBytes > end) break;
        colour = Premultiplied(file[at + 2], file[at + 1], file[at], 255);
        at += entryBytes;
    }
    return palette;
}

Bytes PixelBytes(Bytes file, const Header& header) {
    const Bytes rest = file.subspan(static_cast<std::size_t>(PixelOffset(header)));
    const bool bounded = header.IsRunLength() && header.imageBytes != 0;
    return bounded ? rest.first(std::min<std::size_t>(rest.size(), header.imageBytes)) : rest;
}

std::optional<Layout> ReadLayout(Bytes file) {
    const std::optional<Header> header = ReadHeader(file);
    if (!header) return std::nullopt;
    const std::int64_t rows = header->height < 0 ? -header->height : header->height;
    if (!IsReadableSize(header->width, rows) || !IsReadableFormat(*header)) return std::nullopt;
    const std::optional<Masks> masks = ReadMasks(file, *header);
    if (!masks || PixelOffset(*header) >= file.size()) return std::nullopt;
    return Layout{.width = static_cast<int>(header->width),
                  .height = static_cast<int>(rows),
                  .topDown = header->height < 0,
                  .runLength = header->IsRunLength(),
                  .bits = header->bits,
                  .masks = *masks,
                  .palette = ReadPalette(file, *header),
                  .pixels = PixelBytes(file, *header)};
}

// ---- plain pixels ----

// Calls read(bytes of a row, pixels of that row) for each row.
template <typename ReadRow>
void ReadRows(const Layout& layout, Bitmap& bitmap, const ReadRow& read) {
    const std::size_t rowBytes = layout.RowBytes();
    for (int i = 0; i < layout.height; ++i) {
        const int y = layout.topDown ? i : layout.height - 1 - i;
        read(layout.pixels.subspan(static_cast<std::size_t>(i) * rowBytes, rowBytes),
             bitmap.Row(y));
    }
}

void ReadIndexedRows(const Layout& layout, Bitmap& bitmap) {
    const unsigned perByte = 8 / layout.bits;
    const unsigned mask = (1U << layout.bits) - 1;
    ReadRows(layout, bitmap, [&](Bytes row, std::span<Pixel> pixels) {
        for (std::size_t x = 0; x < pixels.size(); ++x) {
            const auto place = static_cast<unsigned>(x % perByte);
            const unsigned shift = 8 - layout.bits * (place + 1);
            pixels[x] = layout.palette[row[x / perByte] >> shift & mask];
        }
    });
}

void ReadTrueColourRows(const Layout& layout, Bitmap& bitmap) {
    ReadRows(layout, bitmap, [](Bytes row, std::span<Pixel> pixels) {
        const std::uint8_t* bytes = row.data();
        for (Pixel& pixel : pixels) {
            pixel = kOpaque | static_cast<Pixel>(bytes[2]) << 16U |
                    static_cast<Pixel>(bytes[1]) << 8U | bytes[0];
            bytes += 3;
        }
    });
}

// One colour or the alpha of a pixel, brought to 0..255.
class Channel {
public:
    explicit Channel(std::uint32_t mask)
        : mask_(mask), shift_(mask == 0 ? 0 : static_cast<unsigned>(std::countr_zero(mask))) {
        const std::uint32_t most = mask >> shift_;
        isByte_ = most == 255 || most == 0;
        scale_ = most == 0 ? 0 : 255.0 / most;
    }

    std::uint32_t Of(std::uint32_t pixel) const {
        const std::uint32_t value = (pixel & mask_) >> shift_;
        return isByte_ ? value : static_cast<std::uint32_t>(value * scale_ + 0.5);
    }

private:
    std::uint32_t mask_;
    unsigned shift_;
    bool isByte_ = true;
    double scale_ = 0;
};

// Pixels whose colours are not multiplied by the alpha become pixels that are.
void MultiplyByAlpha(Bitmap& bitmap) {
    Pixel all = 0;
    for (const Pixel pixel : bitmap.Pixels())
        all |= pixel;
    const bool hasAlpha = AlphaOf(all) != 0;
    for (Pixel& pixel : bitmap.Pixels()) {
        pixel = hasAlpha ? Premultiplied(pixel >> 16U & 255U, pixel >> 8U & 255U, pixel & 255U,
                                         AlphaOf(pixel))
                         : pixel | kOpaque;
    }
}

void ReadMaskedRows(const Layout& layout, Bitmap& bitmap) {
    const Channel red(layout.masks.red);
    const Channel green(layout.masks.green);
    const Channel blue(layout.masks.blue);
    const Channel alpha(layout.masks.alpha);
    const std::size_t pixelBytes = layout.bits / 8;
    ReadRows(layout, bitmap, [&](Bytes row, std::span<Pixel> pixels) {
        for (std::size_t x = 0; x < pixels.size(); ++x) {
            const std::size_t at = x * pixelBytes;
            const std::uint32_t value = pixelBytes == 2 ? Read16(row, at) : Read32(row, at);
            pixels[x] = alpha.Of(value) << 24U | red.Of(value) << 16U | green.Of(value) << 8U |
                        blue.Of(value);
        }
    });
    MultiplyByAlpha(bitmap);
}

std::optional<Bitmap> ReadPlain(const Layout& layout) {
    const std::uint64_t needed =
        static_cast<std::uint64_t>(layout.RowBytes()) * static_cast<std::uint64_t>(layout.height);
    if (layout.pixels.size() < needed) return std::nullopt;
    Bitmap bitmap(layout.width, layout.height);
    if (layout.bits <= kMostPaletteBits) {
        ReadIndexedRows(layout, bitmap);
    } else if (layout.bits == 24) {
        ReadTrueColourRows(layout, bitmap);
    } else {
        ReadMaskedRows(layout, bitmap);
    }
    return bitmap;
}

// ---- run-length encoded pixels ----

// Draws from the lower left corner. The position goes right and up only and stays at the first
// column or row outside, so that no pixel is drawn twice, however long the file is.
class RunLengthReader {
public:
    explicit RunLengthReader(const Layout& layout)
        : layout_(layout), bytes_(layout.pixels), bitmap_(layout.width, layout.height) {
        std::ranges::fill(bitmap_.Pixels(), layout.palette[0]);
    }

    // Nothing when the bytes end inside of a command; they may end after one without an end mark.
    std::optional<Bitmap> Read() {
        while (!ended_ && !bytes_.empty()) {
            if (!Step()) return std::nullopt;
        }
        return std::move(bitmap_);
    }

private:
    enum Escape : std::uint8_t { kEndOfLine = 0, kEndOfBitmap = 1, kDelta = 2 };

    bool Step() {
        const std::optional<Bytes> command = Take(2);
        if (!command) return false;
        const std::uint8_t count = command->front();
        const std::uint8_t value = command->back();
        if (count > 0) {
            Draw(count, [value](std::size_t) { return value; });
            return true;
        }
        switch (value) {
            case kEndOfLine:
                x_ = 0;
                MoveBy(0, 1);
                return true;
            case kEndOfBitmap:
                ended_ = true;
                return true;
            case kDelta:
                return Delta();
            default:
                return Absolute(value);
        }
    }

    bool Delta() {
        const std::optional<Bytes> move = Take(2);
        if (move) MoveBy(move->front(), move->back());
        return move.has_value();
    }

    // Pixels one by one, padded to an even number of bytes.
    bool Absolute(std::size_t count) {
        const std::size_t length = (count * layout_.bits + 15) / 16 * 2;
        const std::optional<Bytes> indexes = Take(length);
        if (indexes) Draw(count, [&](std::size_t offset) { return (*indexes)[offset]; });
        return indexes.has_value();
    }

    std::optional<Bytes> Take(std::size_t length) {
        if (bytes_.size() < length) return std::nullopt;
        const Bytes taken = bytes_.first(length);
        bytes_ = bytes_.subspan(length);
        return taken;
    }

    void MoveBy(int right, int up) {
        x_ = std::min(x_ + right, layout_.width);
        y_ = std::min(y_ + up, layout_.height);
    }

    // byteAt(offset) is a byte of the run: one index, or two of them, the left one in the upper
    // half.
    template <typename ByteAt>
    void Draw(std::size_t count, const ByteAt& byteAt) {
        if (y_ < layout_.height) {
            const std::span<Pixel> row = bitmap_.Row(layout_.height - 1 - y_);
            const std::span<Pixel> rest = row.subspan(static_cast<std::size_t>(x_));
            const std::size_t visible = std::min(count, rest.size());
            for (std::size_t i = 0; i < visible; ++i)
                rest[i] = layout_.palette[Index(i, byteAt)];
        }
        MoveBy(static_cast<int>(count), 0);
    }

    template <typename ByteAt>
    std::size_t Index(std::size_t place, const ByteAt& byteAt) const {
        if (layout_.bits == 8) return byteAt(place);
        const std::uint8_t pair = byteAt(place / 2);
        return place % 2 == 0 ? pair >> 4U : pair & 15U;
    }

    const Layout& layout_;
    Bytes bytes_;
    Bitmap bitmap_;
    int x_ = 0;
    int y_ = 0;  // from the bottom
    bool ended_ = false;
};

}  // namespace

std::optional<Bitmap> ReadBmp(std::span<const char> file) {
    const Bytes bytes(reinterpret_cast<const std::uint8_t*>(file.data()), file.size());
    const std::optional<Layout> layout = ReadLayout(bytes);
    if (!layout) return std::nullopt;
    return layout->runLength ? RunLengthReader(*layout).Read() : ReadPlain(*layout);
}

}  // namespace nqp::base
