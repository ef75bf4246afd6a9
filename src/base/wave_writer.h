#pragma once

#include <cstdint>
#include <iosfwd>
#include <span>

namespace nqp::base {

// Writes a RIFF WAVE file from front to back. Its sizes are known at the end only and are put in by
// Finish; a file that was never finished holds no sound for its readers.
class WaveWriter {
public:
    // `format` is a WAVEFORMATEX, of which PCM needs the first 16 bytes. The file is empty, and
    // outlives the writer.
    WaveWriter(std::ostream& file, std::span<const char> format);
    WaveWriter(const WaveWriter&) = delete;
    WaveWriter& operator=(const WaveWriter&) = delete;

    // False when the bytes are not in the file: the disk is full, or the file would become larger
    // than its 32-bit sizes can say. What was written before can still be finished.
    bool Append(std::span<const char> sound);

    // Samples per channel; only files of formats other than PCM tell of them. False when a write
    // failed, now or before.
    bool Finish(std::uint32_t samples);

private:
    void WriteHeader(std::span<const char> format);

    std::ostream& file_;
    std::uint64_t size_ = 0;  // of the file so far
    std::uint64_t factPlace_ = 0;
    std::uint64_t dataPlace_ = 0;
};

}  // namespace nqp::base
