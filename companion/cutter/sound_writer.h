#pragma once

#include <cstdint>

#include "cutter/container.h"
#include "cutter/encoder.h"
#include "cutter/sound_track.h"

namespace nqp::companion {

// More channels become two, but where nothing may be lost.
inline constexpr int kStereo = 2;

// The sound of a fragment on its way into a container.
class SoundWriter {
public:
    struct Form {
        SoundCodec codec = SoundCodec::Pcm16;
        Quality quality = Quality::Good;
        int rate = 0;
        int channels = 0;
        // An AVI cannot say that an MP3 stream begins with the delay of its encoder, so the packets
        // that hold nothing else are left out and the rest is brought to its place.
        bool inAvi = false;
    };

    SoundWriter(const Form& form, Container& container);

    // Seconds; before it the container has begun.
    void Begin(double begin, double end);
    // False when no more is wanted.
    bool Add(const AVFrame& frame, double time) { return track_.Add(frame, time); }
    // The fragment is so many seconds long.
    void Finish(double seconds);
    // From the begin to the end of the sound that came.
    double Seconds() const;
    bool HasSound() const { return track_.HasSound(); }

private:
    void TakeChunk(AVFrame& chunk, std::int64_t place);
    void TakePacket(AVPacket& packet);

    Container& container_;
    Libav<AVCodecContext> encoder_;
    bool moved_;  // MP3 in an AVI
    std::int64_t packets_left_out_ = 0;
    std::int64_t lead_ = 0;  // samples in front of the begin
    std::int64_t packets_ = 0;
    std::int64_t most_packets_ = INT64_MAX;
    int stream_;
    SoundTrack track_;
};

}  // namespace nqp::companion
