#include "cutter/encoder.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace nqp::companion {
namespace {

// All that follows the one setting.
struct QualityLevel {
    int quantizer;   // of a picture, 1 is the finest
    int mp3Bitrate;  // bits a second of two channels at the usual rate
};

constexpr QualityLevel LevelOf(Quality quality) {
    switch (quality) {
        case Quality::Draft:
            return {8, 128'000};
        case Quality::Best:
            return {2, 320'000};
        case Quality::Good:
            break;
    }
    return {4, 192'000};
}

// MP3 below 32 kHz, and below 16 kHz, allows no more.
constexpr int kMostAtHalfRates = 160'000;
constexpr int kMostAtQuarterRates = 64'000;
constexpr int kFullRatesFrom = 32000;
constexpr int kHalfRatesFrom = 16000;
// A key frame at least so often, so that players find their place at once, seconds.
constexpr double kKeyFrameEvery = 1;
// PCM is handed on by tenths of a second.
constexpr int kChunksASecond = 10;
// Its headers have room for no more pixels.
constexpr int kLongestMpeg4Side = 8191;
// FFV1 since then checks its data and decodes on several processors.
constexpr int kFfv1Version = 3;

struct VideoCodec {
    AVCodecID id;
    std::uint32_t tag;  // 0: the container's usual one
};

VideoCodec CodecOf(VideoFormat format) {
    switch (format) {
        case VideoFormat::Smaller:
            return {AV_CODEC_ID_MPEG4, MKTAG('X', 'V', 'I', 'D')};
        case VideoFormat::MotionJpeg:
            return {AV_CODEC_ID_MJPEG, 0};
        case VideoFormat::Lossless:
            return {AV_CODEC_ID_FFV1, 0};
        case VideoFormat::PlaysEverywhere:
        case VideoFormat::Copy:
            break;
    }
    return {AV_CODEC_ID_MSMPEG4V3, 0};
}

const AVCodec& EncoderOf(AVCodecID id) {
    const AVCodec* const codec = avcodec_find_encoder(id);
    if (codec == nullptr) throw LibraryError("encoder", AVERROR_ENCODER_NOT_FOUND);
    return *codec;
}

int BitrateFor(Quality quality, int rate, int channels) {
    const int bitrate = LevelOf(quality).mp3Bitrate / (channels == 1 ? 2 : 1);
    if (rate >= kFullRatesFrom) return bitrate;
    return std::min(bitrate, rate >= kHalfRatesFrom ? kMostAtHalfRates : kMostAtQuarterRates);
}

void SetQuality(AVCodecContext& context, VideoFormat format, Quality quality) {
    if (format == VideoFormat::Lossless) {
        context.level = kFfv1Version;
        context.gop_size = 1;
        return;
    }
    context.flags |= AV_CODEC_FLAG_QSCALE;
    context.global_quality = FF_QP2LAMBDA * LevelOf(quality).quantizer;
    context.gop_size =
        std::max(1, static_cast<int>(std::lround(av_q2d(context.framerate) * kKeyFrameEvery)));
}

}  // namespace

AVPixelFormat PixelFormatFor(VideoFormat format, AVPixelFormat source) {
    if (format == VideoFormat::MotionJpeg) return AV_PIX_FMT_YUVJ420P;
    if (format != VideoFormat::Lossless) return AV_PIX_FMT_YUV420P;
    return avcodec_find_best_pix_fmt_of_list(EncoderOf(AV_CODEC_ID_FFV1).pix_fmts, source, 0,
                                             nullptr);
}

Libav<AVCodecContext> OpenVideoEncoder(VideoFormat format, Quality quality,
                                       const VideoShape& shape) {
    const bool mpeg4 = format == VideoFormat::PlaysEverywhere || format == VideoFormat::Smaller;
    if (mpeg4 && std::max(shape.width, shape.height) > kLongestMpeg4Side) {
        throw CutError("The picture is too large for MPEG-4. Motion JPEG or lossless will do.");
    }
    const VideoCodec chosen = CodecOf(format);
    const AVCodec& codec = EncoderOf(chosen.id);
    auto context = Owned(avcodec_alloc_context3(&codec));
    context->codec_tag = chosen.tag;
    context->width = shape.width;
    context->height = shape.height;
    context->sample_aspect_ratio = shape.aspect;
    context->pix_fmt = shape.format;
    context->colorspace = shape.colours;
    context->color_range = shape.range;
    context->framerate = shape.rate;
    context->time_base = av_inv_q(shape.rate);
    context->thread_count = 0;
    SetQuality(*context, format, quality);
    Checked(avcodec_open2(context.get(), &codec, nullptr), "video encoder");
    return context;
}

int NearestMp3Rate(int rate) {
    static constexpr std::array<int, 9> kRates = {8000,  11025, 12000, 16000, 22050,
                                                  24000, 32000, 44100, 48000};
    return *std::ranges::min_element(
        kRates, {}, [rate](int other) { return std::abs(static_cast<double>(other) - rate); });
}

Libav<AVCodecContext> OpenSoundEncoder(SoundCodec codec, Quality quality, int rate, int channels,
                                       bool selfContained) {
    static constexpr std::array<AVCodecID, 3> kCodecs = {AV_CODEC_ID_PCM_S16LE,
                                                         AV_CODEC_ID_PCM_S24LE, AV_CODEC_ID_MP3};
    const AVCodec& encoder = EncoderOf(kCodecs.at(static_cast<std::size_t>(codec)));
    auto context = Owned(avcodec_alloc_context3(&encoder));
    context->sample_fmt = encoder.sample_fmts[0];
    context->sample_rate = rate;
    context->time_base = {1, rate};
    av_channel_layout_default(&context->ch_layout, channels);
    AVDictionary* options = nullptr;
    if (codec == SoundCodec::Mp3) {
        context->bit_rate = BitrateFor(quality, rate, channels);
        // Each frame can then be decoded without the one before.
        if (selfContained) av_dict_set(&options, "reservoir", "0", 0);
    }
    const int opened = avcodec_open2(context.get(), &encoder, &options);
    av_dict_free(&options);
    Checked(opened, "sound encoder");
    return context;
}

SoundForm FormFor(const AVCodecContext& encoder) {
    return {.format = encoder.sample_fmt,
            .rate = encoder.sample_rate,
            .channels = encoder.ch_layout.nb_channels,
            .chunk = encoder.frame_size > 0 ? encoder.frame_size
                                            : std::max(1, encoder.sample_rate / kChunksASecond)};
}

void Encode(AVCodecContext& encoder, const AVFrame* frame, const PacketTaker& taker) {
    Checked(avcodec_send_frame(&encoder, frame), "encoder");
    const auto packet = NewPacket();
    for (;;) {
        const int result = avcodec_receive_packet(&encoder, packet.get());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) return;
        Checked(result, "encoder");
        taker(*packet);
        av_packet_unref(packet.get());
    }
}

}  // namespace nqp::companion
