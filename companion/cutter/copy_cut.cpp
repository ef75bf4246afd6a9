#include <array>
#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

#include "cutter/container.h"
#include "cutter/fragment_reader.h"
#include "cutter/job_parts.h"

namespace nqp::companion {
namespace {

// Steps back from the begin until a key frame lies before it, seconds.
constexpr std::array<double, 4> kStepsBack = {0, 2, 20, 200};
// Sound that is off by less is in step with the picture, seconds; times are rounded to
// milliseconds.
constexpr double kInStep = 0.005;

// Pictures that every player expects in an AVI, in the order in which they are shown.
bool FitsPicture(AVCodecID codec) {
    switch (codec) {
        case AV_CODEC_ID_MPEG4:
        case AV_CODEC_ID_MSMPEG4V1:
        case AV_CODEC_ID_MSMPEG4V2:
        case AV_CODEC_ID_MSMPEG4V3:
        case AV_CODEC_ID_WMV1:
        case AV_CODEC_ID_WMV2:
        case AV_CODEC_ID_MJPEG:
        case AV_CODEC_ID_DVVIDEO:
        case AV_CODEC_ID_HUFFYUV:
        case AV_CODEC_ID_FFVHUFF:
        case AV_CODEC_ID_FFV1:
        case AV_CODEC_ID_UTVIDEO:
        case AV_CODEC_ID_CINEPAK:
        case AV_CODEC_ID_MSVIDEO1:
            return true;
        default:
            return false;
    }
}

bool IsPcm(AVCodecID codec) {
    return codec == AV_CODEC_ID_PCM_U8 || codec == AV_CODEC_ID_PCM_S16LE ||
           codec == AV_CODEC_ID_PCM_S24LE;
}

// Silence can be put before PCM only.
bool FitsSound(const AVStream& sound, const Source& source, double begin) {
    const AVCodecID codec = sound.codecpar->codec_id;
    const bool packed =
        codec == AV_CODEC_ID_MP3 || codec == AV_CODEC_ID_MP2 || codec == AV_CODEC_ID_AC3;
    return IsPcm(codec) || (packed && source.BeginOf(sound) <= begin + kInStep);
}

double TimeOf(const Source& source, const AVPacket& packet) {
    const std::int64_t timestamp = packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
    return source.TimeOf(timestamp, *source.Format().streams[packet.stream_index]);
}

bool HasTime(const AVPacket& packet) {
    return packet.pts != AV_NOPTS_VALUE || packet.dts != AV_NOPTS_VALUE;
}

class VideoCopy {
public:
    VideoCopy(const CutJob& job, Source& source, TemporaryOutput& output, double begin)
        : job_(job),
          source_(source),
          meter_(source.Watch(), job.end - begin),
          container_("avi", output),
          begin_(begin),
          rate_(source.ToldFrameRate()),
          sound_end_(begin +
                     std::ceil((job.end - begin - kSameTime) * av_q2d(rate_)) / av_q2d(rate_)) {
        const AVStream& video = *source.Video();
        video_ = container_.Add(*video.codecpar, av_inv_q(rate_), rate_,
                                video.codecpar->sample_aspect_ratio);
        if (source.Sound() != nullptr) AddSound(*source.Sound()->codecpar);
        OpenHeaderFilter(video);
        container_.Begin();
    }

    CutReport Run() {
        const auto packet = NewPacket();
        while (!ended_ && source_.Read(*packet))
            Take(*packet);
        FilterHeader(nullptr);
        container_.End();
        return {.frames = frames_, .seconds = static_cast<double>(frames_) / av_q2d(rate_)};
    }

private:
    void AddSound(const AVCodecParameters& sound) {
        sound_rate_ = sound.sample_rate;
        if (IsPcm(sound.codec_id)) {
            constexpr int kBitsInAByte = 8;
            block_ =
                av_get_bits_per_sample(sound.codec_id) / kBitsInAByte * sound.ch_layout.nb_channels;
        }
        sound_ = container_.Add(sound, {1, sound_rate_}, {0, 1}, {0, 1});
    }

    // Decoders of an AVI look for what other containers keep apart in the key frames.
    void OpenHeaderFilter(const AVStream& video) {
        if (video.codecpar->codec_id != AV_CODEC_ID_MPEG4 || video.codecpar->extradata_size == 0) {
            return;
        }
        AVBSFContext* made = nullptr;
        Checked(av_bsf_alloc(av_bsf_get_by_name("dump_extra"), &made), "header filter");
        header_filter_.reset(made);
        Checked(avcodec_parameters_copy(made->par_in, video.codecpar), "header filter");
        made->time_base_in = av_inv_q(rate_);
        Checked(av_bsf_init(made), "header filter");
    }

    void Take(AVPacket& packet) {
        if (!HasTime(packet)) return;
        const double time = TimeOf(source_, packet);
        ended_ = time > job_.end + kStreamsApart;
        if (packet.stream_index == source_.Video()->index) {
            TakePicture(packet, time);
        } else {
            TakeSound(packet, time);
        }
    }

    void TakePicture(AVPacket& packet, double time) {
        if (time < begin_ - kSameTime || picture_ended_) return;
        picture_ended_ = time >= job_.end - kSameTime;
        if (picture_ended_) {
            ended_ = source_.Sound() == nullptr || sound_ended_;
            return;
        }
        const std::int64_t place = std::llround((time - begin_) * av_q2d(rate_));
        packet.pts = packet.dts = std::max(place, frames_);
        packet.duration = 1;
        frames_ = packet.pts + 1;
        meter_.Reached(time - begin_);
        FilterHeader(&packet);
    }

