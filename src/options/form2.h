#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>

#include "core/file_dialogs.h"
#include "core/options_dialog.h"
#include "core/picture_placement_dialog.h"
#include "core/remote_window.h"
#include "core/settings_file.h"
#include "core/video_window.h"
#include "forms/check_box.h"
#include "forms/combo_box.h"
#include "forms/command_button.h"
#include "forms/control_array.h"
#include "forms/form.h"
#include "forms/frame.h"
#include "forms/label.h"
#include "forms/list_box.h"
#include "forms/option_button.h"
#include "forms/text_box.h"
#include "options/form8.h"
#include "options/skin_list.h"

namespace nqp::options {

// What the dialog works with; all of it outlives the dialog.
struct OptionsContext {
    std::filesystem::path programFolder;
    core::VideoWindow& Form1;
    core::FileDialogs& dialogs;
    forms::Form& Form8;
    core::PicturePlacementDialog& InsertBMPForm;
};

// The Options dialog: five pages over the settings file. It reads the file when it opens and writes
// it, all at once, when the person accepts.
class Form2 final : public forms::Form, public core::OptionsDialog {
public:
    explicit Form2(const OptionsContext& context);

    // To be called once, before the dialog opens; the remote outlives it.
    void Connect(core::RemoteWindow& remote) { Form4_ = &remote; }

    void ShowOnTopModal() override;
    void Close() override { Unload(); }

    static constexpr int kPages = 5;
    static constexpr int kHeadings = 6;

    // In the order that Tab goes through them. Headers of the pages first.
    forms::Label Label16;  // general
    forms::Label Label17;  // playback
    forms::Label Label18;  // skin
    forms::Label Label19;  // fragments
    forms::Label Label20;  // schedule
    forms::ControlArray<forms::Frame, kPages> Frame1;
    forms::ControlArray<forms::Label, kHeadings> Heading;

    forms::CheckBox Check1;   // remember the windows' place
    forms::CheckBox Check2;   // always on top
    forms::CheckBox Check6;   // move the windows together
    forms::CheckBox Check10;  // start with the system
    forms::Label Label4;
    forms::CommandButton Command3;  // file types

    forms::CheckBox Check4;  // autostart
    forms::CheckBox Check5;  // full screen on play
    forms::CheckBox Check3;  // hide the remote in full screen
    forms::CheckBox Check7;  // mini-control bar
    forms::CheckBox Check8;  // subtitles

    forms::Label Label1;
    forms::ListBox List1;  // skins

    forms::Label Label2;
    forms::TextBox Text1;  // sound of fragments, Hz
    forms::OptionButton Option1;
    forms::OptionButton Option2;
    forms::Label Label3;
    forms::TextBox Text2;           // share of frames a fragment keeps
    forms::CheckBox Check9;         // insert a picture
    forms::CommandButton Command4;  // chooses the picture
    forms::CommandButton Command5;  // and its place in the video
    forms::Label PictureName;

    forms::Label Label10;
    forms::ComboBox Combo1;  // month
    forms::Label Label11;
    forms::ComboBox Combo2;  // day
    forms::Label Label12;
    forms::TextBox Text3;  // hour
    forms::Label Label13;
    forms::TextBox Text4;  // minute
    forms::Label Label14;
    forms::Label Label15;
    forms::TextBox Text5;           // file to play
    forms::CommandButton Command6;  // chooses it
    forms::CommandButton Command7;  // takes the schedule back
    forms::Label Summary;           // the schedule in words

    forms::CommandButton Command2;  // OK
    forms::CommandButton Command1;  // Cancel

private:
    void Form_Load() override;
    void Form_Unload() override;
    bool Form_KeyDown(const base::KeyEvent& key) override;

    void Label16_Click() { GoToPage(0); }
    void Label17_Click() { GoToPage(1); }
    void Label18_Click() { GoToPage(2); }
    void Label19_Click() { GoToPage(3); }
    void Label20_Click() { GoToPage(4); }
    void Option1_Click() { EnableVideoForWindowsFields(true); }
    void Option2_Click() { EnableVideoForWindowsFields(false); }
    void Text2_Change();
    void Text3_Change();
    void Text4_Change();
    void Text5_Change() { SummarizeSchedule(); }
    void Combo1_Change() { SummarizeSchedule(); }
    void Combo2_Change() { SummarizeSchedule(); }
    void Command1_Click() { Unload(); }
    void Command2_Click();
    void Command3_Click();
    void Command4_Click();
    void Command5_Click();
    void Command6_Click();
    void Command7_Click();

    void BindHandlers();
    void FillPages();
    void PaintPages();
    std::array<forms::Label*, kPages> Headers();
    void ShowPage(int page);
    void GoToPage(int page);
    bool TurnPage(const base::KeyEvent& key);
    void EnableVideoForWindowsFields(bool enabled);

    void LoadSkins(const core::SettingsFile& file);
    void LoadSchedule(const core::SettingsFile& file);
    void LoadFragments(const core::SettingsFile& file);
    void SaveSettings();
    void SummarizeSchedule();
    void ShowPictureName();

    class SkinLines final : public forms::ListLines {
    public:
        explicit SkinLines(const SkinList& skins) : skins_(skins) {}
        int Count() const override { return static_cast<int>(skins_.names.size()); }
        std::string_view Line(int index) const override {
            return skins_.names[static_cast<std::size_t>(index)];
        }

    private:
        const SkinList& skins_;
    };

    OptionsContext context_;
    core::RemoteWindow* Form4_ = nullptr;
    SkinList skins_;
    SkinLines skin_lines_{skins_};
    std::string picture_path_;
    std::int32_t picture_x_ = 0;  // where the picture goes in a fragment
    std::int32_t picture_y_ = 0;
    int page_ = 0;
    bool filled_ = false;  // the controls show what the file holds
};

}  // namespace nqp::options
