#include "platform/audio/sound_format.h"

#include <algorithm>
#include <cstring>

namespace nqp::platform {

std::optional<SoundFormat> SoundFormat::FromBytes(const void* bytes, std::size_t size) {
    if (bytes == nullptr || size < sizeof(PCMWAVEFORMAT)) return std::nullopt;
    WAVEFORMATEX format{};
    std::memcpy(&format, bytes, std::min(size, sizeof format));
    if (format.nBlockAlign == 0 || format.nSamplesPerSec == 0 || format.nAvgBytesPerSec == 0) {
        return std::nullopt;
    }
    if (format.wFormatTag == WAVE_FORMAT_PCM || size < sizeof format) format.cbSize = 0;
    if (sizeof format + format.cbSize > std::max(size, sizeof format)) return std::nullopt;
    std::vector<char> all(sizeof format + format.cbSize);
    std::memcpy(all.data(), bytes, std::min(size, all.size()));
    std::memcpy(all.data(), &format, sizeof format);
    return SoundFormat(std::move(all));
}

std::span<const char> SoundFormat::FileBytes() const {
    const bool pcm = Get().wFormatTag == WAVE_FORMAT_PCM;
    return std::span(all_).first(pcm ? sizeof(PCMWAVEFORMAT) : all_.size());
}

}  // namespace nqp::platform
