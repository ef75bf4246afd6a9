#include "cutter/sound_writer.h"

#include <algorithm>
#include <cmath>

namespace nqp::companion {

SoundWriter::SoundWriter(const Form& form, Container& container)
    : container_(container),
      encoder_(OpenSoundEncoder(form.codec, form.quality, form.rate, form.channels, form.inAvi)),
      moved_(form.inAvi && form.codec == SoundCodec::Mp3),
      stream_(container.Add(*encoder_)),
      track_(FormFor(*encoder_),
             [this](AVFrame& chunk, std::int64_t place) { TakeChunk(chunk, place); }) {
    if (!moved_) return;
    const std::int64_t size = encoder_->frame_size;
    packets_left_out_ = (encoder_->initial_padding + size - 1) / size;
    lead_ = packets_left_out_ * size - encoder_->initial_padding;
}

void SoundWriter::Begin(double begin, double end) {
    const double rate = encoder_->sample_rate;
    track_.Begin(begin - static_cast<double>(lead_) / rate,
                 std::llround((end - begin) * rate) + lead_);
}

double SoundWriter::Seconds() const {
    return static_cast<double>(track_.Filled() - lead_) / encoder_->sample_rate;
}

void SoundWriter::Finish(double seconds) {
    const std::int64_t samples = std::llround(seconds * encoder_->sample_rate);
    if (moved_) {
        const double size = encoder_->frame_size;
        most_packets_ =
            std::max<std::int64_t>(1, std::llround(static_cast<double>(samples) / size));
    }
    track_.Finish(samples + lead_);
    Encode(*encoder_, nullptr, [this](AVPacket& packet) { TakePacket(packet); });
}

void SoundWriter::TakeChunk(AVFrame& chunk, std::int64_t place) {
    chunk.pts = place;
    Encode(*encoder_, &chunk, [this](AVPacket& packet) { TakePacket(packet); });
}

void SoundWriter::TakePacket(AVPacket& packet) {
    if (moved_) {
        if (packets_left_out_ > 0) {
            --packets_left_out_;
            return;
        }
        if (packets_ == most_packets_) return;
        packet.pts = packet.dts = packets_ * encoder_->frame_size;
        ++packets_;
    }
    container_.Write(packet, stream_);
}

}  // namespace nqp::companion
