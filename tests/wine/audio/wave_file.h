#pragma once

#include <windows.h>

#include <mmreg.h>
#include <mmsystem.h>

#include <cstdint>
#include <string>

namespace nqp::test {

WAVEFORMATEX Pcm(DWORD rate, WORD channels, WORD bits);

// A WAVE file as its readers see it.
struct Wave {
    WAVEFORMATEX format{};
    std::string formatBytes;
    bool hasFact = false;
    std::uint32_t factSamples = 0;
    std::string data;
    bool whole = false;  // all sizes agree with the file

    double Seconds() const;
    // Of a sound in PCM of 16 or 8 bits, by the times that the first channel passes zero.
    double Frequency() const;
};
Wave ReadWave(const std::string& path);

}  // namespace nqp::test
