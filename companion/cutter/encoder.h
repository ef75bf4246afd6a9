#pragma once

#include <functional>

#include "cutter/cut.h"
#include "cutter/libav.h"
#include "cutter/sound_track.h"

namespace nqp::companion {

// What the frames of a video fragment look like to its encoder.
struct VideoShape {
    int width = 0;
    int height = 0;
    AVRational aspect{1, 1};
    AVRational rate{25, 1};  // frames a second
    AVPixelFormat format = AV_PIX_FMT_YUV420P;
    AVColorSpace colours = AVCOL_SPC_UNSPECIFIED;
    AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
};

// What a video format takes of frames in `source` form; of Copy there is none.
AVPixelFormat PixelFormatFor(VideoFormat format, AVPixelFormat source);

// An opened encoder. Throws CutError for a picture that is too large for it.
Libav<AVCodecContext> OpenVideoEncoder(VideoFormat format, Quality quality,
                                       const VideoShape& shape);

// The nearest rate at which MP3 exists, hertz.
int NearestMp3Rate(int rate);

enum class SoundCodec { Pcm16, Pcm24, Mp3 };

// Of this form but for its sample format and its chunk, which the encoder decides.
Libav<AVCodecContext> OpenSoundEncoder(SoundCodec codec, Quality quality, int rate, int channels,
                                       bool selfContained);
SoundForm FormFor(const AVCodecContext& encoder);

// Gives a frame to an encoder, or null at the end, and what comes out to the taker.
using PacketTaker = std::function<void(AVPacket& packet)>;
void Encode(AVCodecContext& encoder, const AVFrame* frame, const PacketTaker& taker);

}  // namespace nqp::companion
