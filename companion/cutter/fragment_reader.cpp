#include "cutter/fragment_reader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace nqp::companion {
namespace {

// How far before the begin reading sets in, seconds: first so that the sound's decoder has found
// its way, then further and further back, in case that a key frame lies far away or that the file
// leads to a wrong place. After the last one the whole clip is read from its start.
constexpr std::array<double, 5> kStepsBack = {0.2, 2, 10, 40, 160};
// Up to here it is worth looking for sound that is missing at the begin.
constexpr double kFarthestForSound = 2;
// A picture that begins by so much later than the sound is waited for; before that there is
// nothing to see, seconds.
constexpr double kLongestBlind = 0.5;

}  // namespace

FragmentReader::FragmentReader(Source& source, const AVStream* video, const AVStream* sound,
                               FragmentRange range)
    : source_(source),
      range_(range),
      frame_seconds_(range.frameSeconds),
      video_(OpenDecoder(video)),
      sound_(OpenDecoder(sound)) {
    source_.Use(video, sound);
}

FragmentReader::Decoder FragmentReader::OpenDecoder(const AVStream* stream) const {
    Decoder decoder;
    if (stream == nullptr) return decoder;
    const AVCodec* const codec = avcodec_find_decoder(stream->codecpar->codec_id);
    const std::string kind =
        stream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO ? "picture" : "sound";
    if (codec == nullptr) {
        throw CutError("The " + kind + " of " + source_.Name() + " (" +
                       avcodec_get_name(stream->codecpar->codec_id) + ") cannot be decoded.");
    }
    auto context = Owned(avcodec_alloc_context3(codec));
    Checked(avcodec_parameters_to_context(context.get(), stream->codecpar), "decoder");
    context->pkt_timebase = stream->time_base;
    context->thread_count = 0;
    if (avcodec_open2(context.get(), codec, nullptr) < 0) {
        throw CutError("The " + kind + " of " + source_.Name() + " is damaged.");
    }
    decoder.stream = stream;
    decoder.context = std::move(context);
    return decoder;
}

void FragmentReader::Run(FragmentSink& sink) {
    for (const double back : kStepsBack) {
        const double before = range_.begin - back;
        accept_late_sound_ = back > kFarthestForSound;
        if (before <= 0) break;
        if (ReadFrom(before, sink) != Attempt::TooLate) return;
    }
    ReadFrom(0, sink);
}

void FragmentReader::Reset() {
    for (Decoder* const decoder : {&video_, &sound_}) {
        if (!*decoder) continue;
        avcodec_flush_buffers(decoder->context.get());
        decoder->wanted = true;
        decoder->over = false;
        decoder->next = 0;
    }
    shown_.reset();
    early_sound_.clear();
    key_seen_ = begun_ = too_late_ = stays_ = false;
    damaged_ = pieces_ = 0;
}

FragmentReader::Attempt FragmentReader::ReadFrom(double before, FragmentSink& sink) {
    Reset();
    if (before > 0) {
        source_.SeekBefore(before);
    } else {
        source_.Rewind();
    }
    while (WantsMore() && source_.Read(*packet_)) {
        EndPictureBefore(*packet_, sink);
        for (Decoder* const decoder : {&video_, &sound_}) {
            if (Reads(*decoder) && packet_->stream_index == decoder->stream->index) {
                Feed(*decoder, sink);
            }
        }
    }
    if (!too_late_) Drain(sink);
    if (begun_) return Attempt::Done;
    // From further back it would come to the same.
    return key_seen_ && !too_late_ ? Attempt::Nothing : Attempt::TooLate;
}

// A stream whose data lies far behind the end is not read on.
void FragmentReader::Feed(Decoder& decoder, FragmentSink& sink) {
    if (!FarBehind(*packet_)) return Decode(decoder, packet_.get(), sink);
    Decode(decoder, nullptr, sink);
    decoder.over = true;
    stays_ = stays_ || &decoder == &video_;
    if (stays_ && begun_) sink.PictureStays();
}

// The decoder holds frames back until it is told that no more come.
void FragmentReader::EndPictureBefore(const AVPacket& packet, FragmentSink& sink) {
    constexpr double kSurelyOver = 1;  // seconds
    if (!Reads(video_) || packet.stream_index == video_.stream->index) return;
    const AVStream& video = *video_.stream;
    if (video.duration == AV_NOPTS_VALUE || packet.dts == AV_NOPTS_VALUE) return;
    const double length = static_cast<double>(video.duration) * av_q2d(video.time_base);
    const double time = source_.TimeOf(packet.dts, *source_.Sound());
    if (time < source_.BeginOf(video) + length + kSurelyOver) return;
    Decode(video_, nullptr, sink);
    video_.over = true;
}

void FragmentReader::Count(const Decoder& decoder, const AVPacket& packet, bool damaged) {
    if (&decoder != &Main() || packet.pts == AV_NOPTS_VALUE) return;
    const double time = source_.TimeOf(packet.pts, *decoder.stream);
    if (time < range_.begin || time >= range_.end) return;
    ++pieces_;
    if (damaged) ++damaged_;
}

bool FragmentReader::WantsMore() const {
    source_.ThrowIfCancelled();
    return !too_late_ && (Reads(video_) || Reads(sound_));
}

bool FragmentReader::FarBehind(const AVPacket& packet) const {
    if (packet.dts == AV_NOPTS_VALUE) return false;
    const AVStream& stream = *source_.Format().streams[packet.stream_index];
    return source_.TimeOf(packet.dts, stream) > range_.end + kStreamsApart;
}

