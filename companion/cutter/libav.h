#pragma once

// FFmpeg's libraries are C; what they hand out is owned by the types at the end of this header.
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavcodec/bsf.h>
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavformat/avformat.h>
#include <libavutil/audio_fifo.h>
#include <libavutil/channel_layout.h>
#include <libavutil/display.h>
#include <libavutil/imgutils.h>
#include <libavutil/opt.h>
#include <libavutil/pixdesc.h>
#include <libswresample/swresample.h>
#include <libswscale/swscale.h>
}

#include <cstdint>
#include <memory>
#include <new>
#include <string>

namespace nqp::companion {

// The job was cancelled; ends everything up to Cut.
struct Interrupted {};

// A library's call that cannot fail for reasons of the media did fail.
class LibraryError : public std::exception {
public:
    LibraryError(std::string step, int code);
    const char* what() const noexcept override { return text_.c_str(); }

private:
    std::string text_;
};

inline int Checked(int result, const char* step) {
    if (result < 0) throw LibraryError(step, result);
    return result;
}

struct LibavDeleter {
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVFilterGraph* graph) const { avfilter_graph_free(&graph); }
    void operator()(AVBSFContext* filter) const { av_bsf_free(&filter); }
    void operator()(SwrContext* converter) const { swr_free(&converter); }
    void operator()(SwsContext* converter) const { sws_freeContext(converter); }
    void operator()(AVAudioFifo* fifo) const { av_audio_fifo_free(fifo); }
    void operator()(AVIOContext* io) const {
        av_freep(&io->buffer);
        avio_context_free(&io);
    }
};

template <class T>
using Libav = std::unique_ptr<T, LibavDeleter>;

template <class T>
Libav<T> Owned(T* pointer) {
    if (pointer == nullptr) throw std::bad_alloc();
    return Libav<T>(pointer);
}

// A library's view of a file of ours: `self` goes to the functions, of which those may be null that
// are not needed.
Libav<AVIOContext> NewIo(int bufferBytes, void* self, int (*read)(void*, std::uint8_t*, int),
                         int (*write)(void*, std::uint8_t*, int),
                         std::int64_t (*seek)(void*, std::int64_t, int));

inline Libav<AVFrame> NewFrame() {
    return Owned(av_frame_alloc());
}
inline Libav<AVPacket> NewPacket() {
    return Owned(av_packet_alloc());
}
inline Libav<AVFrame> Clone(const AVFrame& frame) {
    return Owned(av_frame_clone(&frame));
}

}  // namespace nqp::companion
