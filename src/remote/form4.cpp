#include "remote/form4.h"

#include <algorithm>
#include <cmath>

#include "base/file.h"
#include "base/text.h"
#include "core/command_line.h"
#include "core/program_folder.h"

namespace nqp::remote {
namespace {

// Twips.
constexpr base::Rect kFirstBounds{3090, 4980, 6300, 890};
constexpr base::Rect kTitleBounds{180, 120, 5400, 315};
constexpr base::Twips kFieldTop = 480;
constexpr base::Twips kFieldWidth = 360;
constexpr base::Twips kFieldHeight = 285;
constexpr base::Twips kFieldStep = 420;
constexpr base::Twips kFirstFieldLeft = 180;
constexpr base::Twips kEndFieldsLeft = 1680;
constexpr base::Twips kVolumeX = 6000;
constexpr base::Twips kVolumeTop = 120;
constexpr base::Twips kVolumeBottom = 765;
constexpr base::Size kVolumeKnob{240, 120};

constexpr forms::Color kPaper = forms::Rgb(36, 38, 43);
constexpr forms::Color kInk = forms::Rgb(236, 238, 242);
constexpr forms::Color kFieldPaper = forms::Rgb(52, 55, 62);
constexpr forms::Color kRule = forms::Rgb(110, 115, 128);

constexpr char kNoBound[] = "00";

// What the icon in the notification area reports in place of the pointer's position, in pixels.
constexpr int kIconLeftButtonUp = 514;
constexpr int kIconRightButtonUp = 517;

base::Rect FieldBounds(base::Twips left, int index) {
    return {left + static_cast<base::Twips>(index) * kFieldStep, kFieldTop, kFieldWidth,
            kFieldHeight};
}

// At least a hand's breadth of a window must be in reach of the pointer.
bool InReach(const base::Rect& window) {
    constexpr base::Twips kHandle = 450;
    const base::Rect screen = forms::VirtualScreen();
    return window.right() > screen.left + kHandle && window.left < screen.right() - kHandle &&
           window.bottom() > screen.top + kHandle && window.top < screen.bottom() - kHandle;
}

}  // namespace

Form4::Form4(const RemoteContext& context)
    : forms::Form({.name = "Form4",
                   .caption = core::kApplicationTitle,
                   .bounds = kFirstBounds,
                   .backColor = kPaper}),
      Label1(*this, "Label1", 101, kTitleBounds, core::kApplicationTitle),
      Text1(*this, "Text1", 102, FieldBounds(kFirstFieldLeft, 0), kNoBound),
      Text2(*this, "Text2", 103, FieldBounds(kFirstFieldLeft, 1), kNoBound),
      Text3(*this, "Text3", 104, FieldBounds(kFirstFieldLeft, 2), kNoBound),
      Text5(*this, "Text5", 105, FieldBounds(kEndFieldsLeft, 0), kNoBound),
      Text4(*this, "Text4", 106, FieldBounds(kEndFieldsLeft, 1), kNoBound),
      Text6(*this, "Text6", 107, FieldBounds(kEndFieldsLeft, 2), kNoBound),
      Line13(*this, "Line13", 108, {kVolumeX, kVolumeTop}, {kVolumeX, kVolumeBottom}),
      Picture13(
          *this, "Picture13", 109,
          {kVolumeX - kVolumeKnob.width / 2, kVolumeTop, kVolumeKnob.width, kVolumeKnob.height}),
      context_(context),
      Form1_(context.Form1),
      transport_(context.Form1.MediaPlayer1(), *this) {
    Label1.SetColors(kInk, kPaper);
    Label1.SetFont(true, 1.0F);
    for (forms::TextBox* field : {&Text1, &Text2, &Text3, &Text4, &Text5, &Text6}) {
        field->SetColors(kInk, kFieldPaper);
        field->SetAlignment(forms::Align::Center);
    }
    Line13.SetBorderColor(kRule);
    Picture13.SetColors(kInk, kInk);
    Picture13.SetToolTipText("Volume");
}

// The start sequence: playlist, flag file, skin, settings, flags, icon, position, command line. The
// order counts: the settings place what the skin has dressed, and a file on the command line plays
// with the settings applied.
void Form4::Form_Load() {
    core::DeleteFlagFile(context_.programFolder);
    tray_restore_ = true;
    ApplySettingsFile();
    transport_.Reset();
    context_.tray.SetTrayIcon(core::TrayMessage::Add, Handle(), core::kApplicationTitle);
    RecordPosition();
    if (core::NamesMediaFile(context_.commandLine)) OpenFromCommandLine();
}

void Form4::ApplySettingsFile() {
    const core::SettingsFile file(context_.programFolder);
    if (file.Empty()) return;
    PlaceVolumeKnob(file);
    if (const auto geometry = file.Geometry()) PlaceWindows(*geometry);
    if (file.Flag(core::kAlwaysOnTop)) {
        Form1_.MakeTopmost(true);
        SetTopmost(true);
    }
    file.ApplyBehaviour(settings_);
    Form1_.MediaPlayer1().SetAutoStart(settings_.auto_start);
    file.ApplyFragmentsAndSchedule(settings_);
}

void Form4::PlaceVolumeKnob(const core::SettingsFile& file) {
    core::MediaEngine& engine = Form1_.MediaPlayer1();
    if (const auto top = file.VolumeKnobTop()) {
        Picture13.SetTop(Track().Clamped(static_cast<base::Twips>(*top)));
    }
    ApplyVolume(engine, Track().VolumeAt(Picture13.Top()));
    CurrentVolume = engine.Volume();
}

void Form4::PlaceWindows(const core::WindowGeometry& geometry) {
    const base::Rect remote{geometry.remoteLeft.value_or(Left()),
                            geometry.remoteTop.value_or(Top()), Width(), Height()};
    if (InReach(remote)) Move(remote);
    PlaceVideoWindow(geometry);
}

// Left alone when the file holds no whole place, or one that no monitor shows any more.
void Form4::PlaceVideoWindow(const core::WindowGeometry& geometry) {
    const bool whole = geometry.videoLeft && geometry.videoTop &&
                       geometry.videoWidth.value_or(0) > 0 && geometry.videoHeight.value_or(0) > 0;
    if (!whole) return;
    const base::Rect video{static_cast<base::Twips>(*geometry.videoLeft),
                           static_cast<base::Twips>(*geometry.videoTop),
                           static_cast<base::Twips>(*geometry.videoWidth),
                           static_cast<base::Twips>(*geometry.videoHeight)};
    if (!InReach(video)) return;
    Form1_.mX = *geometry.videoLeft;
    Form1_.mY = *geometry.videoTop;
    Form1_.mW = *geometry.videoWidth;
    Form1_.mH = *geometry.videoHeight;
    Form1_.PlaceWindow();
}

// After the options changed: unlike the load it also takes the windows down from the top.
void Form4::ReapplySettingsFile() {
    const core::SettingsFile file(context_.programFolder);
    const bool topmost = file.Flag(core::kAlwaysOnTop);
    Form1_.MakeTopmost(topmost);
    SetTopmost(topmost);
    file.ApplyBehaviour(settings_);
    Form1_.MediaPlayer1().SetAutoStart(settings_.auto_start);
    file.ApplyFragmentsAndSchedule(settings_);
}

// The shell puts a path with blanks in quotes, which no path has of its own.
void Form4::OpenFromCommandLine() {
    file_path_ = base::WithoutQuotes(context_.commandLine);
    Form1_.MediaPlayer1().Open(file_path_);
    ShowTitle(file_path_);
    ResetFragmentBounds();
    transport_.ready_to_play = true;
    transport_.bPause = false;
}

void Form4::ShowTitle(const std::string& path) {
    title_ = base::TitleOf(base::FileNameOf(path));
    Label1.SetCaption(title_);
    Label1.SetToolTipText(title_);
}

void Form4::ResetFragmentBounds() {
    for (forms::TextBox* field : {&Text1, &Text2, &Text3, &Text4, &Text5, &Text6}) {
        field->SetText(kNoBound);
    }
}

void Form4::RecordPosition() {
    plX = base::RoundHalfEven(Left());
    plY = base::RoundHalfEven(Top());
}

VolumeTrack Form4::Track() const {
    return {Line13.Y1(), Line13.Y2(), Picture13.Height()};
}

void Form4::Form_Unload() {
    SaveSettingsFile();
    context_.tray.SetTrayIcon(core::TrayMessage::Delete, Handle(), {});
    Form1_.UnloadWindow();
}

// A file that the options were never written to stays empty.
void Form4::SaveSettingsFile() {
    core::SettingsFile file(context_.programFolder);
    if (file.Empty()) return;
    file.SetVolumeKnobTop(Picture13.Top());
    if (file.Flag(core::kRememberWindow)) {
        file.SetRemotePosition(Left(), Top());
        file.SetVideoBounds(Form1_.mX, Form1_.mY, Form1_.mW, Form1_.mH);
    }
    file.Commit();
}

void Form4::Picture7_Click() {
    transport_.Play();
}

void Form4::Picture9_Click() {
    transport_.TogglePause();
}

void Form4::Picture10_Click() {
    ReapplySettingsFile();
}

void Form4::Picture11_Click() {
    core::MediaEngine& engine = Form1_.MediaPlayer1();
    engine.SetVisible(false);
    const auto path = ChooseMedia();
    if (!path || !base::IsFile(base::PathFromUtf8(*path))) return;
    engine.Open(*path);
    file_path_ = *path;
    ShowTitle(*path);
    ResetFragmentBounds();
    Form1_.BringForward();
    Picture7_Click();
}

// A dialog cannot be seen behind the full-screen picture; and while it is up, the windows it does
// not own may ask for a second one.
std::optional<std::string> Form4::ChooseMedia() {
    if (choosing_) return std::nullopt;
    Form1_.MediaPlayer1().SetDisplaySize(core::kWindowDisplay);
    choosing_ = true;
    const auto path = context_.dialogs.OpenFile({.owner = Handle(),
                                                 .title = "Nuvex Quillon Player - Open Media",
                                                 .filter = {"All Media Types", "*.*"}});
    choosing_ = false;
    return Loaded() ? path : std::nullopt;
}

// The video window first: the remote's own unload then saves and ends the program.
void Form4::Picture1_Click() {
    Form1_.UnloadWindow();
    Unload();
}

void Form4::CloseRequested() {
    Unload();
    Form1_.UnloadWindow();
}

bool Form4::Form_KeyDown(const base::KeyEvent& key) {
    const bool altF4 = key.KeyCode == base::kKeyF4 && (key.Shift & base::kAltKey) != 0;
    if (key.KeyCode == base::kKeyEscape || (altF4 && key.Shift == base::kAltKey)) {
        CloseRequested();
        return true;
    }
    // With a further shift key the system would close the window all the same.
    return altF4;
}

// Carries the icon's button events, in the place of the pointer's horizontal position.
void Form4::Form_MouseMove(const base::MouseEvent& mouse) {
    if (PointerIsAt(mouse)) return;
    const std::int32_t message = base::RoundHalfEven(mouse.X / TwipsPerPixel());
    if (message == kIconLeftButtonUp && tray_restore_) RestoreFromTray();
    if (message == kIconRightButtonUp) PopupMenu(context_.trayMenu);
}

// A real move tells where the pointer is; a wide remote reaches as far as the icon's numbers.
bool Form4::PointerIsAt(const base::MouseEvent& mouse) const {
    const base::Point reported = PointOnScreen({mouse.X, mouse.Y});
    const base::Point pointer = forms::PointerOnScreen();
    return std::abs(reported.x - pointer.x) < TwipsPerPixel() &&
           std::abs(reported.y - pointer.y) < TwipsPerPixel();
}

void Form4::RestoreFromTray() {
    Form1_.ShowWindow();
    Show();
    Form1_.Form_Activate();
}

// Without a list the player stays stopped at the end of the clip.
void Form4::next_playlist_item() {}

// Above the full-screen picture, whose keys go on reaching it.
void Form4::ShowRemoteOnTop() {
    ShowOnTop();
}

void Form4::MoveRemote(base::Point topLeft) {
    Move({topLeft.x, topLeft.y, Width(), Height()});
}

}  // namespace nqp::remote
