#include "wave_file.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>

#include "base/file.h"

namespace nqp::test {
namespace {

constexpr std::size_t kChunkHeader = 8;

std::string Content(const std::string& path) {
    std::ifstream file(base::PathFromUtf8(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::uint32_t NumberAt(const std::string& bytes, std::size_t place) {
    std::uint32_t number = 0;
    if (place + sizeof number <= bytes.size()) std::memcpy(&number, &bytes[place], sizeof number);
    return number;
}

void TakeChunk(Wave& wave, const std::string& name, const std::string& content) {
    if (name == "fmt ") {
        wave.formatBytes = content;
        std::memcpy(&wave.format, content.data(), std::min(content.size(), sizeof wave.format));
    } else if (name == "fact") {
        wave.hasFact = true;
        wave.factSamples = NumberAt(content, 0);
    } else if (name == "data") {
        wave.data = content;
    }
}

}  // namespace

WAVEFORMATEX Pcm(DWORD rate, WORD channels, WORD bits) {
    WAVEFORMATEX format{};
    format.wFormatTag = WAVE_FORMAT_PCM;
    format.nChannels = channels;
    format.nSamplesPerSec = rate;
    format.wBitsPerSample = bits;
    format.nBlockAlign = static_cast<WORD>(channels * bits / 8);
    format.nAvgBytesPerSec = rate * format.nBlockAlign;
    return format;
}

double Wave::Seconds() const {
    return static_cast<double>(data.size()) / format.nAvgBytesPerSec;
}

double Wave::Frequency() const {
    int passes = 0;
    int side = 0;
    for (std::size_t place = 0; place + format.nBlockAlign <= data.size();
         place += format.nBlockAlign) {
        std::int16_t sample = 0;
        if (format.wBitsPerSample == 16) {
            std::memcpy(&sample, &data[place], sizeof sample);
        } else {
            sample = static_cast<std::int16_t>(static_cast<unsigned char>(data[place]) - 128);
        }
        const int now = (sample > 0) - (sample < 0);
        if (now != 0 && now != side) {
            if (side != 0) ++passes;
            side = now;
        }
    }
    return passes / 2.0 / Seconds();
}

Wave ReadWave(const std::string& path) {
    Wave wave;
    const std::string bytes = Content(path);
    if (!bytes.starts_with("RIFF") || bytes.substr(8, 4) != "WAVE") return wave;
    std::size_t place = 12;
    while (place + kChunkHeader <= bytes.size()) {
        const std::size_t size = NumberAt(bytes, place + 4);
        if (place + kChunkHeader + size > bytes.size()) return wave;
        TakeChunk(wave, bytes.substr(place, 4), bytes.substr(place + kChunkHeader, size));
        place += kChunkHeader + size + size % 2;
    }
    wave.whole = place == bytes.size() && NumberAt(bytes, 4) + kChunkHeader == bytes.size();
    return wave;
}

}  // namespace nqp::test
