#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "cutter/formats.h"

// What a job for sound writes. Paths are UTF-8 and may have NUL characters behind them.
namespace nqp::companion {

// By the output's own extension; all but MP3 and WAVE files are clips.
SoundFormat SoundFormatOf(const std::string& output);

// The player has sound written beside the file that its user wants, into a clip "NAME!.avi", and
// renames that to an MP3 as it stands. So the contents of such a clip depend on that file's name.
bool StandsBesideATarget(const std::string& output);
bool BecomesMp3(const std::string& output, const std::string& target);

// In hertz, as the player's options say it.
std::int32_t Mp3RateIn(const std::filesystem::path& programFolder);

}  // namespace nqp::companion
