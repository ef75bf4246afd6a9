#include <string>
#include <utility>

#include "base/file.h"
#include "base/text.h"
#include "forms/run_time_error.h"
#include "options/form2.h"

// The settings file: into the controls when the dialog opens, back when the person accepts.
namespace nqp::options {
namespace {

using core::SettingsRecord;

constexpr char kOff[] = "0";
constexpr char kOn[] = "1";
constexpr char kNoTime[] = "0";
constexpr char kWholeFragment[] = "100";
// Of a settings file that was never written.
constexpr char kFirstFragmentShare[] = "25";
constexpr char kFirstSampleRate[] = "44100";

bool IsOn(const core::SettingsFile& file, SettingsRecord record) {
    return file.Text(record) == kOn;
}

const char* Flag(bool on) {
    return on ? kOn : kOff;
}

std::int32_t WholeNumber(const core::SettingsFile& file, SettingsRecord record) {
    return base::ParseWholeNumber(file.Text(record)).value_or(0);
}

// The item of a list that is stored by its place from 1.
int ItemOf(const core::SettingsFile& file, SettingsRecord record, const forms::ComboBox& combo) {
    const std::int32_t place = WholeNumber(file, record);
    const bool known = place >= 1 && std::cmp_less_equal(place, combo.Items().size());
    return known ? place - 1 : forms::ComboBox::kNone;
}

std::string OrDefault(const std::string& text, const char* whenEmpty) {
    return text.empty() ? whenEmpty : text;
}

// A single other character empties the whole field.
void KeepDigits(forms::TextBox& field) {
    if (field.Text().find_first_not_of("0123456789") != std::string::npos) field.SetText({});
}

}  // namespace

void Form2::Text2_Change() {
    KeepDigits(Text2);
}

void Form2::Text3_Change() {
    KeepDigits(Text3);
    SummarizeSchedule();
}

void Form2::Text4_Change() {
    KeepDigits(Text4);
    SummarizeSchedule();
}

void Form2::Form_Load() {
    // A file that another program holds looks like one that was never written.
    if (!base::CanRead(context_.programFolder / core::kSettingsFileName)) return;
    const core::SettingsFile file(context_.programFolder);
    LoadSkins(file);
    IsOn(file, core::kVideoForWindows) ? Option1.Choose() : Option2.Choose();
    Check10.SetChecked(IsOn(file, core::kStartWithSystem));
    LoadSchedule(file);
    LoadFragments(file);
    Check8.SetChecked(IsOn(file, core::kSubtitles));
    Check7.SetChecked(IsOn(file, core::kMiniControlBar));
    Check6.SetChecked(IsOn(file, core::kMoveAlso));
    Check5.SetChecked(IsOn(file, core::kAutoswitchToFullscreen));
    Check4.SetChecked(IsOn(file, core::kAutostartPlayback));
    Check3.SetChecked(IsOn(file, core::kHideControlInFullscreen));
    Check2.SetChecked(IsOn(file, core::kAlwaysOnTop));
    Check1.SetChecked(IsOn(file, core::kRememberWindow));
    ShowPage(0);
    filled_ = true;
}

void Form2::LoadSkins(const core::SettingsFile& file) {
    skins_ = ListSkins(context_.programFolder, file.Text(core::kSkinName));
    List1.LinesChanged();
    if (skins_.selected >= 0) List1.Select(skins_.selected);
}

void Form2::LoadSchedule(const core::SettingsFile& file) {
    Text5.SetText(file.Text(core::kScheduledFile));
    Text4.SetText(file.Text(core::kScheduledMinute));
    Text3.SetText(file.Text(core::kScheduledHour));
    KeepDigits(Text4);
    KeepDigits(Text3);
    Combo2.SetListIndex(ItemOf(file, core::kScheduledDay, Combo2));
    Combo1.SetListIndex(ItemOf(file, core::kScheduledMonth, Combo1));
    SummarizeSchedule();
}

void Form2::LoadFragments(const core::SettingsFile& file) {
    picture_y_ = WholeNumber(file, core::kPictureY);
    picture_x_ = WholeNumber(file, core::kPictureX);
    picture_path_ = file.Text(core::kPicturePath);
    ShowPictureName();
    Check9.SetChecked(IsOn(file, core::kInsertPicture));
    Text2.SetText(file.Empty() ? kFirstFragmentShare : file.Text(core::kFragmentPercentage));
    KeepDigits(Text2);
    Text1.SetText(file.Empty() ? kFirstSampleRate : file.Text(core::kMp3SampleRate));
}

// A skin that cannot be used whole is told of; what it could give stays on.
void Form2::Command2_Click() {
    SaveSettings();
    forms::Guarded(forms::Origin::User, [this] { Form4_->goskin(); });
    Unload();
}

// The dialog stays open when it fails, so that nothing that was entered is lost.
void Form2::SaveSettings() {
    const int skin = List1.ListIndex();
    const std::pair<SettingsRecord, std::string> records[] = {
        {core::kVideoForWindows, Flag(Option1.Chosen())},
        {core::kStartWithSystem, Flag(Check10.Checked())},
        {core::kScheduledFile, Text5.Text()},
        {core::kScheduledMinute, OrDefault(Text4.Text(), kNoTime)},
        {core::kScheduledHour, OrDefault(Text3.Text(), kNoTime)},
        {core::kScheduledDay, std::to_string(Combo2.ListIndex() + 1)},
        {core::kScheduledMonth, std::to_string(Combo1.ListIndex() + 1)},
        {core::kPictureY, std::to_string(picture_y_)},
        {core::kPictureX, std::to_string(picture_x_)},
        {core::kPicturePath, picture_path_},
        {core::kInsertPicture, Flag(Check9.Checked())},
        {core::kFragmentPercentage, OrDefault(Text2.Text(), kWholeFragment)},
        {core::kMp3SampleRate, Text1.Text()},
        {core::kSkinName, skin >= 0 ? skins_.names[static_cast<std::size_t>(skin)] : std::string()},
        {core::kSubtitles, Flag(Check8.Checked())},
        {core::kMiniControlBar, Flag(Check7.Checked())},
        {core::kMoveAlso, Flag(Check6.Checked())},
        {core::kAutoswitchToFullscreen, Flag(Check5.Checked())},
        {core::kAutostartPlayback, Flag(Check4.Checked())},
        {core::kHideControlInFullscreen, Flag(Check3.Checked())},
        {core::kAlwaysOnTop, Flag(Check2.Checked())},
        {core::kRememberWindow, Flag(Check1.Checked())},
    };
    if (!base::CanRead(context_.programFolder / core::kSettingsFileName)) {
        throw forms::RunTimeError("The options could not be written.");
    }
    core::SettingsFile file(context_.programFolder);
    for (const auto& [record, text] : records) {
        if (!file.SetText(record, text)) {
            throw forms::RunTimeError("A text of the options is too long to be kept.");
        }
    }
    if (!file.Commit()) throw forms::RunTimeError("The options could not be written.");
}

}  // namespace nqp::options
