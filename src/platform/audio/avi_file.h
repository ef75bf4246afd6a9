#pragma once

#include <windows.h>

#include <mmsystem.h>
#include <vfw.h>

#include <memory>
#include <optional>
#include <string>

#include "platform/audio/sound_format.h"

namespace nqp::platform {

// The platform's reader of AVI files, for as long as the object lives.
class AviSession {
public:
    AviSession() { AVIFileInit(); }
    ~AviSession() { AVIFileExit(); }
    AviSession(const AviSession&) = delete;
    AviSession& operator=(const AviSession&) = delete;
};

struct ReleaseAviFile {
    void operator()(IAVIFile* file) const { AVIFileRelease(file); }
};
struct ReleaseAviStream {
    void operator()(IAVIStream* stream) const { AVIStreamRelease(stream); }
};
using AviFile = std::unique_ptr<IAVIFile, ReleaseAviFile>;
using AviStream = std::unique_ptr<IAVIStream, ReleaseAviStream>;

// Null when the file is no clip that the platform can open, or is being written.
AviFile OpenAviFile(const std::string& path);
// The first sound stream; null without one, when it holds no sound, and when its index or the size
// of its samples is damaged.
AviStream SoundStreamOf(IAVIFile& file);

std::optional<SoundFormat> FormatOf(IAVIStream& stream);

}  // namespace nqp::platform