void FragmentReader::Decode(Decoder& decoder, const AVPacket* packet, FragmentSink& sink) {
    const int sent = avcodec_send_packet(decoder.context.get(), packet);
    if (packet != nullptr) Count(decoder, *packet, sent < 0);
    while (decoder.wanted && !too_late_) {
        const int received = avcodec_receive_frame(decoder.context.get(), decoded_.get());
        if (received < 0) return;
        Take(decoder, sink);
    }
}

void FragmentReader::Take(Decoder& decoder, FragmentSink& sink) {
    source_.ThrowIfCancelled();
    TimedFrame taken{NewFrame(), TimeOf(decoder, *decoded_), LengthOf(decoder, *decoded_)};
    decoder.next = taken.time + taken.seconds;
    av_frame_move_ref(taken.frame.get(), decoded_.get());
    if (&decoder == &video_) {
        // Containers may know better than codecs.
        AVStream* const stream = source_.Video();
        taken.frame->sample_aspect_ratio =
            av_guess_sample_aspect_ratio(&source_.Format(), stream, taken.frame.get());
        TakeFrame(std::move(taken), sink);
    } else {
        TakeSound(std::move(taken), sink);
    }
}

double FragmentReader::TimeOf(Decoder& decoder, const AVFrame& frame) const {
    if (frame.best_effort_timestamp == AV_NOPTS_VALUE) return decoder.next;
    return source_.TimeOf(frame.best_effort_timestamp, *decoder.stream);
}

double FragmentReader::LengthOf(const Decoder& decoder, const AVFrame& frame) const {
    if (&decoder == &sound_) {
        return frame.sample_rate > 0 ? static_cast<double>(frame.nb_samples) / frame.sample_rate
                                     : 0;
    }
    const double told = static_cast<double>(frame.pkt_duration) * av_q2d(decoder.stream->time_base);
    return told > 0 ? told : frame_seconds_;
}

// What comes before the first key frame, in the middle of a clip, may refer to frames that were
// never read.
bool FragmentReader::ReachesKey(const AVFrame& frame) {
    key_seen_ = key_seen_ || frame.key_frame != 0 || source_.AtStart();
    return key_seen_;
}

void FragmentReader::TakeFrame(TimedFrame taken, FragmentSink& sink) {
    if (!ReachesKey(*taken.frame)) return;
    if (!begun_ && taken.time <= range_.begin + kSameTime) {
        shown_ = std::move(taken);
        return;
    }
    if (!begun_) {
        const auto shown = std::exchange(shown_, std::nullopt);
        BeginWith(shown ? &*shown : nullptr, taken, sink);
    }
    video_.wanted =
        video_.wanted && !too_late_ && sink.TakeFrame(*taken.frame, taken.time, taken.seconds);
}

// A frame that has been in sight for long does not lengthen the fragment; neither does one that
// comes long after the sound.
void FragmentReader::BeginWith(const TimedFrame* shown, const TimedFrame& next,
                               FragmentSink& sink) {
    const TimedFrame& first = shown != nullptr ? *shown : next;
    const double early = range_.begin - first.time;
    const bool near = early < frame_seconds_ + kSameTime && -early < kLongestBlind;
    const double begin = near ? first.time : range_.begin;
    too_late_ = (shown == nullptr && !source_.AtStart()) || SoundMissing(begin);
    if (too_late_) return;
    Begin(begin, first.frame.get(), sink);
    if (stays_) sink.PictureStays();
    if (shown == nullptr) return;
    const bool more = sink.TakeFrame(*shown->frame, begin, shown->time + shown->seconds - begin);
    video_.wanted = video_.wanted && more;
}

bool FragmentReader::SoundMissing(double begin) const {
    if (accept_late_sound_ || source_.AtStart() || early_sound_.empty()) return false;
    const bool late = early_sound_.front().time > begin + kSameTime;
    return late && source_.BeginOf(*sound_.stream) < begin;
}

void FragmentReader::Begin(double time, const AVFrame* first, FragmentSink& sink) {
    begun_ = true;
    sink.Begin(time, first);
    while (!early_sound_.empty()) {
        const TimedFrame sound = std::move(early_sound_.front());
        early_sound_.pop_front();
        sound_.wanted = sound_.wanted && sink.TakeSound(*sound.frame, sound.time);
    }
}

void FragmentReader::TakeSound(TimedFrame taken, FragmentSink& sink) {
    if (begun_) {
        sound_.wanted = sink.TakeSound(*taken.frame, taken.time);
        return;
    }
    if (taken.time + taken.seconds < range_.begin - std::max(frame_seconds_, kSameTime)) return;
    early_sound_.push_back(std::move(taken));
    if (video_) return BeginWithoutNext(sink);
    const bool missing = SoundMissing(range_.begin);
    too_late_ = missing;
    if (!missing) Begin(range_.begin, nullptr, sink);
}

// A picture that stays, with sound: the next frame is not waited for.
void FragmentReader::BeginWithoutNext(FragmentSink& sink) {
    const bool waited = early_sound_.back().time > range_.begin + kStreamsApart;
    if (!waited || !shown_) return;
    const TimedFrame first = *std::exchange(shown_, std::nullopt);
    BeginWith(&first, first, sink);
}

// At the end of the clip the decoders give out what they hold.
void FragmentReader::Drain(FragmentSink& sink) {
    for (Decoder* const decoder : {&video_, &sound_}) {
        if (*decoder && Reads(*decoder)) Decode(*decoder, nullptr, sink);
    }
    if (begun_ || !shown_) return;
    const TimedFrame last = *std::exchange(shown_, std::nullopt);
    const bool reached = last.time + last.seconds > range_.begin + kSameTime;
    const bool stays = stays_ || range_.lastIsShown || !early_sound_.empty();
    if (reached || stays) BeginWith(&last, last, sink);
}

}  // namespace nqp::companion
