#include "base/record_file.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <limits>
#include <utility>

#include "base/file.h"

namespace nqp::base {
namespace {

constexpr std::size_t kLengthBytes = 2;

std::size_t LengthAt(const std::vector<char>& bytes, std::size_t offset) {
    const auto low = static_cast<unsigned char>(bytes[offset]);
    const auto high = static_cast<unsigned char>(bytes[offset + 1]);
    return static_cast<std::size_t>(low) | static_cast<std::size_t>(high) << 8U;
}

// The record has room for the length and the text.
void PutRecord(std::string_view text, std::span<char> record) {
    record[0] = static_cast<char>(text.size() & 0xFFU);
    record[1] = static_cast<char>(text.size() >> 8U);
    std::ranges::copy(text, record.begin() + kLengthBytes);
}

void Write(std::ostream& file, std::span<const char> bytes) {
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// Many at a time, since each call of the system takes as long as copying a few kilobytes.
void WriteRecords(std::ostream& file, std::size_t recordLength,
                  std::span<const std::string_view> texts) {
    constexpr std::size_t kRecordsAtOnce = 500;
    std::vector<char> block;
    for (; !texts.empty(); texts = texts.subspan(std::min(texts.size(), kRecordsAtOnce))) {
        const auto some = texts.first(std::min(texts.size(), kRecordsAtOnce));
        block.assign(some.size() * recordLength, '\0');
        for (std::size_t index = 0; index < some.size(); ++index)
            PutRecord(some[index], std::span(block).subspan(index * recordLength));
        Write(file, block);
    }
}

}  // namespace

RecordFile::RecordFile(std::filesystem::path path, std::size_t recordLength)
    : path_(std::move(path)), recordLength_(recordLength) {
    std::ofstream(path_, std::ios::binary | std::ios::app);  // creates a missing file, empty
    bytes_ = ReadFile(path_);
}

std::size_t RecordFile::OffsetOf(int record) const {
    return static_cast<std::size_t>(std::max(record, 1) - 1) * recordLength_;
}

std::string RecordFile::Read(int record) const {
    const std::size_t offset = OffsetOf(record);
    if (offset + kLengthBytes > bytes_.size()) return {};
    const std::size_t length = LengthAt(bytes_, offset);
    const std::size_t first = offset + kLengthBytes;
    if (length > recordLength_ - kLengthBytes || first + length > bytes_.size()) return {};
    return {bytes_.data() + first, length};
}

bool RecordFile::Write(int record, std::string_view text) {
    const std::size_t capacity = std::min<std::size_t>(recordLength_ - kLengthBytes,
                                                       std::numeric_limits<std::uint16_t>::max());
    if (text.size() > capacity) return false;
    const std::size_t offset = OffsetOf(record);
    const std::size_t end = offset + kLengthBytes + text.size();
    if (bytes_.size() < end) bytes_.resize(end);
    PutRecord(text, std::span(bytes_).subspan(offset));
    return true;
}

bool RecordFile::Commit() {
    return PutFileInPlace(path_, bytes_);
}

bool ReplaceRecords(const std::filesystem::path& path, std::size_t recordLength,
                    std::span<const std::string_view> texts) {
    const std::vector<char> behind = ReadFile(path, texts.size() * recordLength);
    return PutFileInPlace(path, [&](std::ostream& file) {
        WriteRecords(file, recordLength, texts);
        Write(file, behind);
    });
}

}  // namespace nqp::base
