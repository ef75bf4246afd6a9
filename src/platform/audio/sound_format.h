#pragma once

#include <windows.h>

#include <mmsystem.h>

#include <mmreg.h>

#include <cstddef>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace nqp::platform {

// A format of sound with all its bytes; the platform's structure has no fixed size.
class SoundFormat {
public:
    // None when the bytes are too few for what they say, or its rates are zero. Extra bytes that
    // the format does not claim are left out, and PCM has none whatever it claims.
    static std::optional<SoundFormat> FromBytes(const void* bytes, std::size_t size);

    // Never without the `cbSize`.
    const WAVEFORMATEX& Get() const { return *reinterpret_cast<const WAVEFORMATEX*>(all_.data()); }
    // For the structures of the platform, which take a format that they do not change.
    WAVEFORMATEX* Mutable() { return reinterpret_cast<WAVEFORMATEX*>(all_.data()); }
    // As files hold it: PCM without the `cbSize`.
    std::span<const char> FileBytes() const;

    bool operator==(const SoundFormat& other) const { return all_ == other.all_; }

private:
    explicit SoundFormat(std::vector<char> bytes) : all_(std::move(bytes)) {}

    std::vector<char> all_;
};

}  // namespace nqp::platform
