#include "platform/audio/wave_copy.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <limits>
#include <numeric>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "base/wave_writer.h"
#include "platform/audio/sound_converter.h"

namespace nqp::platform {
namespace {

using core::AudioTrackResult;

// How much is read at once, so that the person sees the copy go on and may stop it.
constexpr std::int64_t kMostBytes = 256 * 1024;
constexpr std::int64_t kLeastPartOfSecond = 10;
constexpr std::int64_t kPartsOfStream = 100;
// What a damaged clip may ask for at most.
constexpr DWORD kLargestBlock = 16 * 1024 * 1024;

// About a hundredth of a stream of this length, in samples and within limits; a multiple of `step`
// unless that is out of reason.
LONG SamplesAtOnce(const WAVEFORMATEX& format, LONG length, std::int64_t step) {
    const std::int64_t sampleSize = format.nBlockAlign;
    const std::int64_t least = format.nAvgBytesPerSec / kLeastPartOfSecond / sampleSize;
    const std::int64_t most = std::max<std::int64_t>(kMostBytes / sampleSize, 1);
    const std::int64_t samples =
        std::min(std::max<std::int64_t>({length / kPartsOfStream, least, 1}), most);
    if (step * sampleSize > kLargestBlock) return static_cast<LONG>(samples);
    return static_cast<LONG>(std::max(samples - samples % step, step));
}

// Reads a stream of sound from its beginning to its end. Each part but the last is a multiple of
// `step` samples.
class SoundReader {
public:
    SoundReader(IAVIStream& stream, const WAVEFORMATEX& format, std::int64_t step)
        : stream_(stream),
          start_(AVIStreamStart(&stream)),
          length_(AVIStreamLength(&stream)),
          position_(start_),
          samples_(SamplesAtOnce(format, length_, step)) {
        AVISTREAMINFOW info{};
        AVIStreamInfoW(&stream, &info, sizeof info);
        const auto size = static_cast<std::size_t>(samples_) * format.nBlockAlign;
        const DWORD chunk = std::min(info.dwSuggestedBufferSize, kLargestBlock);
        block_.resize(std::max<std::size_t>(size, chunk));
    }

    bool AtEnd() const { return position_ - start_ >= length_; }
    int Percent() const {
        return length_ <= 0 ? 100
                            : static_cast<int>(std::int64_t{position_ - start_} * 100 / length_);
    }

    // The next part, valid until the next call; none when it cannot be read.
    std::optional<std::span<const char>> Next() {
        LONG bytes = 0;
        LONG samples = 0;
        if (FAILED(AVIStreamRead(&stream_, position_, samples_, block_.data(),
                                 static_cast<LONG>(block_.size()), &bytes, &samples)) ||
            samples <= 0) {
            return std::nullopt;
        }
        position_ += samples;
        return std::span(block_).first(static_cast<std::size_t>(bytes));
    }

private:
    IAVIStream& stream_;
    LONG start_;
    LONG length_;
    LONG position_;
    LONG samples_;  // of one part
    std::vector<char> block_;
};

// Codecs that change the rate of a sound begin anew with each part, so one that makes a broken
// number of samples would lose the rest of it.
std::int64_t SmallestPart(const WAVEFORMATEX& from, const WAVEFORMATEX& to) {
    return from.nSamplesPerSec / std::gcd(from.nSamplesPerSec, to.nSamplesPerSec);
}

class WaveCopy {
public:
    WaveCopy(IAVIStream& stream, const SoundFormat& from, const SoundFormat& to,
             std::optional<SoundConverter> converter, std::ostream& file, CopyProgress& progress)
        : reader_(stream, from.Get(), SmallestPart(from.Get(), to.Get())),
          from_(from.Get()),
          to_(to.Get()),
          converter_(std::move(converter)),
          writer_(file, to.FileBytes()),
          progress_(progress) {}

    AudioTrackResult Run() {
        const AudioTrackResult result = CopyAll();
        const bool finished = writer_.Finish(Samples());
        return finished || result != AudioTrackResult::Saved ? result : AudioTrackResult::Failed;
    }

private:
    AudioTrackResult CopyAll() {
        int told = -1;
        while (!reader_.AtEnd()) {
            if (const int percent = reader_.Percent(); percent > std::exchange(told, percent)) {
                if (progress_.Tell(percent)) return AudioTrackResult::Aborted;
            }
            const auto sound = reader_.Next();
            if (!sound || !Append(*sound)) return AudioTrackResult::Failed;
            bytesRead_ += sound->size();
        }
        if (converter_ && !Append({})) return AudioTrackResult::Failed;
        return progress_.Tell(100) ? AudioTrackResult::Aborted : AudioTrackResult::Saved;
    }

    bool Append(std::span<const char> sound) {
        if (!converter_) return writer_.Append(sound);
        const auto made = converter_->Convert(sound, reader_.AtEnd() && sound.empty());
        return made && writer_.Append(*made);
    }

    // Samples per channel of what was written.
    std::uint32_t Samples() const {
        const double seconds = static_cast<double>(bytesRead_) / from_.nAvgBytesPerSec;
        const double samples = seconds * to_.nSamplesPerSec;
        constexpr double kMost = std::numeric_limits<std::uint32_t>::max();
        return static_cast<std::uint32_t>(std::min(samples, kMost));
    }

    SoundReader reader_;
    const WAVEFORMATEX& from_;
    const WAVEFORMATEX& to_;
    std::optional<SoundConverter> converter_;
    base::WaveWriter writer_;
    CopyProgress& progress_;
    std::uint64_t bytesRead_ = 0;
};

}  // namespace

AudioTrackResult CopyToWave(IAVIStream& stream, const SoundFormat& format,
                            const std::filesystem::path& target, CopyProgress& progress) {
    const auto own = FormatOf(stream);
    if (!own) return AudioTrackResult::Failed;
    std::optional<SoundConverter> converter;
    if (*own != format) {
        converter = SoundConverter::Between(*own, format);
        if (!converter) return AudioTrackResult::Failed;
    }
    std::ofstream file(target, std::ios::binary | std::ios::trunc);
    if (!file) return AudioTrackResult::Failed;
    return WaveCopy(stream, *own, format, std::move(converter), file, progress).Run();
}

}  // namespace nqp::platform
