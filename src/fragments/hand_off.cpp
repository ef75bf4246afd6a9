#include "fragments/hand_off.h"

#include <stdexcept>
#include <string_view>

#include "base/file.h"
#include "base/text.h"
#include "core/program_folder.h"

namespace nqp::fragments {
namespace {

// Where the settings were never written, and in place of no frame at all.
constexpr std::int32_t kWholeFragment = 100;
constexpr std::size_t kExtensionLength = 4;  // with its dot
constexpr char kTemporaryEnding[] = "!.avi";

std::string InFolder(const std::filesystem::path& folder, const char* name) {
    return base::Utf8FromPath(folder) + "\\" + name;
}

core::FragmentJob JobOf(core::JobMode mode, const JobSource& source,
                        const core::SharedSettings& settings, const std::string& output) {
    return {.mode = mode,
            .picture = {},
            .percentage =
                settings.fragment_percentage != 0 ? settings.fragment_percentage : kWholeFragment,
            .statusFile = InFolder(source.programFolder, kStatusFileName),
            .cancelFile = InFolder(source.programFolder, core::kFlagFileName),
            .outputFile = output,
            .sourceFile = source.file,
            .begin = static_cast<double>(source.beginSeconds),
            .end = static_cast<double>(source.endSeconds),
            .lastOutputFile = {}};
}

AudioTarget::Format FormatOf(std::string_view path) {
    const std::string ending = base::LowerCase(path.substr(path.size() - (kExtensionLength - 1)));
    if (ending == "wav") return AudioTarget::Format::Wave;
    if (ending == "mp3") return AudioTarget::Format::Mp3;
    return AudioTarget::Format::Unknown;
}

}  // namespace

core::FragmentJob VideoJob(const JobSource& source, const core::SharedSettings& settings,
                           const std::string& output) {
    if (!settings.insert_picture) return JobOf(core::JobMode::Video, source, settings, output);
    core::FragmentJob job = JobOf(core::JobMode::VideoWithPicture, source, settings, output);
    job.picture = {settings.picture_x, settings.picture_y, settings.picture_path};
    return job;
}

core::FragmentJob ImageJob(const JobSource& source, const core::SharedSettings& settings,
                           const std::string& output) {
    return JobOf(core::JobMode::Image, source, settings, output);
}

AudioTarget AudioTargetOf(const std::string& output) {
    const std::string path = base::UpToNul(output);
    if (path.size() < kExtensionLength) {
        throw std::runtime_error("\"" + path + "\" is no name for a sound file.");
    }
    return {path, path.substr(0, path.size() - kExtensionLength) + kTemporaryEnding,
            FormatOf(path)};
}

core::FragmentJob AudioJob(const JobSource& source, const core::SharedSettings& settings,
                           const AudioTarget& target, core::RunMode mode) {
    core::FragmentJob job = JobOf(core::JobMode::Audio, source, settings, target.temporaryVideo);
    const bool known = target.format != AudioTarget::Format::Unknown;
    if (mode == core::RunMode::Beside && known) job.lastOutputFile = target.path;
    return job;
}

core::RunMode RunModeOf(const core::SharedSettings& settings) {
    return settings.use_directshow ? core::RunMode::Beside : core::RunMode::Waiting;
}

}  // namespace nqp::fragments
