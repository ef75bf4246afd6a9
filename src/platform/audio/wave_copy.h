#pragma once

#include <filesystem>

#include "platform/audio/avi_file.h"
#include "platform/audio/copy_progress.h"
#include "platform/audio/sound_format.h"

namespace nqp::platform {

// Writes the stream's sound into a WAVE file of this format, without the platform's writer of such
// files. What is there when the copy is stopped or fails can be played.
core::AudioTrackResult CopyToWave(IAVIStream& stream, const SoundFormat& format,
                                  const std::filesystem::path& target, CopyProgress& progress);

}  // namespace nqp::platform
