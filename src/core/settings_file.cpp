#include "core/settings_file.h"

#include <string>

#include "base/text.h"

namespace nqp::core {

SettingsFile::SettingsFile(const std::filesystem::path& programFolder)
    : records_(programFolder / kSettingsFileName, kSettingsRecordBytes) {}

std::optional<std::int32_t> SettingsFile::Number(SettingsRecord record) const {
    return base::ParseWholeNumber(records_.Read(record));
}

std::int32_t SettingsFile::NumberOr(SettingsRecord record, std::int32_t whenEmpty) const {
    const std::string text = records_.Read(record);
    return text.empty() ? whenEmpty : base::ParseWholeNumber(text).value_or(whenEmpty);
}

// Digits beyond every number are no time at all, and not midnight.
std::int32_t SettingsFile::PartOfTime(SettingsRecord record) const {
    constexpr std::int32_t kNever = -1;
    const std::string text = records_.Read(record);
    const bool digits = text.find_first_not_of("0123456789") == std::string::npos;
    if (text.empty() || !digits) return NumberOr(record, 0);
    return base::ParseWholeNumber(text).value_or(kNever);
}

bool SettingsFile::Flag(SettingsRecord record) const {
    return Number(record).value_or(0) == 1;
}

std::optional<std::int32_t> SettingsFile::VolumeKnobTop() const {
    return Number(kVolumeKnobTop);
}

std::optional<WindowGeometry> SettingsFile::Geometry() const {
    if (!Flag(kRememberWindow)) return std::nullopt;
    WindowGeometry geometry;
    geometry.remoteLeft = base::ParseSingle(records_.Read(kRemoteLeft));
    geometry.remoteTop = base::ParseSingle(records_.Read(kRemoteTop));
    geometry.videoLeft = Number(kVideoLeft);
    geometry.videoTop = Number(kVideoTop);
    geometry.videoWidth = Number(kVideoWidth);
    geometry.videoHeight = Number(kVideoHeight);
    return geometry;
}

void SettingsFile::ApplyBehaviour(SharedSettings& settings) const {
    settings.control_at_fullscreen = !Flag(kHideControlInFullscreen);
    settings.auto_start = Flag(kAutostartPlayback);
    settings.auto_fullscreen = Flag(kAutoswitchToFullscreen);
    settings.move_also = Flag(kMoveAlso);
}

void SettingsFile::ApplyFragmentsAndSchedule(SharedSettings& settings) const {
    settings.fragment_percentage = NumberOr(kFragmentPercentage, kDefaultFragmentPercentage);
    settings.scheduled_month = NumberOr(kScheduledMonth, 0);
    settings.scheduled_day = NumberOr(kScheduledDay, 0);
    settings.scheduled_hour = PartOfTime(kScheduledHour);
    settings.scheduled_minute = PartOfTime(kScheduledMinute);
    settings.scheduled_file = Text(kScheduledFile);
    settings.insert_picture = Flag(kInsertPicture);
    settings.use_directshow = !Flag(kVideoForWindows);
    settings.picture_path = Text(kPicturePath);
    settings.picture_x = NumberOr(kPictureX, 0);
    settings.picture_y = NumberOr(kPictureY, 0);
}

void SettingsFile::SetVolumeKnobTop(base::Twips top) {
    SetText(kVolumeKnobTop, base::ShortestDecimal(top));
}

void SettingsFile::SetVideoBounds(std::int32_t left, std::int32_t top, std::int32_t width,
                                  std::int32_t height) {
    SetText(kVideoLeft, std::to_string(left));
    SetText(kVideoTop, std::to_string(top));
    SetText(kVideoWidth, std::to_string(width));
    SetText(kVideoHeight, std::to_string(height));
}

void SettingsFile::SetRemotePosition(base::Twips left, base::Twips top) {
    SetText(kRemoteLeft, base::ShortestDecimal(left));
    SetText(kRemoteTop, base::ShortestDecimal(top));
}

}  // namespace nqp::core
