#pragma once

#include <array>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "core/audio_track.h"
#include "core/companion.h"
#include "core/file_association.h"
#include "core/file_dialogs.h"
#include "core/message_boxes.h"
#include "core/options_dialog.h"
#include "core/remote_window.h"
#include "core/schedule.h"
#include "core/settings_file.h"
#include "core/shell.h"
#include "core/tray_icon.h"
#include "core/video_window.h"
#include "core/wizard.h"
#include "forms/command_button.h"
#include "forms/form.h"
#include "forms/label.h"
#include "forms/line.h"
#include "forms/list_box.h"
#include "forms/menu.h"
#include "forms/picture_box.h"
#include "forms/text_box.h"
#include "forms/timer_control.h"
#include "fragments/fragment_bounds.h"
#include "fragments/hand_off.h"
#include "fragments/job_watch.h"
#include "fragments/wizard_link.h"
#include "playlist/playlist_store.h"
#include "remote/hover_highlight.h"
#include "remote/knob_drag.h"
#include "remote/position_slider.h"
#include "remote/time_read_out.h"
#include "remote/transport.h"
#include "remote/volume_slider.h"

namespace nqp::remote {

class SkinPackage;
class SkinColors;

// What the remote window works with; all of it outlives the window.
struct RemoteContext {
    std::filesystem::path programFolder;
    std::string commandLine;  // as it was given: quotes are kept
    core::VideoWindow& Form1;
    forms::Menu& trayMenu;
    core::FileDialogs& dialogs;
    core::TrayIcon& tray;
    core::Shell& shell;
    core::OptionsDialog& Form2;
    core::FileAssociationFactory& associations;
    const core::Clock& clock;
    std::string programName;  // of the program file, without its extension
    core::WizardFactory& wizards;
    core::Companion& companion;
    core::AudioTrackWriter& audio;
    core::MessageBoxes& boxes;
};

// The remote control window: it owns the settings in memory and the transport flags, and its load
// runs the program's start sequence. Its handlers stand in the file of the thing they serve:
// form4_buttons, form4_sliders, form4_frame, form4_skin, form4_playlist, form4_schedule,
// form4_fragment, form4_wizard and form4_settings.
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

    // Dresses the window in the skin that the settings file names. What the skin lacks keeps its
    // look. Throws forms::RunTimeError at a file it cannot use; what came before it stays applied.
    void goskin() override;

    // The path of the file that was opened last.
    const std::string& glob_FilePath() const { return file_path_; }
    // The fragment that is marked, seconds. Throw when a field holds no number.
    std::int32_t glob_PosBegin() const { return MarkedFragment().BeginSeconds(); }
    std::int32_t glob_PosEnd() const { return MarkedFragment().EndSeconds(); }

    // Turns the clip that the audio job at hand has left into the sound file that was asked for.
    void save_audio();
    // Progress text for the wizard.
    void set_form7_status(const std::string& stat);
    const Transport& Flags() const { return transport_; }
    bool wizard_active() const { return wizard_.Open(); }
    // A job was started that the remote does not wait for.
    bool job_nowait() const { return !jobs_beside_.empty(); }
    int hover_button() const { return hover_.hover_button(); }
    // The whole second that the position knob was last let go at.
    std::int32_t LastSeekTarget() const { return last_seek_target_; }

    // In the order that Tab goes through them.
    forms::PictureBox Picture2;   // play
    forms::PictureBox Picture7;   // play, highlighted
    forms::PictureBox Picture4;   // pause
    forms::PictureBox Picture9;   // pause, highlighted
    forms::PictureBox Picture3;   // stop
    forms::PictureBox Picture8;   // stop, highlighted
    forms::PictureBox Picture6;   // open
    forms::PictureBox Picture11;  // open, highlighted
    forms::PictureBox Picture12;  // position knob
    forms::TextBox Text1;         // fragment begin: hours, minutes, seconds
    forms::TextBox Text2;
    forms::TextBox Text3;
    forms::CommandButton Command1;  // marks the begin
    forms::CommandButton Command2;  // marks the end and opens the wizard
    forms::TextBox Text5;           // fragment end: hours, minutes, seconds
    forms::TextBox Text4;
    forms::TextBox Text6;
    forms::PictureBox Picture13;  // volume knob
    forms::PictureBox Picture10;  // options
    forms::PictureBox Picture14;  // help
    forms::PictureBox Picture15;  // playlist
    forms::PictureBox Picture5;   // hide the remote
    forms::PictureBox Picture16;  // hide all
    forms::PictureBox Picture1;   // exit
    forms::ListBox List1;         // playlist
    forms::PictureBox Picture17;  // grip below the list
    forms::PictureBox Picture18;  // grip of the bar
    forms::Label Label1;          // title
    forms::Label Label2;          // time
    forms::Label Label3;          // the colons of the fragment fields
    forms::Label Label4;
    forms::Label Label5;
    forms::Label Label6;
    forms::Line Line9;   // the second row of the position track
    forms::Line Line10;  // the second column of the volume track
    forms::Line Line11;  // the position knob is measured against this one
    forms::Line Line12;  // the position knob is kept on this one
    forms::Line Line13;  // the volume knob's track
    forms::TimerControl Timer1;
    forms::TimerControl Timer2;
    forms::Menu men{"men", "men"};  // pops up over the playlist
    forms::MenuItem add_files{men, "add_files", "Add file(s) to playlist"};
    forms::MenuItem clear_items{men, "clear_items", "Clear selected item(s)"};
    forms::MenuItem clear_playlist{men, "clear_playlist", "Clear playlist"};
    forms::MenuItem repeat{men, "repeat", "Toggle repeat"};