    void FilterHeader(AVPacket* packet) {
        if (!header_filter_) {
            if (packet != nullptr) container_.Write(*packet, video_);
            return;
        }
        Checked(av_bsf_send_packet(header_filter_.get(), packet), "header filter");
        const auto filtered = NewPacket();
        while (av_bsf_receive_packet(header_filter_.get(), filtered.get()) >= 0)
            container_.Write(*filtered, video_);
    }

    void TakeSound(AVPacket& packet, double time) {
        if (sound_ended_) return;
        sound_ended_ = time >= sound_end_;
        ended_ = ended_ || (sound_ended_ && picture_ended_);
        if (sound_ended_) return;
        if (block_ > 0) {
            TakePcm(packet, time);
        } else {
            TakeWhole(packet, time);
        }
    }

    // PCM can be cut anywhere.
    void TakePcm(AVPacket& packet, double time) {
        const std::int64_t place = std::llround((time - begin_) * sound_rate_);
        const std::int64_t last = std::llround((sound_end_ - begin_) * sound_rate_);
        const std::int64_t samples = packet.size / block_;
        const std::int64_t from = std::clamp<std::int64_t>(-place, 0, samples);
        const std::int64_t to = std::clamp<std::int64_t>(last - place, from, samples);
        if (from == to) return;
        const std::int64_t gap = place + from - next_sound_;
        if (static_cast<double>(gap) > kInStep * sound_rate_) WriteSilence(gap);
        packet.data += from * block_;
        packet.size = static_cast<int>((to - from) * block_);
        WriteSound(packet, to - from);
    }

    // Of all other sound those packets are taken that lie inside by more than half.
    void TakeWhole(AVPacket& packet, double time) {
        const double length =
            static_cast<double>(packet.duration) * av_q2d(source_.Sound()->time_base);
        const double middle = time + length / 2;
        if (middle < begin_ || middle >= sound_end_) return;
        WriteSound(packet, std::llround(length * sound_rate_));
    }

    // An AVI has no gaps: what comes next would be heard too early.
    void WriteSilence(std::int64_t samples) {
        const bool unsignedSamples = source_.Sound()->codecpar->codec_id == AV_CODEC_ID_PCM_U8;
        constexpr int kMiddle = 128;
        while (samples > 0) {
            const std::int64_t count = std::min<std::int64_t>(samples, sound_rate_);
            const auto silence = NewPacket();
            Checked(av_new_packet(silence.get(), static_cast<int>(count * block_)), "silence");
            std::memset(silence->data, unsignedSamples ? kMiddle : 0,
                        static_cast<std::size_t>(silence->size));
            WriteSound(*silence, count);
            samples -= count;
        }
    }

    void WriteSound(AVPacket& packet, std::int64_t samples) {
        packet.pts = packet.dts = next_sound_;
        packet.duration = samples;
        next_sound_ += samples;
        container_.Write(packet, sound_);
    }

    const CutJob& job_;
    Source& source_;
    Meter meter_;
    Container container_;
    double begin_;
    AVRational rate_;
    double sound_end_;  // with the last frame
    Libav<AVBSFContext> header_filter_;
    int video_ = 0;
    int sound_ = 0;
    int sound_rate_ = 0;
    int block_ = 0;  // bytes of one PCM sample in all channels; 0 for compressed sound
    std::int64_t next_sound_ = 0;  // samples, the end of what was written
    std::int64_t frames_ = 0;
    bool picture_ended_ = false;
    bool sound_ended_ = false;
    bool ended_ = false;
};

// The last key frame at or before `time` of those that come from here on; from the clip's start, at
// least the first one.
std::optional<double> LastKeyUpTo(Source& source, double time) {
    std::optional<double> key;
    const auto packet = NewPacket();
    while (source.Read(*packet)) {
        if (packet->stream_index != source.Video()->index || !HasTime(*packet)) continue;
        const double place = TimeOf(source, *packet);
        const bool isKey = (packet->flags & AV_PKT_FLAG_KEY) != 0;
        if (place > time + kSameTime && (key || !source.AtStart())) break;
        if (isKey) key = place;
    }
    return key;
}

}  // namespace

bool FitsCopy(const CutJob& job, const Source& source) {
    const AVStream* const video = source.Video();
    if (job.mode != core::JobMode::Video || job.percentage != kAllPercent || video == nullptr) {
        return false;
    }
    const AVCodecParameters& picture = *video->codecpar;
    const bool turned =
        av_stream_get_side_data(video, AV_PKT_DATA_DISPLAYMATRIX, nullptr) != nullptr;
    const AVStream* const sound = source.Sound();
    return FitsPicture(picture.codec_id) && picture.video_delay == 0 && !turned &&
           (sound == nullptr || FitsSound(*sound, source, job.begin));
}

std::optional<double> KeyFrameBefore(Source& source, double time) {
    source.Use(source.Video(), source.Sound());
    for (const double back : kStepsBack) {
        if (time - back <= 0) break;
        source.SeekBefore(time - back);
        if (const auto key = LastKeyUpTo(source, time)) return key;
    }
    source.Rewind();
    return LastKeyUpTo(source, time);
}

CutReport CopyVideo(const CutJob& job, Source& source, TemporaryOutput& output) {
    if (!FitsCopy(job, source)) {
        throw CutError(source.Name() + " cannot be cut without encoding it anew.");
    }
    const auto begin = KeyFrameBefore(source, job.begin);
    if (!begin) {
        throw CutError("There is no key frame before " + ClockText(job.begin) + " in " +
                       source.Name() + ".");
    }
    if (*begin > 0) {
        source.SeekBefore(*begin);
    } else {
        source.Rewind();
    }
    VideoCopy copy(job, source, output, *begin);
    CutReport report = copy.Run();
    if (report.frames == 0) throw CutError("There is no picture to be copied.");
    return report;
}

}  // namespace nqp::companion
