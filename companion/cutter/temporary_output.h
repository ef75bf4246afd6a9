#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <system_error>

#include "cutter/file_handle.h"

namespace nqp::companion {

// What is written before it is whole: a file beside the target, of which nothing is left unless it
// is put in the target's place.
class TemporaryOutput {
public:
    // Removes what jobs that were killed have left in the target's folder. Throws CutError when the
    // folder is missing or takes no file.
    explicit TemporaryOutput(const std::filesystem::path& target);
    ~TemporaryOutput();
    TemporaryOutput(const TemporaryOutput&) = delete;
    TemporaryOutput& operator=(const TemporaryOutput&) = delete;

    // False once it has failed; ThrowIfFailed says why. Both count from the file's beginning.
    bool Write(std::span<const std::uint8_t> bytes);
    bool Seek(std::int64_t place);
    std::int64_t Size() const { return file_.Size().value_or(0); }

    void ThrowIfFailed() const;
    // The last step. Throws CutError, and the old file of that name is as it was.
    void PutInPlace();

private:
    std::filesystem::path target_;
    std::filesystem::path path_;
    FileHandle file_;
    std::error_code failure_;
};

}  // namespace nqp::companion