    const playlist::PlaylistStore& Playlist() const { return playlist_; }

private:
    // Window.
    void Form_Load() override;
    void Form_Unload() override;
    void Form_Resize() override;
    void Form_MouseDown(const base::MouseEvent& mouse) override;
    void Form_MouseMove(const base::MouseEvent& mouse) override;
    bool Form_KeyDown(const base::KeyEvent& key) override;
    void CloseRequested() override;

    // Transport buttons: the pointer over the normal picture shows the highlighted one, which takes
    // the click; without a pointer the normal one is pressed.
    void Picture2_MouseMove(const base::MouseEvent&) { hover_.Show(kPlayButton); }
    void Picture3_MouseMove(const base::MouseEvent&) { hover_.Show(kStopButton); }
    void Picture4_MouseMove(const base::MouseEvent&) { hover_.Show(kPauseButton); }
    void Picture6_MouseMove(const base::MouseEvent&) { hover_.Show(kOpenButton); }
    void Picture7_MouseLeave() { hover_.Leave(kPlayButton); }
    void Picture8_MouseLeave() { hover_.Leave(kStopButton); }
    void Picture9_MouseLeave() { hover_.Leave(kPauseButton); }
    void Picture11_MouseLeave() { hover_.Leave(kOpenButton); }
    void Picture2_Click() { Picture7_Click(); }
    void Picture3_Click() { Picture8_Click(); }
    void Picture4_Click() { Picture9_Click(); }
    void Picture6_Click() { Picture11_Click(); }
    void Picture8_Click();

    void Picture5_Click();
    void Picture14_Click();
    void Picture15_Click();
    void Picture16_Click();

    // Playlist.
    void List1_DblClick();
    void List1_MouseUp(const base::MouseEvent& mouse);
    void List1_KeyDown(const base::KeyEvent& key);
    void List1_OLEDragDrop(const std::vector<std::string>& paths);
    void Form_OLEDragDrop(const std::vector<std::string>& paths) override;
    void add_files_Click();
    void clear_items_Click();
    void clear_playlist_Click();
    void repeat_Click();

    // Fragment.
    void Text1_LostFocus() { LeaveBound(fragments::BoundEnd::Begin, fragments::BoundPart::Hours); }
    void Text2_LostFocus() {
        LeaveBound(fragments::BoundEnd::Begin, fragments::BoundPart::Minutes);
    }
    void Text3_LostFocus() {
        LeaveBound(fragments::BoundEnd::Begin, fragments::BoundPart::Seconds);
    }
    void Text5_LostFocus() { LeaveBound(fragments::BoundEnd::End, fragments::BoundPart::Hours); }
    void Text4_LostFocus() { LeaveBound(fragments::BoundEnd::End, fragments::BoundPart::Minutes); }
    void Text6_LostFocus() { LeaveBound(fragments::BoundEnd::End, fragments::BoundPart::Seconds); }
    void Command1_Click();
    void Command2_Click();

    // Sliders and time.
    void Picture12_MouseDown(const base::MouseEvent& mouse);
    void Picture12_MouseMove(const base::MouseEvent& mouse);
    void Picture12_MouseUp(const base::MouseEvent& mouse);
    void Picture12_KeyDown(const base::KeyEvent& key);
    void Picture12_Resize();
    void Picture13_MouseDown(const base::MouseEvent& mouse);
    void Picture13_MouseMove(const base::MouseEvent& mouse);
    void Picture13_MouseUp(const base::MouseEvent& mouse);
    void Picture13_KeyDown(const base::KeyEvent& key);
    void Label2_Click();
    void Label2_MouseDown(const base::MouseEvent& mouse);
    void Timer1_Timer();
    void Timer2_Timer();

