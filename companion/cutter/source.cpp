#include "cutter/source.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

#include "base/file.h"
#include "cutter/frame_rate.h"

namespace nqp::companion {
namespace {

constexpr int kBufferBytes = 1 << 16;
// So many frames tell the rate of a clip.
constexpr std::size_t kEnoughFrames = 250;
constexpr AVRational kLibraryTime{1, AV_TIME_BASE};
// After so many pieces in a row that cannot be read the rest is given up.
constexpr int kMostFailures = 1000;

bool IsPicture(const AVStream& stream) {
    return (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
}

bool CanBeHeard(const AVStream& stream) {
    return stream.codecpar->sample_rate > 0 && stream.codecpar->ch_layout.nb_channels > 0;
}

}  // namespace

Source::Source(const std::filesystem::path& path, CutWatch& watch)
    : watch_(watch), name_(base::Utf8FromPath(path)) {
    const PathKind kind = KindOf(path);
    if (kind == PathKind::Nothing) throw CutError("There is no file " + name_ + ".");
    if (kind == PathKind::Folder) throw CutError(name_ + " is a folder.");
    std::error_code error;
    file_ = FileHandle::OpenToRead(path, error);
    if (!file_.IsOpen()) {
        throw CutError(name_ + " cannot be read: " + error.message() + ".");
    }
    size_ = file_.Size().value_or(0);
    Open();
    FindStreams();
    FindBeginning();
}

void Source::Open() {
    io_ = NewIo(kBufferBytes, this, &ReadBytes, nullptr, &Seek);
    AVFormatContext* format = avformat_alloc_context();
    if (format == nullptr) throw std::bad_alloc();
    format->pb = io_.get();
    format->interrupt_callback = {&IsInterrupted, this};
    // Frees the context, and makes the pointer null, when it fails.
    const int opened = avformat_open_input(&format, name_.c_str(), nullptr, nullptr);
    format_.reset(format);
    ThrowIfCancelled();
    if (opened < 0) throw CutError(name_ + " is no clip that can be read.");
    const int found = avformat_find_stream_info(format, nullptr);
    ThrowIfCancelled();
    if (found < 0) throw CutError(name_ + " is damaged and cannot be read.");
}

void Source::FindStreams() {
    const auto best = [this](AVMediaType type, int related) -> AVStream* {
        const int index = av_find_best_stream(format_.get(), type, -1, related, nullptr, 0);
        return index < 0 ? nullptr : format_->streams[index];
    };
    video_ = best(AVMEDIA_TYPE_VIDEO, -1);
    if (video_ != nullptr && IsPicture(*video_)) video_ = nullptr;
    sound_ = best(AVMEDIA_TYPE_AUDIO, video_ != nullptr ? video_->index : -1);
    if (sound_ != nullptr && !CanBeHeard(*sound_)) sound_ = nullptr;
    Use(video_, sound_);
}

// Broadcast streams count from anywhere; players count from their first picture. The decoder of an
// MP3 file leaves out what the encoder has put in front. All others count from 0.
void Source::FindBeginning() {
    const bool anywhere = (format_->iformat->flags & AVFMT_TS_DISCONT) != 0;
    const bool withDelay = std::strcmp(format_->iformat->name, "mp3") == 0;
    if (!anywhere && !withDelay) return;
    const AVStream* const first = video_ != nullptr ? video_ : sound_;
    if (first != nullptr && first->start_time != AV_NOPTS_VALUE) {
        beginning_ = av_rescale_q(first->start_time, first->time_base, kLibraryTime);
    } else if (format_->start_time != AV_NOPTS_VALUE) {
        beginning_ = format_->start_time;
    }
}

void Source::Use(const AVStream* video, const AVStream* sound) {
    for (unsigned i = 0; i < format_->nb_streams; ++i) {
        AVStream* const stream = format_->streams[i];
        const bool used = stream == video || stream == sound;
        stream->discard = used ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
}

std::optional<double> Source::Duration() const {
    const bool guessed = format_->duration_estimation_method == AVFMT_DURATION_FROM_BITRATE;
    if (guessed || format_->duration == AV_NOPTS_VALUE || format_->duration <= 0) {
        return std::nullopt;
    }
    return static_cast<double>(format_->duration) / AV_TIME_BASE;
}

AVRational Source::ToldFrameRate() const {
    const AVRational told = av_guess_frame_rate(format_.get(), video_, nullptr);
    const auto chosen = ChooseFrameRate({told.num, told.den}, {});
    return {chosen.num, chosen.den};
}

AVRational Source::FrameRateFrom(double time) {
    Use(video_, nullptr);
    if (time > 0) {
        SeekBefore(time);
    } else {
        Rewind();
    }
    auto times = TimesFromNextKey();
    Use(video_, sound_);
    const AVRational told = av_guess_frame_rate(format_.get(), video_, nullptr);
    const auto chosen = ChooseFrameRate({told.num, told.den}, std::move(times));
    return {chosen.num, chosen.den};
}

// In the middle of some containers, what comes before a key frame has times that are made up.
std::vector<double> Source::TimesFromNextKey() {
    std::vector<double> times;
    bool keySeen = false;
    const auto packet = NewPacket();
    while (times.size() < kEnoughFrames && Read(*packet)) {
        keySeen = keySeen || (packet->flags & AV_PKT_FLAG_KEY) != 0;
        if (keySeen && packet->pts != AV_NOPTS_VALUE) {
            times.push_back(TimeOf(packet->pts, *video_));
        }
    }
    return times;
}

double Source::TimeOf(std::int64_t timestamp, const AVStream& stream) const {
    return static_cast<double>(timestamp) * av_q2d(stream.time_base) -
           static_cast<double>(beginning_) / AV_TIME_BASE;
}

double Source::BeginOf(const AVStream& stream) const {
    return stream.start_time == AV_NOPTS_VALUE ? 0 : TimeOf(stream.start_time, stream);
}

bool Source::Read(AVPacket& packet) {
    for (int failures = 0; failures < kMostFailures; ++failures) {
        av_packet_unref(&packet);
        const int result = av_read_frame(format_.get(), &packet);
        ThrowIfCancelled();
        ThrowIfBroken();
        if (result >= 0) return true;
        if (result == AVERROR_EOF || avio_feof(io_.get()) != 0) return false;
    }
    return false;
}

void Source::SeekBefore(double time) {
    const AVStream* const stream =
        video_ != nullptr && video_->discard == AVDISCARD_DEFAULT ? video_ : sound_;
    const double wanted = time + static_cast<double>(beginning_) / AV_TIME_BASE;
    const auto timestamp =
        static_cast<std::int64_t>(std::floor(wanted / av_q2d(stream->time_base)));
    const int result = av_seek_frame(format_.get(), stream->index, timestamp, AVSEEK_FLAG_BACKWARD);
    ThrowIfCancelled();
    ThrowIfBroken();
    at_start_ = false;
    if (result < 0) Rewind();
}

void Source::Rewind() {
    const std::int64_t first =
        format_->start_time == AV_NOPTS_VALUE ? 0 : std::min<std::int64_t>(0, format_->start_time);
    at_start_ = true;
    int result = avformat_seek_file(format_.get(), -1, INT64_MIN, first, INT64_MAX, 0);
    if (result < 0) {
        result = av_seek_frame(format_.get(), -1, 0, AVSEEK_FLAG_BYTE | AVSEEK_FLAG_BACKWARD);
    }
    ThrowIfCancelled();
    ThrowIfBroken();
    if (result < 0) throw CutError(name_ + " cannot be cut: its parts cannot be found again.");
}

void Source::ThrowIfCancelled() const {
    if (watch_.Cancelled()) throw Interrupted();
}

void Source::ThrowIfBroken() const {
    if (broken_) throw CutError(name_ + " can no longer be read.");
}

int Source::ReadBytes(void* self, std::uint8_t* buffer, int size) {
    auto& source = *static_cast<Source*>(self);
    if (source.watch_.Cancelled()) return AVERROR_EXIT;
    const auto count = source.file_.Read({buffer, static_cast<std::size_t>(size)});
    if (!count || (*count == 0 && source.place_ < source.size_)) {
        source.broken_ = true;
        return AVERROR(EIO);
    }
    source.place_ += static_cast<std::int64_t>(*count);
    return *count == 0 ? AVERROR_EOF : static_cast<int>(*count);
}

std::int64_t Source::Seek(void* self, std::int64_t offset, int whence) {
    auto& source = *static_cast<Source*>(self);
    if (whence == AVSEEK_SIZE) return source.size_;
    std::int64_t place = offset;
    if (whence == SEEK_CUR) place += source.place_;
    if (whence == SEEK_END) place += source.size_;
    if (place < 0 || !source.file_.Seek(place)) return AVERROR(EINVAL);
    source.place_ = place;
    return place;
}

int Source::IsInterrupted(void* self) {
    return static_cast<Source*>(self)->watch_.Cancelled() ? 1 : 0;
}

}  // namespace nqp::companion
