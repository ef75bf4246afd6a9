#include "cutter/sound_track.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace nqp::companion {
namespace {

// The times of sound jitter by some milliseconds in many containers; what differs by more is a gap
// or an overlap. Seconds.
constexpr double kGap = 0.03;
// So does what differs by the same for several frames, if by less.
constexpr double kSmallGap = 0.008;
constexpr std::size_t kSeveral = 4;
// What differs by less still is a clock that goes wrong, and is stretched to the right place within
// one second.
constexpr double kDrift = 0.0025;
constexpr int kMostSilenceAtOnce = 48000;

void SetLayout(AVChannelLayout& layout, int channels) {
    av_channel_layout_default(&layout, channels);
}

}  // namespace

SoundTrack::SoundTrack(const SoundForm& form, Taker taker)
    : form_(form),
      taker_(std::move(taker)),
      waiting_(Owned(av_audio_fifo_alloc(form.format, form.channels, form.chunk))) {}

void SoundTrack::Begin(double origin, std::int64_t samples) {
    origin_ = origin;
    total_ = samples;
}

bool SoundTrack::Add(const AVFrame& frame, double time) {
    if (frame.nb_samples <= 0 || frame.sample_rate <= 0) return Filled() < total_;
    if (!Fits(frame)) {
        Flush();
        Open(frame);
        Align(time);
    } else {
        Follow(time);
    }
    Convert(&frame);
    expected_ += static_cast<double>(frame.nb_samples) / frame.sample_rate;
    HandOn(false);
    return Filled() < total_;
}

void SoundTrack::Follow(double time) {
    const double late = time - expected_;
    late_.push_back(late);
    if (late_.size() > kSeveral) late_.pop_front();
    const auto [least, most] = std::ranges::minmax(late_);
    const bool steady = late_.size() == kSeveral && most - least < kDrift;
    const double common = steady ? (least + most) / 2 : 0;
    if (std::abs(late) > kGap || std::abs(common) > kSmallGap) {
        Flush();
        Checked(swr_init(converter_.get()), "sound converter");
        Align(time);
    } else if (std::abs(common) > kDrift) {
        const auto samples = static_cast<int>(std::lround(common * form_.rate));
        swr_set_compensation(converter_.get(), samples, form_.rate);
        expected_ += common;
        late_.clear();
    }
}

bool SoundTrack::Fits(const AVFrame& frame) const {
    return converter_ && frame.format == source_format_ && frame.sample_rate == source_rate_ &&
           frame.ch_layout.nb_channels == source_channels_;
}

void SoundTrack::Open(const AVFrame& frame) {
    AVChannelLayout wanted{};
    SetLayout(wanted, form_.channels);
    AVChannelLayout given{};
    if (frame.ch_layout.order == AV_CHANNEL_ORDER_UNSPEC) {
        SetLayout(given, frame.ch_layout.nb_channels);
    } else {
        Checked(av_channel_layout_copy(&given, &frame.ch_layout), "channels");
    }
    SwrContext* made = nullptr;
    const int result = swr_alloc_set_opts2(&made, &wanted, form_.format, form_.rate, &given,
                                           static_cast<AVSampleFormat>(frame.format),
                                           frame.sample_rate, 0, nullptr);
    av_channel_layout_uninit(&given);
    Checked(result, "sound converter");
    converter_.reset(made);
    Checked(swr_init(made), "sound converter");
    source_format_ = frame.format;
    source_rate_ = frame.sample_rate;
    source_channels_ = frame.ch_layout.nb_channels;
}

// The next converted sample is that of `time`.
void SoundTrack::Align(double time) {
    expected_ = time;
    late_.clear();
    const std::int64_t place = std::llround((time - origin_) * form_.rate);
    const std::int64_t missing = place - Filled();
    to_skip_ = std::max<std::int64_t>(0, -missing);
    if (missing > 0) AddSilence(missing);
}

void SoundTrack::Convert(const AVFrame* frame) {
    const int room =
        swr_get_out_samples(converter_.get(), frame != nullptr ? frame->nb_samples : 0);
    if (room <= 0) return;
    auto converted = NewChunk(room);
    // The library takes the planes as a pointer to pointers to constant bytes.
    const auto** const input =
        frame != nullptr ? const_cast<const std::uint8_t**>(frame->extended_data) : nullptr;
    const int count = swr_convert(converter_.get(), converted->extended_data, room, input,
                                  frame != nullptr ? frame->nb_samples : 0);
    if (count <= 0) return;
    converted->nb_samples = count;
    const std::int64_t before = Filled();
    Append(*converted);
    has_sound_ = has_sound_ || Filled() > before;
}

void SoundTrack::Flush() {
    if (converter_) Convert(nullptr);
}

void SoundTrack::Append(AVFrame& converted) {
    const auto skipped = static_cast<int>(std::min<std::int64_t>(to_skip_, converted.nb_samples));
    to_skip_ -= skipped;
    const int count = converted.nb_samples - skipped;
    if (count <= 0) return;
    const int planes = av_sample_fmt_is_planar(form_.format) != 0 ? form_.channels : 1;
    const int step = av_get_bytes_per_sample(form_.format) * (form_.channels / planes);
    std::array<void*, AV_NUM_DATA_POINTERS> data{};
    for (int plane = 0; plane < planes; ++plane) {
        const auto index = static_cast<std::size_t>(plane);
        data.at(index) =
            converted.extended_data[index] + static_cast<std::ptrdiff_t>(skipped) * step;
    }
    Checked(av_audio_fifo_write(waiting_.get(), data.data(), count), "sound queue");
}

void SoundTrack::AddSilence(std::int64_t samples) {
    std::int64_t left = std::min(samples, total_ - Filled());
    while (left > 0) {
        const auto count = static_cast<int>(std::min<std::int64_t>(left, kMostSilenceAtOnce));
        auto silence = NewChunk(count);
        av_samples_set_silence(silence->extended_data, 0, count, form_.channels, form_.format);
        Append(*silence);
        HandOn(false);
        left -= count;
    }
}

std::int64_t SoundTrack::Filled() const {
    return handed_on_ + av_audio_fifo_size(waiting_.get());
}

void SoundTrack::HandOn(bool all) {
    while (handed_on_ < total_) {
        const std::int64_t waiting = av_audio_fifo_size(waiting_.get());
        const auto count =
            static_cast<int>(std::min<std::int64_t>({waiting, form_.chunk, total_ - handed_on_}));
        if (count == 0 || (!all && waiting < form_.rate + form_.chunk)) return;
        auto chunk = NewChunk(count);
        av_audio_fifo_read(waiting_.get(), reinterpret_cast<void**>(chunk->extended_data), count);
        const std::int64_t place = handed_on_;
        handed_on_ += count;
        taker_(*chunk, place);
    }
}

void SoundTrack::Finish(std::int64_t samples) {
    total_ = std::max(handed_on_, samples);
    Flush();
    to_skip_ = 0;
    AddSilence(total_ - Filled());
    HandOn(true);
}

Libav<AVFrame> SoundTrack::NewChunk(int samples) const {
    auto chunk = NewFrame();
    chunk->format = form_.format;
    chunk->sample_rate = form_.rate;
    chunk->nb_samples = samples;
    SetLayout(chunk->ch_layout, form_.channels);
    Checked(av_frame_get_buffer(chunk.get(), 0), "sound buffer");
    return chunk;
}

}  // namespace nqp::companion
