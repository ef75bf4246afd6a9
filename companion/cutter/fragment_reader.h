#pragma once

#include <cstdint>
#include <deque>
#include <optional>

#include "cutter/libav.h"
#include "cutter/source.h"

namespace nqp::companion {

// Times that differ by less are the same, seconds: containers round them to milliseconds.
inline constexpr double kSameTime = 0.0005;

// The streams of a file lie beside each other, but for so many seconds.
inline constexpr double kStreamsApart = 10;

// Takes what a FragmentReader decodes, in the order of each stream's own time.
class FragmentSink {
public:
    // Comes once before all others: where the fragment begins. It is the time of the first frame,
    // which comes with it, or the time that was asked for when there is no picture; then the frame
    // is null.
    virtual void Begin(double time, const AVFrame* first) = 0;
    // False when no more frames are wanted. Frames behind the fragment's end come as well. The
    // frame belongs to the reader.
    virtual bool TakeFrame(const AVFrame& frame, double time, double seconds) = 0;
    // False when no more sound is wanted.
    virtual bool TakeSound(const AVFrame& frame, double time) = 0;
    // The next frame lies behind the end of the fragment, far from it: the last one stays till
    // then.
    virtual void PictureStays() {}

protected:
    ~FragmentSink() = default;
};

struct FragmentRange {
    double begin = 0;  // seconds
    double end = 0;
    double frameSeconds = 0;   // of a frame that does not tell how long it is shown
    bool lastIsShown = false;  // behind the clip's end its last frame is
};

// Decodes a part of a clip from the frame that is shown at its begin. Frames and sound that lie
// before are decoded as well where others need them, and kept back.
class FragmentReader {
public:
    // Of the source's streams those that are given are decoded; null ones are not.
    FragmentReader(Source& source, const AVStream* video, const AVStream* sound,
                   FragmentRange range);

    // Throws CutError when there is nothing to decode there, and Interrupted.
    void Run(FragmentSink& sink);

    // Pieces of the fragment that could not be decoded, of all that it has; of the picture, where
    // there is one.
    std::int64_t Damaged() const { return damaged_; }
    std::int64_t Pieces() const { return pieces_; }

private:
    struct TimedFrame {
        Libav<AVFrame> frame;
        double time = 0;
        double seconds = 0;
    };
    struct Decoder {
        const AVStream* stream = nullptr;
        Libav<AVCodecContext> context;
        double next = 0;  // the time of a frame that does not tell its own
        bool wanted = false;
        bool over = false;  // nothing of it is read any more

        explicit operator bool() const { return context != nullptr; }
    };
    enum class Attempt { Done, Nothing, TooLate };

    Decoder OpenDecoder(const AVStream* stream) const;
    void Reset();
    Attempt ReadFrom(double before, FragmentSink& sink);
    bool WantsMore() const;
    void Decode(Decoder& decoder, const AVPacket* packet, FragmentSink& sink);
    void Take(Decoder& decoder, FragmentSink& sink);
    double TimeOf(Decoder& decoder, const AVFrame& frame) const;
    double LengthOf(const Decoder& decoder, const AVFrame& frame) const;
    void TakeFrame(TimedFrame frame, FragmentSink& sink);
    void TakeSound(TimedFrame frame, FragmentSink& sink);
    bool ReachesKey(const AVFrame& frame);
    void BeginWith(const TimedFrame* shown, const TimedFrame& next, FragmentSink& sink);
    void Begin(double time, const AVFrame* first, FragmentSink& sink);
    void BeginWithoutNext(FragmentSink& sink);
    bool SoundMissing(double begin) const;
    void Drain(FragmentSink& sink);
    bool FarBehind(const AVPacket& packet) const;
    bool Reads(const Decoder& decoder) const { return decoder.wanted && !decoder.over; }
    void Feed(Decoder& decoder, FragmentSink& sink);
    void EndPictureBefore(const AVPacket& packet, FragmentSink& sink);
    void Count(const Decoder& decoder, const AVPacket& packet, bool damaged);
    const Decoder& Main() const { return video_ ? video_ : sound_; }

    Source& source_;
    FragmentRange range_;
    double frame_seconds_ = 0;
    Decoder video_;
    Decoder sound_;
    Libav<AVPacket> packet_ = NewPacket();
    Libav<AVFrame> decoded_ = NewFrame();
    std::optional<TimedFrame> shown_;  // the latest frame before the begin
    std::deque<TimedFrame> early_sound_;
    bool key_seen_ = false;
    bool begun_ = false;
    bool too_late_ = false;
    bool accept_late_sound_ = false;
    bool stays_ = false;  // the picture, till the end
    std::int64_t damaged_ = 0;
    std::int64_t pieces_ = 0;
};

}  // namespace nqp::companion
