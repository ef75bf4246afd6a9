#include "server/sound_target.h"

#include <string_view>

#include "base/file.h"
#include "base/text.h"
#include "core/settings_file.h"

namespace nqp::companion {
namespace {

constexpr std::string_view kMp3 = ".mp3";
constexpr std::string_view kWave = ".wav";
constexpr std::string_view kBeside = "!.avi";

// Ready to be compared.
std::string PathIn(const std::string& text) {
    return base::LowerCase(base::UpToNul(text));
}

}  // namespace

SoundFormat SoundFormatOf(const std::string& output) {
    const std::string path = PathIn(output);
    if (path.ends_with(kMp3)) return SoundFormat::Mp3;
    if (path.ends_with(kWave)) return SoundFormat::Wave;
    return SoundFormat::AviPcm;
}

bool StandsBesideATarget(const std::string& output) {
    return PathIn(output).ends_with(kBeside);
}

bool BecomesMp3(const std::string& output, const std::string& target) {
    std::string path = PathIn(target);
    if (!path.ends_with(kMp3)) return false;
    path.resize(path.size() - kMp3.size());
    return path.append(kBeside) == PathIn(output);
}

// The settings file would be made where it is missing.
std::int32_t Mp3RateIn(const std::filesystem::path& programFolder) {
    if (!base::IsFile(programFolder / core::kSettingsFileName)) return kUsualMp3Rate;
    const core::SettingsFile settings(programFolder);
    const auto rate = base::ParseWholeNumber(settings.Text(core::kMp3SampleRate));
    return rate && *rate > 0 ? *rate : kUsualMp3Rate;
}

}  // namespace nqp::companion
