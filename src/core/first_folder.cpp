#include "core/first_folder.h"

#include <array>
#include <utility>

#include "base/file.h"
#include "base/record_file.h"
#include "core/main_app.h"
#include "core/settings_file.h"

namespace nqp::core {
namespace {

constexpr char kPlaylistName[] = "playlist.cfg";
constexpr std::size_t kPlaylistRecordBytes = 500;
constexpr int kItemCountRecord = 1;
constexpr int kRepeatRecord = 2;

using Choice = std::pair<SettingsRecord, const char*>;

constexpr std::array kFirstChoices = {
    Choice{kRememberWindow, "1"},
    Choice{kAlwaysOnTop, "0"},
    Choice{kHideControlInFullscreen, "0"},
    Choice{kAutostartPlayback, "1"},
    Choice{kAutoswitchToFullscreen, "0"},
    Choice{kMoveAlso, "0"},
    Choice{kMiniControlBar, "0"},
    Choice{kSubtitles, "0"},
    Choice{kSkinName, kDefaultSkin},
    Choice{kMp3SampleRate, "44100"},
    Choice{kFragmentPercentage, "100"},
    Choice{kInsertPicture, "0"},
    Choice{kPicturePath, ""},
    Choice{kPictureX, "0"},
    Choice{kPictureY, "0"},
    Choice{kScheduledMonth, "0"},
    Choice{kScheduledDay, "0"},
    Choice{kScheduledHour, "0"},
    Choice{kScheduledMinute, "0"},
    Choice{kScheduledFile, ""},
    Choice{kStartWithSystem, "0"},
    Choice{kVideoForWindows, "1"},
};

bool WriteMarker(const std::filesystem::path& folder) {
    return base::PutFileInPlace(folder / kStartUpMarkerName, std::array{kOrdinaryStart});
}

bool WriteEmptyPlaylist(const std::filesystem::path& folder) {
    base::RecordFile list(folder / kPlaylistName, kPlaylistRecordBytes);
    return list.Write(kItemCountRecord, "0") && list.Write(kRepeatRecord, "0") && list.Commit();
}

bool WriteFirstChoices(const std::filesystem::path& folder) {
    SettingsFile settings(folder);
    for (const auto& [record, text] : kFirstChoices)
        settings.SetText(record, text);
    return settings.Commit();
}

}  // namespace

bool FillFirstFolder(const std::filesystem::path& programFolder) {
    const auto missing = [&](const char* name) { return !base::IsFile(programFolder / name); };
    bool written = true;
    if (missing(kStartUpMarkerName)) written = WriteMarker(programFolder) && written;
    if (missing(kPlaylistName)) written = WriteEmptyPlaylist(programFolder) && written;
    if (missing(kSettingsFileName)) written = WriteFirstChoices(programFolder) && written;
    return written;
}

}  // namespace nqp::core
