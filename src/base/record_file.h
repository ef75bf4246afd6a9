#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nqp::base {

// A file of fixed-length records numbered from 1. A record holds one text: its length in bytes as
// 16 bits, little endian, then the bytes; what follows in the record is not significant.
//
// The constructor reads the file, and creates it empty when it is missing. Write changes the copy
// in memory; Commit puts the whole file in place at once, so that a program that is killed at any
// moment leaves the old content or the new one. Errors of the disk are not reported: an unreadable
// file is an empty one, and Commit tells whether it succeeded.
class RecordFile {
public:
    RecordFile(std::filesystem::path path, std::size_t recordLength);

    // True for a file without a single byte.
    bool Empty() const { return bytes_.empty(); }

    // The text of a record; empty when it lies past the end, or when its length does not fit into
    // the record or the file.
    std::string Read(int record) const;

    // Stores the text and grows the file as needed, with zero bytes; the rest of the record keeps
    // what it held. False, with nothing changed, when the text does not fit.
    bool Write(int record, std::string_view text);

    // Of the file in bytes.
    std::size_t Size() const { return bytes_.size(); }

    bool Commit();

private:
    std::size_t OffsetOf(int record) const;

    std::filesystem::path path_;
    std::size_t recordLength_;
    std::vector<char> bytes_;
};

// Puts these texts into the file as its records from 1 on, with zeros behind each, as safely as
// Commit; records of the old file behind them stay. For many records: holds no copy of the file.
// Every text fits into a record. False when the file could not be written.
bool ReplaceRecords(const std::filesystem::path& path, std::size_t recordLength,
                    std::span<const std::string_view> texts);

}  // namespace nqp::base
