#include <algorithm>

#include "cutter/fragment_reader.h"
#include "cutter/job_parts.h"
#include "cutter/sound_writer.h"

namespace nqp::companion {
namespace {

const char* ContainerOf(SoundFormat format) {
    switch (format) {
        case SoundFormat::Wave:
            return "wav";
        case SoundFormat::Mp3:
            return "mp3";
        case SoundFormat::AviPcm:
            break;
    }
    return "avi";
}

class SoundCut final : public FragmentSink {
public:
    SoundCut(const CutJob& job, Source& source, TemporaryOutput& output)
        : job_(job),
          meter_(source.Watch(), job.end - job.begin),
          container_(ContainerOf(job.sound), output),
          writer_(FormOf(job, *source.Sound()->codecpar), container_) {
        container_.Begin();
    }

    void Begin(double time, const AVFrame*) override { writer_.Begin(time, job_.end); }
    bool TakeFrame(const AVFrame&, double, double) override { return false; }
    bool TakeSound(const AVFrame& frame, double time) override {
        meter_.Reached(time - job_.begin);
        return writer_.Add(frame, time);
    }

    // Seconds.
    double Finish() {
        const double seconds = std::min(writer_.Seconds(), job_.end - job_.begin);
        writer_.Finish(seconds);
        container_.End();
        return seconds;
    }
    bool HasSound() const { return writer_.HasSound(); }

private:
    static SoundWriter::Form FormOf(const CutJob& job, const AVCodecParameters& source) {
        const bool mp3 = job.sound == SoundFormat::Mp3;
        return {.codec = mp3 ? SoundCodec::Mp3 : SoundCodec::Pcm16,
                .quality = job.quality,
                .rate = mp3 ? NearestMp3Rate(job.mp3Rate) : source.sample_rate,
                .channels = std::min(source.ch_layout.nb_channels, kStereo),
                .inAvi = job.sound == SoundFormat::AviPcm};
    }

    const CutJob& job_;
    Meter meter_;
    Container container_;
    SoundWriter writer_;
};

}  // namespace

CutReport CutSound(const CutJob& job, Source& source, TemporaryOutput& output) {
    const AVStream* const sound = source.Sound();
    if (sound == nullptr) throw CutError(source.Name() + " has no sound.");
    FragmentReader reader(source, nullptr, sound, {job.begin, job.end});
    SoundCut cut(job, source, output);
    reader.Run(cut);
    if (!cut.HasSound()) {
        throw CutError("There is no sound between " + ClockText(job.begin) + " and " +
                       ClockText(job.end) + " in " + source.Name() + ".");
    }
    return {.frames = 0, .seconds = cut.Finish(), .damaged = reader.Damaged()};
}

}  // namespace nqp::companion
