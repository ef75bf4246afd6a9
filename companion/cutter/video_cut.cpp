#include <cmath>
#include <utility>

#include "cutter/container.h"
#include "cutter/encoder.h"
#include "cutter/fragment_reader.h"
#include "cutter/frame_picker.h"
#include "cutter/job_parts.h"
#include "cutter/picture_chain.h"
#include "cutter/sound_writer.h"

namespace nqp::companion {
namespace {

constexpr int kPlainSoundBits = 16;
// What the clocks of encoders and of AVI files count up to.
constexpr int kLargestRatePart = 65535;
// Sound that outlasts the picture by less goes with it; by more, the last frame stays, seconds.
constexpr double kLooseEnd = 0.5;
// When no frame comes for so long, the last one stays for now, seconds.
constexpr double kPictureStays = 10;

AVRational RateOf(const CutJob& job, AVRational source) {
    AVRational rate{};
    av_reduce(&rate.num, &rate.den, std::int64_t{source.num} * job.percentage,
              std::int64_t{source.den} * kAllPercent, kLargestRatePart);
    return rate;
}

bool IsFine(const AVCodecParameters& sound) {
    return std::max(sound.bits_per_raw_sample, sound.bits_per_coded_sample) > kPlainSoundBits &&
           av_get_bytes_per_sample(static_cast<AVSampleFormat>(sound.format)) > 2;
}

SoundWriter::Form SoundFormOf(const CutJob& job, const AVCodecParameters& source) {
    const bool lossless = job.video == VideoFormat::Lossless;
    const bool mp3 = job.video == VideoFormat::Smaller;
    const int channels = source.ch_layout.nb_channels;
    SoundCodec codec = mp3 ? SoundCodec::Mp3 : SoundCodec::Pcm16;
    if (lossless && IsFine(source)) codec = SoundCodec::Pcm24;
    return {.codec = codec,
            .quality = job.quality,
            .rate = mp3 ? NearestMp3Rate(source.sample_rate) : source.sample_rate,
            .channels = lossless ? channels : std::min(channels, kStereo),
            .inAvi = true};
}

class VideoCut final : public FragmentSink {
public:
    VideoCut(const CutJob& job, Source& source, TemporaryOutput& output, AVRational grid,
             bool withSound)
        : job_(job),
          source_(source),
          meter_(source.Watch(), job.end - job.begin),
          grid_(grid),
          rate_(RateOf(job, grid_)),
          picker_(av_q2d(grid_), job.percentage),
          container_("avi", output),
          with_sound_(withSound) {}

    void Begin(double time, const AVFrame* first) override;
    bool TakeFrame(const AVFrame& frame, double time, double seconds) override;
    bool TakeSound(const AVFrame& frame, double time) override {
        if (held_ && time > latest_ + kPictureStays) Repeat(time - kPictureStays / 2);
        return sound_ && sound_->Add(frame, time);
    }
    void PictureStays() override { ended_ = true; }
    void Finish();

    bool HasPicture() const { return held_ != nullptr; }
    CutReport Report() const { return {.frames = encoded_, .seconds = Length(), .damaged = 0}; }
    std::int64_t Taken() const { return taken_; }

private:
    PictureForm FormOf(const AVFrame& first) const;
    void OpenVideo(const AVFrame& first);
    void Write(std::int64_t times);
    void Repeat(double until);
    void TakePicture(AVFrame& frame);
    double Length() const { return static_cast<double>(picker_.Places()) / av_q2d(grid_); }
    double End() const;

