#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "cutter/libav.h"
#include "cutter/temporary_output.h"

namespace nqp::companion {

// The file that is made: streams of packets in a container. What cannot be written is thrown as
// CutError.
class Container {
public:
    // `format` is the library's name of it.
    Container(const char* format, TemporaryOutput& output);
    Container(const Container&) = delete;
    Container& operator=(const Container&) = delete;

    // The number of the stream. Its packets count time in the encoder's unit, or in `unit`.
    int Add(const AVCodecContext& encoder);
    int Add(const AVCodecParameters& copied, AVRational unit, AVRational frameRate,
            AVRational aspect);
    void Begin();
    // Takes the packet's content.
    void Write(AVPacket& packet, int stream);
    void End();

private:
    struct FormatDeleter {
        void operator()(AVFormatContext* format) const { avformat_free_context(format); }
    };

    static int WriteBytes(void* output, std::uint8_t* bytes, int size);
    static std::int64_t Seek(void* output, std::int64_t offset, int whence);

    AVStream& NewStream(AVRational unit);
    void CheckWritten(int result) const;

    TemporaryOutput& output_;
    Libav<AVIOContext> io_;
    std::unique_ptr<AVFormatContext, FormatDeleter> format_;
    std::vector<AVRational> units_;
};

}  // namespace nqp::companion
