#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>

#include "base/geometry.h"
#include "base/record_file.h"
#include "core/settings.h"

namespace nqp::core {

inline constexpr char kSettingsFileName[] = "options.cfg";
inline constexpr std::size_t kSettingsRecordBytes = 1000;
inline constexpr std::int32_t kDefaultFragmentPercentage = 100;

// The records of the settings file by what they hold. Flags are "1" and "0".
enum SettingsRecord : int {
    kRememberWindow = 1,
    kAlwaysOnTop = 2,
    kHideControlInFullscreen = 3,
    kAutostartPlayback = 4,
    kAutoswitchToFullscreen = 5,
    kMoveAlso = 6,
    kMiniControlBar = 7,
    kSubtitles = 8,
    kSkinName = 9,
    kMp3SampleRate = 10,
    kFragmentPercentage = 11,
    kInsertPicture = 12,
    kPicturePath = 13,
    kPictureX = 14,
    kPictureY = 15,
    kScheduledMonth = 16,
    kScheduledDay = 17,
    kScheduledHour = 18,
    kScheduledMinute = 19,
    kScheduledFile = 20,
    kStartWithSystem = 21,
    kVolumeKnobTop = 22,
    kVideoLeft = 23,
    kVideoTop = 24,
    kVideoWidth = 25,
    kVideoHeight = 26,
    kVideoForWindows = 27,
    kRemoteLeft = 28,
    kRemoteTop = 29,
    kSettingsRecordCount = 29,
};

// Where the windows were: whole twips for the video window, single precision for the remote.
struct WindowGeometry {
    bool operator==(const WindowGeometry&) const = default;

    std::optional<std::int32_t> videoLeft;
    std::optional<std::int32_t> videoTop;
    std::optional<std::int32_t> videoWidth;
    std::optional<std::int32_t> videoHeight;
    std::optional<base::Twips> remoteLeft;
    std::optional<base::Twips> remoteTop;
};

// The content of "options.cfg" in the program folder, which is created empty when it is missing.
// A record that must hold a number and does not counts as 0 for a flag and is absent for a place,
// so that what it would have set stays as it is.
class SettingsFile {
public:
    explicit SettingsFile(const std::filesystem::path& programFolder);

    // Nothing was ever written to it: no setting is to be applied.
    bool Empty() const { return records_.Empty(); }

    bool Flag(SettingsRecord record) const;
    // Top edge of the volume knob, twips.
    std::optional<std::int32_t> VolumeKnobTop() const;
    // Where the windows go; nothing when they are not remembered.
    std::optional<WindowGeometry> Geometry() const;
    // Records 3 to 6: how playing and the two windows behave.
    void ApplyBehaviour(SharedSettings& settings) const;
    // Records 11 to 20 and 27: fragments, the inserted picture, the scheduled play.
    void ApplyFragmentsAndSchedule(SharedSettings& settings) const;

    std::string Text(SettingsRecord record) const { return records_.Read(record); }
    // False when the text is too long for a record; nothing is stored then.
    bool SetText(SettingsRecord record, std::string_view text) {
        return records_.Write(record, text);
    }
    void SetVolumeKnobTop(base::Twips top);
    void SetVideoBounds(std::int32_t left, std::int32_t top, std::int32_t width,
                        std::int32_t height);
    void SetRemotePosition(base::Twips left, base::Twips top);

    // Puts what was set into the file, all of it or nothing.
    bool Commit() { return records_.Commit(); }

private:
    std::optional<std::int32_t> Number(SettingsRecord record) const;
    std::int32_t PartOfTime(SettingsRecord record) const;
    std::int32_t NumberOr(SettingsRecord record, std::int32_t whenEmpty) const;

    base::RecordFile records_;
};

}  // namespace nqp::core
