#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <string>

#include "cutter/libav.h"

namespace nqp::companion {

// How sound is wanted.
struct SoundForm {
    AVSampleFormat format = AV_SAMPLE_FMT_S16;
    int rate = 0;  // hertz
    int channels = 0;
    int chunk = 0;  // samples per channel that are handed on at once
};

// The sound of a fragment, sample by sample from its begin to its end: sound that comes early is
// cut off, and where none comes there is silence. The last second is kept back until it is known
// where the track ends.
class SoundTrack {
public:
    // Takes a chunk; `place` counts samples from the begin. The last one may be shorter.
    using Taker = std::function<void(AVFrame& chunk, std::int64_t place)>;

    SoundTrack(const SoundForm& form, Taker taker);

    // Seconds, and samples of the wanted form in all.
    void Begin(double origin, std::int64_t samples);
    // A frame as it was decoded, and its time in seconds. False when the track is complete.
    bool Add(const AVFrame& frame, double time);
    // No sound comes any more; the track ends after so many samples, though not before what was
    // handed on already.
    void Finish(std::int64_t samples);

    // Samples that came so far, from the begin on.
    std::int64_t Filled() const;
    // Something of the source is in it.
    bool HasSound() const { return has_sound_; }

private:
    bool Fits(const AVFrame& frame) const;
    void Convert(const AVFrame* frame);
    void Flush();
    void Open(const AVFrame& frame);
    void Follow(double time);
    void Align(double time);
    void AddSilence(std::int64_t samples);
    void Append(AVFrame& converted);
    void HandOn(bool all);
    Libav<AVFrame> NewChunk(int samples) const;

    SoundForm form_;
    Taker taker_;
    Libav<SwrContext> converter_;
    Libav<AVAudioFifo> waiting_;
    int source_format_ = -1;
    int source_rate_ = 0;
    int source_channels_ = 0;
    double origin_ = 0;
    double expected_ = 0;      // time of the next source sample
    std::deque<double> late_;  // by how much the last frames came later than expected, seconds
    std::int64_t total_ = 0;
    std::int64_t handed_on_ = 0;
    std::int64_t to_skip_ = 0;  // converted samples that lie before the begin
    bool has_sound_ = false;
};

}  // namespace nqp::companion