    const CutJob& job_;
    Source& source_;
    Meter meter_;
    AVRational grid_;  // of the source
    AVRational rate_;  // of what is written
    FramePicker picker_;
    Container container_;
    bool with_sound_;
    std::optional<PictureChain> chain_;
    Libav<AVCodecContext> encoder_;
    std::optional<SoundWriter> sound_;
    int stream_ = 0;
    double begin_ = 0;
    Libav<AVFrame> held_;
    double held_end_ = 0;
    double latest_ = 0;   // time that frames were written for
    bool ended_ = false;  // by a frame behind the end
    std::int64_t taken_ = 0;
    std::int64_t encoded_ = 0;
};

PictureForm VideoCut::FormOf(const AVFrame& first) const {
    PictureForm form;
    form.turns = TurnsOf(*source_.Video());
    form.format = PixelFormatFor(job_.video, static_cast<AVPixelFormat>(first.format));
    form.jpegColours = job_.video == VideoFormat::MotionJpeg;
    const bool lossless = job_.video == VideoFormat::Lossless;
    form.deinterlaced = form.squarePixels = !lossless;
    form.keepsSize = form.keepsRange = lossless;
    if (job_.mode == core::JobMode::VideoWithPicture) form.picture = job_.picture;
    return form;
}

void VideoCut::OpenVideo(const AVFrame& first) {
    const PictureForm form = FormOf(first);
    chain_.emplace(form, first, [this](AVFrame& frame) { TakePicture(frame); });
    encoder_ =
        OpenVideoEncoder(job_.video, job_.quality,
                         {.width = chain_->Width(),
                          .height = chain_->Height(),
                          .aspect = chain_->Aspect(),
                          .rate = rate_,
                          .format = form.format,
                          .colours = form.jpegColours ? AVCOL_SPC_BT470BG : first.colorspace,
                          .range = form.jpegColours ? AVCOL_RANGE_JPEG : AVCOL_RANGE_UNSPECIFIED});
    stream_ = container_.Add(*encoder_);
}

void VideoCut::Begin(double time, const AVFrame* first) {
    begin_ = time;
    if (first == nullptr) return;
    picker_.Begin(time);
    OpenVideo(*first);
    if (with_sound_) sound_.emplace(SoundFormOf(job_, *source_.Sound()->codecpar), container_);
    container_.Begin();
    // The last frame may reach beyond the end.
    if (sound_) sound_->Begin(time, job_.end + 1 / av_q2d(grid_));
}

bool VideoCut::TakeFrame(const AVFrame& frame, double time, double seconds) {
    if (time >= job_.end - kSameTime) {
        ended_ = true;
        return false;
    }
    if (held_) Write(picker_.Next(time));
    held_ = Clone(frame);
    held_end_ = time + seconds;
    latest_ = time;
    ++taken_;
    meter_.Reached(time - begin_);
    return true;
}

void VideoCut::Write(std::int64_t times) {
    for (; times > 0; --times) {
        source_.ThrowIfCancelled();
        chain_->Add(*held_);
    }
}

// A picture that stays goes with the sound, so that neither is far ahead in the file.
void VideoCut::Repeat(double until) {
    Write(picker_.Next(until));
    latest_ = until;
    meter_.Reached(until - begin_);
}

// The encoder decides anew which frames are key frames.
void VideoCut::TakePicture(AVFrame& frame) {
    frame.pts = encoded_++;
    frame.pict_type = AV_PICTURE_TYPE_NONE;
    frame.quality = encoder_->global_quality;
    Encode(*encoder_, &frame, [this](AVPacket& packet) { container_.Write(packet, stream_); });
}

double VideoCut::End() const {
    if (ended_) return job_.end;
    const double heard = sound_ ? begin_ + sound_->Seconds() : 0;
    const double end = heard > held_end_ + kLooseEnd ? heard : held_end_;
    return std::min(end, job_.end);
}

void VideoCut::Finish() {
    Write(picker_.Finish(End()));
    chain_->Finish();
    Encode(*encoder_, nullptr, [this](AVPacket& packet) { container_.Write(packet, stream_); });
    if (sound_) sound_->Finish(Length());
    container_.End();
}

}  // namespace

CutReport CutVideo(const CutJob& job, Source& source, TemporaryOutput& output) {
    const AVStream* const video = source.Video();
    if (video == nullptr) throw CutError(source.Name() + " has no picture.");
    const AVStream* const sound = source.Sound();
    const AVRational rate = source.FrameRateFrom(job.begin);
    FragmentReader reader(source, video, sound,
                          {.begin = job.begin, .end = job.end, .frameSeconds = 1 / av_q2d(rate)});
    VideoCut cut(job, source, output, rate, sound != nullptr);
    reader.Run(cut);
    if (!cut.HasPicture()) {
        throw CutError("There is no picture between " + ClockText(job.begin) + " and " +
                       ClockText(job.end) + " in " + source.Name() + ".");
    }
    cut.Finish();
    if (reader.Damaged() > 0 && cut.Taken() * 2 < reader.Pieces()) {
        throw CutError(source.Name() + " is damaged in this part: only " +
                       std::to_string(cut.Taken()) + " of " + std::to_string(reader.Pieces()) +
                       " frames could be read.");
    }
    CutReport report = cut.Report();
    report.damaged = reader.Damaged();
    return report;
}

}  // namespace nqp::companion
