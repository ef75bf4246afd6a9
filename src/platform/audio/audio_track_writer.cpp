#include "platform/audio/audio_track_writer.h"

#include <exception>
#include <filesystem>
#include <optional>
#include <utility>

#include "base/file.h"
#include "base/scoped_flag.h"
#include "platform/audio/avi_file.h"
#include "platform/audio/compression_choice.h"
#include "platform/audio/copy_progress.h"
#include "platform/audio/wave_copy.h"

namespace nqp::platform {
namespace {

using core::AudioTrackRequest;
using core::AudioTrackResult;

// Takes a file away again that was not there before and has nothing in it.
class NoEmptyFile {
public:
    explicit NoEmptyFile(std::filesystem::path path) : path_(std::move(path)) {
        std::error_code error;
        mayRemove_ = !std::filesystem::exists(path_, error) && !error;
    }
    ~NoEmptyFile() {
        std::error_code ignored;
        if (!mayRemove_ || !base::IsFile(path_)) return;
        if (std::filesystem::file_size(path_, ignored) == 0) {
            std::filesystem::remove(path_, ignored);
        }
    }
    NoEmptyFile(const NoEmptyFile&) = delete;
    NoEmptyFile& operator=(const NoEmptyFile&) = delete;

private:
    std::filesystem::path path_;
    bool mayRemove_ = false;
};

// The platform's own way to write the file. Its callback knows nothing but the per cent, so the
// save that is under way stands in a variable of the window thread.
class PlatformSave {
public:
    explicit PlatformSave(CopyProgress& progress) : progress_(progress) { current_ = this; }
    ~PlatformSave() { current_ = nullptr; }
    PlatformSave(const PlatformSave&) = delete;
    PlatformSave& operator=(const PlatformSave&) = delete;

    HRESULT Run(const std::string& target, IAVIStream& stream, AVICOMPRESSOPTIONS& options) {
        PAVISTREAM streams = &stream;
        LPAVICOMPRESSOPTIONS choices = &options;
        const HRESULT result =
            AVISaveVA(target.c_str(), nullptr, OnProgress, 1, &streams, &choices);
        if (error_ != nullptr) std::rethrow_exception(error_);
        return result;
    }

private:
    static BOOL CALLBACK OnProgress(INT percent) noexcept {
        try {
            return current_->progress_.Tell(percent) ? TRUE : FALSE;
        } catch (...) {
            current_->error_ = std::current_exception();
            return TRUE;
        }
    }

    static inline PlatformSave* current_ = nullptr;

    CopyProgress& progress_;
    std::exception_ptr error_;
};

AviStream Compressed(IAVIStream& stream, AVICOMPRESSOPTIONS& options) {
    IAVIStream* made = nullptr;
    if (FAILED(AVIMakeCompressedStream(&made, &stream, &options, nullptr))) return nullptr;
    AviStream compressed(made);
    // Wine looks for the codec no sooner than this; without one an old target is to stay as it is.
    AVISTREAMINFOW info{};
    if (FAILED(AVIStreamInfoW(compressed.get(), &info, sizeof info))) return nullptr;
    return compressed;
}

AudioTrackResult Write(IAVIStream& stream, AVICOMPRESSOPTIONS& options, const std::string& target,
                       CopyProgress& progress) {
    const AviStream compressed = Compressed(stream, options);
    if (!compressed) return AudioTrackResult::Failed;
    const HRESULT saved = PlatformSave(progress).Run(target, *compressed, options);
    if (SUCCEEDED(saved)) return AudioTrackResult::Saved;
    if (saved == AVIERR_USERABORT) return AudioTrackResult::Aborted;
    if (progress.Percent() > 0) return AudioTrackResult::Failed;
    // Not every platform can write the file itself, and its compressed stream is of no use after
    // it has tried: Wine's stays with the buffer of its first reader, and gives less sound than it
    // is asked for, at last none where a block holds many samples. So the clip's own sound is read
    // and compressed here.
    const auto format = SoundFormat::FromBytes(options.lpFormat, options.cbFormat);
    if (!format) return AudioTrackResult::Failed;
    return CopyToWave(stream, *format, base::PathFromUtf8(target), progress);
}

}  // namespace

AudioTrackResult AviAudioTrackWriter::Save(const AudioTrackRequest& request, const Progress& tell) {
    static bool running = false;
    if (running) return AudioTrackResult::Failed;
    const base::ScopedFlag flag(running);
    const NoEmptyFile target(base::PathFromUtf8(request.target));
    const AviSession session;
    const AviFile file = OpenAviFile(request.source);
    if (!file) return AudioTrackResult::Failed;
    const AviStream stream = SoundStreamOf(*file);
    if (!stream) return AudioTrackResult::Failed;
    CompressionChoice choice;
    if (!choice.Ask(static_cast<HWND>(request.owner), *stream)) {
        return AudioTrackResult::NotConfirmed;
    }
    CopyProgress progress(tell);
    return Write(*stream, choice.Options(), request.target, progress);
}

}  // namespace nqp::platform
