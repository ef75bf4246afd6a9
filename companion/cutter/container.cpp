#include "cutter/container.h"

#include "cutter/cut.h"

namespace nqp::companion {
namespace {

constexpr int kBufferBytes = 1 << 18;

}  // namespace

Container::Container(const char* format, TemporaryOutput& output) : output_(output) {
    io_ = NewIo(kBufferBytes, &output_, nullptr, &WriteBytes, &Seek);
    AVFormatContext* made = nullptr;
    Checked(avformat_alloc_output_context2(&made, nullptr, format, nullptr), "container");
    format_.reset(made);
    format_->pb = io_.get();
    // Nothing in the file tells by which program or when it was made.
    format_->flags |= AVFMT_FLAG_BITEXACT;
}

AVStream& Container::NewStream(AVRational unit) {
    AVStream* const stream = avformat_new_stream(format_.get(), nullptr);
    if (stream == nullptr) throw std::bad_alloc();
    stream->time_base = unit;
    units_.push_back(unit);
    return *stream;
}

int Container::Add(const AVCodecContext& encoder) {
    AVStream& stream = NewStream(encoder.time_base);
    Checked(avcodec_parameters_from_context(stream.codecpar, &encoder), "stream");
    stream.avg_frame_rate = encoder.framerate;
    stream.sample_aspect_ratio = encoder.sample_aspect_ratio;
    return stream.index;
}

int Container::Add(const AVCodecParameters& copied, AVRational unit, AVRational frameRate,
                   AVRational aspect) {
    AVStream& stream = NewStream(unit);
    Checked(avcodec_parameters_copy(stream.codecpar, &copied), "stream");
    // The number of a codec in another kind of container may mean nothing in this one.
    const AVCodecTag* const* const tags = format_->oformat->codec_tag;
    if (av_codec_get_id(tags, copied.codec_tag) != copied.codec_id) stream.codecpar->codec_tag = 0;
    stream.avg_frame_rate = frameRate;
    stream.sample_aspect_ratio = aspect;
    return stream.index;
}

void Container::Begin() {
    AVDictionary* options = nullptr;
    av_dict_set(&options, "rf64", "auto", 0);  // of WAVE files above 4 GB
    const int result = avformat_write_header(format_.get(), &options);
    av_dict_free(&options);
    CheckWritten(result);
}

void Container::Write(AVPacket& packet, int stream) {
    const auto index = static_cast<std::size_t>(stream);
    packet.stream_index = stream;
    av_packet_rescale_ts(&packet, units_[index], format_->streams[index]->time_base);
    CheckWritten(av_interleaved_write_frame(format_.get(), &packet));
}

void Container::End() {
    const int result = av_write_trailer(format_.get());
    avio_flush(io_.get());
    CheckWritten(result);
}

void Container::CheckWritten(int result) const {
    output_.ThrowIfFailed();
    Checked(result, "container");
}

int Container::WriteBytes(void* output, std::uint8_t* bytes, int size) {
    auto& file = *static_cast<TemporaryOutput*>(output);
    const bool written = file.Write({bytes, static_cast<std::size_t>(size)});
    return written ? size : AVERROR(EIO);
}

std::int64_t Container::Seek(void* output, std::int64_t offset, int whence) {
    auto& file = *static_cast<TemporaryOutput*>(output);
    if (whence == AVSEEK_SIZE) return file.Size();
    if (whence != SEEK_SET || !file.Seek(offset)) return AVERROR(EINVAL);
    return offset;
}

}  // namespace nqp::companion
