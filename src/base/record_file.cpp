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
    bytes_[offset] = static_cast<char>(text.size() & 0xFFU);
    bytes_[offset + 1] = static_cast<char>(text.size() >> 8U);
    std::copy(text.begin(), text.end(),
              bytes_.begin() + static_cast<std::ptrdiff_t>(offset + kLengthBytes));
    return true;
}

void RecordFile::Reserve(int records) {
    bytes_.reserve(OffsetOf(records + 1));
}

RecordFile RecordFile::Anew(std::filesystem::path path, std::size_t recordLength) {
    RecordFile file;
    file.path_ = std::move(path);
    file.recordLength_ = recordLength;
    file.anew_ = true;
    return file;
}

void RecordFile::AddOldRecordsBehind() {
    const std::size_t records = (bytes_.size() + recordLength_ - 1) / recordLength_;
    const std::vector<char> behind = ReadFile(path_, records * recordLength_);
    if (behind.empty()) return;
    bytes_.resize(records * recordLength_);
    bytes_.insert(bytes_.end(), behind.begin(), behind.end());
}

bool RecordFile::Commit() {
    if (std::exchange(anew_, false)) AddOldRecordsBehind();
    return PutFileInPlace(path_, bytes_);
}

}  // namespace nqp::base
