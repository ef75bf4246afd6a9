#include "base/wave_writer.h"

#include <array>
#include <limits>
#include <ostream>

namespace nqp::base {
namespace {

constexpr std::uint64_t kRiffSizePlace = 4;
// The name and the size of a chunk, in front of what it holds.
constexpr std::uint64_t kChunkHeader = 8;
constexpr std::uint64_t kLargestSize = std::numeric_limits<std::uint32_t>::max();

// A chunk begins at an even place.
std::uint64_t Padding(std::uint64_t bytes) {
    return bytes % 2;
}

bool IsPcm(std::span<const char> format) {
    constexpr char kPcmTag = 1;
    return format.size() >= 2 && format[0] == kPcmTag && format[1] == 0;
}

void Write(std::ostream& file, std::span<const char> bytes) {
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// Lowest byte first.
void WriteNumber(std::ostream& file, std::uint64_t number) {
    std::array<char, 4> bytes{};
    for (char& byte : bytes) {
        byte = static_cast<char>(number & 0xFF);
        number >>= 8;
    }
    Write(file, bytes);
}

void PutNumber(std::ostream& file, std::uint64_t place, std::uint64_t number) {
    file.seekp(static_cast<std::streamoff>(place));
    WriteNumber(file, number);
}

}  // namespace

WaveWriter::WaveWriter(std::ostream& file, std::span<const char> format) : file_(file) {
    WriteHeader(format);
}

void WaveWriter::WriteHeader(std::span<const char> format) {
    file_ << "RIFF";
    WriteNumber(file_, 0);
    file_ << "WAVEfmt ";
    WriteNumber(file_, format.size());
    Write(file_, format);
    if (Padding(format.size()) != 0) file_.put('\0');
    size_ = kChunkHeader + 4 + kChunkHeader + format.size() + Padding(format.size());
    if (!IsPcm(format)) {
        factPlace_ = size_ + kChunkHeader;
        file_ << "fact";
        WriteNumber(file_, 4);
        WriteNumber(file_, 0);
        size_ = factPlace_ + 4;
    }
    file_ << "data";
    WriteNumber(file_, 0);
    size_ += kChunkHeader;
    dataPlace_ = size_;
}

bool WaveWriter::Append(std::span<const char> sound) {
    const std::uint64_t size = size_ + sound.size();
    if (size + Padding(size) - kChunkHeader > kLargestSize) return false;
    Write(file_, sound);
    if (!file_) return false;
    size_ = size;
    return true;
}

bool WaveWriter::Finish(std::uint32_t samples) {
    const std::uint64_t dataSize = size_ - dataPlace_;
    const bool whole = file_.good();
    // A write that failed may have left some bytes behind the last good one.
    file_.clear();
    file_.seekp(static_cast<std::streamoff>(size_));
    if (Padding(dataSize) != 0) file_.put('\0');
    PutNumber(file_, kRiffSizePlace, size_ + Padding(dataSize) - kChunkHeader);
    PutNumber(file_, dataPlace_ - 4, dataSize);
    if (factPlace_ != 0) PutNumber(file_, factPlace_, samples);
    file_.flush();
    return whole && file_.good();
}

}  // namespace nqp::base
