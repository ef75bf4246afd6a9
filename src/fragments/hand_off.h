#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "core/companion.h"
#include "core/settings.h"

namespace nqp::fragments {

inline constexpr char kStatusFileName[] = "status.txt";

// The three things that a person can have made of a fragment.
enum class JobKind { Video, Audio, Image };

// What jobs of every kind have in common.
struct JobSource {
    std::filesystem::path programFolder;
    std::string file;  // the clip
    std::int32_t beginSeconds = 0;
    std::int32_t endSeconds = 0;
};

// `output` is the path as the save dialog left it, with its NUL characters.
core::FragmentJob VideoJob(const JobSource& source, const core::SharedSettings& settings,
                           const std::string& output);
core::FragmentJob ImageJob(const JobSource& source, const core::SharedSettings& settings,
                           const std::string& output);

// The sound comes as a clip of its own, which is then turned into the file that was asked for.
struct AudioTarget {
    enum class Format { Wave, Mp3, Unknown };

    std::string path;
    std::string temporaryVideo;  // beside it
    Format format = Format::Unknown;
};

// Throws std::runtime_error for a path that is too short to end with an extension.
AudioTarget AudioTargetOf(const std::string& output);

// A job that nobody waits for is told the target itself when it is known what to write there.
core::FragmentJob AudioJob(const JobSource& source, const core::SharedSettings& settings,
                           const AudioTarget& target, core::RunMode mode);

core::RunMode RunModeOf(const core::SharedSettings& settings);

}  // namespace nqp::fragments
