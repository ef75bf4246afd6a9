#pragma once

#include <filesystem>

#include "cutter/formats.h"

namespace nqp::companion {

// How a person wants video fragments written, and whether to be asked each time.
struct FormatChoice {
    VideoFormat format = VideoFormat::PlaysEverywhere;
    bool ask = true;
    bool operator==(const FormatChoice&) const = default;
};

// The choice in "framewright.cfg" in the program folder. What is missing or damaged there counts as
// never chosen.
FormatChoice ReadFormatChoice(const std::filesystem::path& programFolder);
// False when the folder cannot be written to.
bool WriteFormatChoice(const std::filesystem::path& programFolder, const FormatChoice& choice);

}  // namespace nqp::companion
