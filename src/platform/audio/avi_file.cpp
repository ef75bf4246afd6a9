#include "platform/audio/avi_file.h"

#include <vector>

#include "platform/engine/file_spellings.h"

namespace nqp::platform {
namespace {

// Wine's reader ends the process when it is asked for sound that has no index, or whose chunks are
// smaller than what the stream calls a sample, as those of MP3 may be. Either shows in the size of
// the largest chunk.
bool IsReadable(IAVIStream& stream) {
    AVISTREAMINFOW info{};
    if (FAILED(AVIStreamInfoW(&stream, &info, sizeof info))) return false;
    return info.dwLength > 0 && info.dwSuggestedBufferSize > 0 &&
           info.dwSuggestedBufferSize >= info.dwSampleSize;
}

}  // namespace

AviFile OpenAviFile(const std::string& path) {
    for (const std::wstring& spelling : SpellingsOfFile(path)) {
        IAVIFile* file = nullptr;
        const HRESULT opened = AVIFileOpenW(&file, spelling.c_str(), OF_SHARE_DENY_WRITE, nullptr);
        if (SUCCEEDED(opened)) return AviFile(file);
    }
    return nullptr;
}

AviStream SoundStreamOf(IAVIFile& file) {
    IAVIStream* found = nullptr;
    if (FAILED(AVIFileGetStream(&file, &found, streamtypeAUDIO, 0))) return nullptr;
    AviStream stream(found);
    return IsReadable(*stream) ? std::move(stream) : nullptr;
}

std::optional<SoundFormat> FormatOf(IAVIStream& stream) {
    const LONG start = AVIStreamStart(&stream);
    LONG size = 0;
    if (FAILED(AVIStreamReadFormat(&stream, start, nullptr, &size)) || size <= 0) {
        return std::nullopt;
    }
    std::vector<char> bytes(static_cast<std::size_t>(size));
    if (FAILED(AVIStreamReadFormat(&stream, start, bytes.data(), &size))) return std::nullopt;
    return SoundFormat::FromBytes(bytes.data(), bytes.size());
}

}  // namespace nqp::platform
