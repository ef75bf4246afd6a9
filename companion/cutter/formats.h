#pragma once

#include <cstdint>

namespace nqp::companion {

// How a video fragment is written, all of them as AVI.
enum class VideoFormat {
    PlaysEverywhere,  // MPEG-4 version 3 and PCM: the system's own codecs
    Smaller,          // MPEG-4 part 2 and MP3
    MotionJpeg,       // every frame for itself, and PCM
    Lossless,         // FFV1 and PCM
    Copy,             // the source's own data, from the key frame before
};

// What a job for sound alone writes.
enum class SoundFormat { AviPcm, Wave, Mp3 };

// The one setting that all that is compressed with loss follows.
enum class Quality { Draft, Good, Best };

inline constexpr std::int32_t kUsualMp3Rate = 44100;  // hertz

}  // namespace nqp::companion
