#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "core/file_dialogs.h"
#include "core/remote_window.h"
#include "core/settings_file.h"
#include "core/tray_icon.h"
#include "core/video_window.h"
#include "forms/control_array.h"
#include "forms/form.h"
#include "forms/label.h"
#include "forms/line.h"
#include "forms/menu.h"
#include "forms/picture_box.h"
#include "forms/text_box.h"
#include "remote/transport.h"
#include "remote/volume_slider.h"

namespace nqp::remote {

// What the remote window works with; all of it outlives the window.
struct RemoteContext {
    std::filesystem::path programFolder;
    std::string commandLine;  // as it was given: quotes are kept
    core::VideoWindow& Form1;
    forms::Menu& trayMenu;
    core::FileDialogs& dialogs;
    core::TrayIcon& tray;
};

// The remote control window: it owns the settings in memory and the transport flags, and its load
// runs the program's start sequence.
class Form4 final : public forms::Form, public core::RemoteWindow {
public:
    explicit Form4(const RemoteContext& context);

    const core::SharedSettings& Settings() const override { return settings_; }
    void Picture1_Click() override;
    void Picture7_Click() override;
    void Picture9_Click() override;
    void Picture10_Click() override;
    void Picture11_Click() override;
    void next_playlist_item() override;
    void ShowRemote() override { Show(); }
    void ShowRemoteOnTop() override;
    void HideRemote() override { Hide(); }
    base::Point RemotePosition() const override { return {Left(), Top()}; }
    void MoveRemote(base::Point topLeft) override;

    // The path of the file that was opened last.
    const std::string& glob_FilePath() const { return file_path_; }
    const Transport& Flags() const { return transport_; }

    forms::Label Label1;   // title
    forms::TextBox Text1;  // fragment begin: hours, minutes, seconds
    forms::TextBox Text2;
    forms::TextBox Text3;
    forms::TextBox Text5;  // fragment end: hours, minutes, seconds
    forms::TextBox Text4;
    forms::TextBox Text6;
    forms::Line Line13;           // the volume knob's track
    forms::PictureBox Picture13;  // volume knob

private:
    void Form_Load() override;
    void Form_Unload() override;
    void Form_MouseMove(const base::MouseEvent& mouse) override;
    bool Form_KeyDown(const base::KeyEvent& key) override;
    void CloseRequested() override;

    void ApplySettingsFile();
    void PlaceVolumeKnob(const core::SettingsFile& file);
    void PlaceWindows(const core::WindowGeometry& geometry);
    void PlaceVideoWindow(const core::WindowGeometry& geometry);
    void ReapplySettingsFile();
    void SaveSettingsFile();
    void OpenFromCommandLine();
    void ShowTitle(const std::string& path);
    void ResetFragmentBounds();
    void RecordPosition();
    void RestoreFromTray();
    bool PointerIsAt(const base::MouseEvent& mouse) const;
    std::optional<std::string> ChooseMedia();
    VolumeTrack Track() const;

    RemoteContext context_;
    core::VideoWindow& Form1_;
    core::SharedSettings settings_;
    Transport transport_;
    std::string file_path_;
    std::string title_;
    bool tray_restore_ = false;
    bool choosing_ = false;  // the open dialog is up
};

}  // namespace nqp::remote
