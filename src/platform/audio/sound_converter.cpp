#include "platform/audio/sound_converter.h"

#include <utility>

namespace nqp::platform {
namespace {

// A codec's hold on the buffers of one conversion.
class PreparedHeader {
public:
    PreparedHeader(HACMSTREAM stream, std::vector<char>& from, std::vector<char>& to)
        : stream_(stream) {
        header_.cbStruct = sizeof header_;
        header_.pbSrc = reinterpret_cast<LPBYTE>(from.data());
        header_.cbSrcLength = static_cast<DWORD>(from.size());
        header_.pbDst = reinterpret_cast<LPBYTE>(to.data());
        header_.cbDstLength = static_cast<DWORD>(to.size());
        prepared_ = acmStreamPrepareHeader(stream_, &header_, 0) == MMSYSERR_NOERROR;
    }
    ~PreparedHeader() {
        if (prepared_) acmStreamUnprepareHeader(stream_, &header_, 0);
    }
    PreparedHeader(const PreparedHeader&) = delete;
    PreparedHeader& operator=(const PreparedHeader&) = delete;

    bool Convert(DWORD flags) {
        return prepared_ && acmStreamConvert(stream_, &header_, flags) == MMSYSERR_NOERROR;
    }
    DWORD Used() const { return header_.cbSrcLengthUsed; }
    DWORD Made() const { return header_.cbDstLengthUsed; }

private:
    HACMSTREAM stream_;
    ACMSTREAMHEADER header_{};
    bool prepared_ = false;
};

}  // namespace

std::optional<SoundConverter> SoundConverter::Between(SoundFormat from, SoundFormat to) {
    HACMSTREAM stream = nullptr;
    if (acmStreamOpen(&stream, nullptr, from.Mutable(), to.Mutable(), nullptr, 0, 0,
                      ACM_STREAMOPENF_NONREALTIME) != MMSYSERR_NOERROR) {
        return std::nullopt;
    }
    return SoundConverter(Stream(stream));
}

std::optional<std::span<const char>> SoundConverter::Convert(std::span<const char> sound,
                                                             bool last) {
    made_.clear();
    waiting_.insert(waiting_.end(), sound.begin(), sound.end());
    if (waiting_.empty()) return made_;
    DWORD room = 0;
    const MMRESULT sized = acmStreamSize(stream_.get(), static_cast<DWORD>(waiting_.size()), &room,
                                         ACM_STREAMSIZEF_SOURCE);
    // Less sound than one block of the other format; at the end such a rest is left out.
    if (sized == ACMERR_NOTPOSSIBLE) return made_;
    if (sized != MMSYSERR_NOERROR) return std::nullopt;
    made_.resize(room);
    const DWORD begin = std::exchange(begun_, true) ? 0U : DWORD{ACM_STREAMCONVERTF_START};
    if (!Run(begin | (last ? ACM_STREAMCONVERTF_END : ACM_STREAMCONVERTF_BLOCKALIGN))) {
        return std::nullopt;
    }
    return made_;
}

bool SoundConverter::Run(DWORD flags) {
    PreparedHeader header(stream_.get(), waiting_, made_);
    if (!header.Convert(flags)) return false;
    const auto used = static_cast<std::ptrdiff_t>(header.Used());
    made_.resize(header.Made());
    waiting_.erase(waiting_.begin(), waiting_.begin() + used);
    return true;
}

}  // namespace nqp::platform