    // Grips.
    void Picture17_MouseDown(const base::MouseEvent& mouse);
    void Picture17_MouseMove(const base::MouseEvent& mouse);
    void Picture17_MouseUp(const base::MouseEvent& mouse);
    void Picture18_MouseDown(const base::MouseEvent& mouse);
    void Picture18_MouseMove(const base::MouseEvent& mouse);
    void Picture18_MouseUp(const base::MouseEvent& mouse);

    static constexpr int kPlayButton = 2;
    static constexpr int kStopButton = 3;
    static constexpr int kPauseButton = 4;
    static constexpr int kOpenButton = 6;

    void DressPlainly();
    void NameControls();
    void BindHandlers();
    std::array<forms::TextBox*, 6> BoundFields();
    std::array<forms::Label*, 4> Colons();

    void LoadSkinPictures(const SkinPackage& skin);
    void ApplySkinColors(const SkinColors& colors);

    void ApplySettingsFile();
    void PlaceVolumeKnob(const core::SettingsFile& file);
    void PlaceWindows(const core::WindowGeometry& geometry);
    void PlaceVideoWindow(const core::WindowGeometry& geometry);
    void ReapplySettingsFile();
    void RegisterStartWithSystem(const core::SettingsFile& file);
    void SaveSettingsFile();
    void OpenFromCommandLine();
    void ShowTitle(const std::string& path);
    void PutTitle(const std::string& title);
    void ResetFragmentBounds();
    fragments::FragmentBounds MarkedFragment() const;
    void ShowFragment(const fragments::FragmentBounds& bounds);
    void LeaveBound(fragments::BoundEnd which, fragments::BoundPart part);
    void OpenWizard();
    void ServeWizard();
    std::exception_ptr RunJob(fragments::JobKind kind);
    void DoJob(fragments::JobKind kind);
    void DoAudioJob(const fragments::JobSource& source, const std::string& output);
    bool RunCompanion(const core::FragmentJob& job, fragments::JobKind kind);
    void WaitFor(core::CompanionJob& job, fragments::JobWatch& watch) const;
    void FinishAudioTarget();
    bool ReportAudioProgress(int percent);
    void EndJob();
    void EndCompanions();
    void RecordPosition();
    void MoveVideoAlong();
    void RestoreFromTray();
    bool PointerIsAt(const base::MouseEvent& mouse) const;
    std::optional<std::string> ChooseMedia();

    PositionTrack SeekTrack() const;
    VolumeTrack LoudnessTrack() const;
    void RewindPositionKnob();
    void MovePositionKnob(double position, double duration);
    void ShowDraggedTime();
    void SeekTo(double seconds);
    void MoveVolumeKnob(base::Twips top);
    void SayVolume();

    void load_playlist();
    void save_playlist();
    void AddToPlaylist(std::span<const playlist::Entry> entries);
    void PlayWhatWasOpened();

    void Resize(base::Size size);
    void KeepOnScreen();
    void LayOutWidth();
    void PlacePlaylist();

    // The names, for the list box.
    class PlaylistLines final : public forms::ListLines {
    public:
        explicit PlaylistLines(const playlist::PlaylistStore& store) : store_(store) {}
        int Count() const override { return store_.playlist_count(); }
        std::string_view Line(int index) const override { return store_.playlist_names(index + 1); }

    private:
        const playlist::PlaylistStore& store_;
    };

    RemoteContext context_;
    core::VideoWindow& Form1_;
    playlist::PlaylistStore playlist_;
    PlaylistLines playlist_lines_{playlist_};
    bool playlist_readable_ = true;
    std::optional<std::int32_t> current_item_;  // the position that was started last, from 1
    core::SharedSettings settings_;
    Transport transport_;
    HoverHighlight hover_;
    KnobDrag position_drag_;
    KnobDrag volume_drag_;
    KnobDrag grip_drag_x_;
    KnobDrag grip_drag_y_;
    TimeReadOut time_;
    std::int32_t drag_time_ = 0;  // what the read-out shows while the knob is dragged, seconds
    std::int32_t last_seek_target_ = 0;
    bool playlist_shown_ = false;
    std::int32_t remembered_height_;  // of the remote with its list, twips
    std::string file_path_;
    std::string title_;
    bool tray_restore_ = false;
    bool choosing_ = false;  // the open dialog is up
    fragments::WizardLink wizard_;
    bool serving_wizard_ = false;                      // a job is under way, or is being asked for
    std::unique_ptr<core::CompanionJob> waiting_job_;  // that the remote waits for
    std::vector<std::unique_ptr<core::CompanionJob>> jobs_beside_;  // that go on without it
    fragments::AudioTarget audio_target_;                           // of the audio job at hand
    // What keeps its distance to the right edge, with its place at the smallest width.
    std::vector<std::pair<forms::Control*, base::Twips>> right_side_;
};

}  // namespace nqp::remote
