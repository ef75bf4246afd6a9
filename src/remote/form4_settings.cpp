#include "core/command_line.h"
#include "core/program_folder.h"
#include "remote/form4.h"

// The settings file, at the load, after the options and at the unload.
namespace nqp::remote {
namespace {

// At least a hand's breadth of a window must be in reach of the pointer.
bool InReach(const base::Rect& window) {
    constexpr base::Twips kHandle = 450;
    const base::Rect screen = forms::VirtualScreen();
    return window.right() > screen.left + kHandle && window.left < screen.right() - kHandle &&
           window.bottom() > screen.top + kHandle && window.top < screen.bottom() - kHandle;
}

}  // namespace

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
        Picture13.SetTop(LoudnessTrack().Clamped(static_cast<base::Twips>(*top)));
    }
    ApplyVolume(engine, LoudnessTrack().VolumeAt(Picture13.Top()));
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

// After the options changed: unlike the load it also takes the windows down from the top. A file
// that was never written, or cannot be read, changes nothing.
void Form4::ReapplySettingsFile() {
    const core::SettingsFile file(context_.programFolder);
    if (file.Empty()) return;
    const bool topmost = file.Flag(core::kAlwaysOnTop);
    Form1_.MakeTopmost(topmost);
    SetTopmost(topmost);
    file.ApplyBehaviour(settings_);
    Form1_.MediaPlayer1().SetAutoStart(settings_.auto_start);
    file.ApplyFragmentsAndSchedule(settings_);
    RegisterStartWithSystem(file);
}

void Form4::RegisterStartWithSystem(const core::SettingsFile& file) {
    const auto association = context_.associations.Create();
    if (file.Text(core::kStartWithSystem) == "1") {
        association->RegisterStart(
            core::ProgramCommand(context_.programFolder, context_.programName) + " " +
            core::kHiddenSwitch);
    } else {
        association->UnRegisterStart();
    }
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

}  // namespace nqp::remote
