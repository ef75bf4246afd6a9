#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cutter/cut.h"
#include "cutter/file_handle.h"
#include "cutter/libav.h"

namespace nqp::companion {

// The clip that is cut: its streams, and its packets one after the other. Times are seconds from
// the clip's beginning as players count them. Every member that reads may throw Interrupted, when
// the watch was cancelled, and CutError, when the file can no longer be read.
class Source {
public:
    // Throws CutError when the file is missing or no clip.
    Source(const std::filesystem::path& path, CutWatch& watch);
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    const std::string& Name() const { return name_; }
    AVFormatContext& Format() const { return *format_; }
    // Of the stream that shows moving pictures, and of the one that is heard; null when there is
    // none.
    AVStream* Video() const { return video_; }
    AVStream* Sound() const { return sound_; }
    // The packets of all other streams are passed over.
    void Use(const AVStream* video, const AVStream* sound);

    // Nothing when the file does not tell.
    std::optional<double> Duration() const;
    // Frames a second from `time` on, such that no frame is missed. Goes to another place of the
    // clip.
    AVRational FrameRateFrom(double time);
    // As the container tells it, be it only about.
    AVRational ToldFrameRate() const;
    double TimeOf(std::int64_t timestamp, const AVStream& stream) const;
    // Where a stream's first data lies.
    double BeginOf(const AVStream& stream) const;

    // False at the end of the clip. What is damaged is passed over.
    bool Read(AVPacket& packet);
    // Goes on at a place from which all at `time` can be decoded, if the file keeps what it says.
    void SeekBefore(double time);
    void Rewind();
    bool AtStart() const { return at_start_; }

    void ThrowIfCancelled() const;
    // The same watch, for the work on what was read.
    CutWatch& Watch() const { return watch_; }

private:
    struct FormatDeleter {
        void operator()(AVFormatContext* format) const { avformat_close_input(&format); }
    };

    static int ReadBytes(void* self, std::uint8_t* buffer, int size);
    static std::int64_t Seek(void* self, std::int64_t offset, int whence);
    static int IsInterrupted(void* self);

    void Open();
    void FindStreams();
    void FindBeginning();
    void ThrowIfBroken() const;
    std::vector<double> TimesFromNextKey();

    CutWatch& watch_;
    std::string name_;  // for sentences
    FileHandle file_;
    std::int64_t size_ = 0;
    std::int64_t place_ = 0;
    bool broken_ = false;  // the file could not be read, or became shorter
    Libav<AVIOContext> io_;
    std::unique_ptr<AVFormatContext, FormatDeleter> format_;
    AVStream* video_ = nullptr;
    AVStream* sound_ = nullptr;
    std::int64_t beginning_ = 0;  // in AV_TIME_BASE
    bool at_start_ = true;
};

}  // namespace nqp::companion
