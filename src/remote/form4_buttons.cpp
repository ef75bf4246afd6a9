#include "base/file.h"
#include "base/scoped_flag.h"
#include "remote/face.h"
#include "remote/form4.h"

// What the buttons of the face do.
namespace nqp::remote {
namespace {

constexpr char kHelpFileName[] = "nqp.chm";

}  // namespace

void Form4::Picture7_Click() {
    transport_.Play();
}

void Form4::Picture8_Click() {
    if (transport_.Stop()) RewindPositionKnob();
}

void Form4::Picture9_Click() {
    transport_.TogglePause();
}

void Form4::Picture11_Click() {
    core::MediaEngine& engine = Form1_.MediaPlayer1();
    engine.SetVisible(false);
    const auto path = ChooseMedia();
    if (!path || !base::IsFile(base::PathFromUtf8(*path))) return;
    engine.Open(*path);
    time_.StartClip();
    RewindPositionKnob();
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
    const base::ScopedFlag choosing(choosing_);
    const auto path = context_.dialogs.OpenFile({.owner = Handle(),
                                                 .title = "Nuvex Quillon Player - Open Media",
                                                 .filter = {"All Media Types", "*.*"}});
    return Loaded() ? path : std::nullopt;
}

void Form4::Picture10_Click() {
    if (!transport_.bPause) Picture9_Click();
    // The keys come back to the remote, which must not lie behind the full-screen picture then.
    Form1_.MediaPlayer1().SetDisplaySize(core::kWindowDisplay);
    context_.Form2.ShowOnTopModal();
    if (Loaded()) ReapplySettingsFile();
}

void Form4::Picture14_Click() {
    context_.shell.Open(context_.programFolder / kHelpFileName);
}

void Form4::Picture15_Click() {
    grip_drag_x_.Release();
    grip_drag_y_.Release();
    if (!playlist_shown_) {
        playlist_shown_ = true;
        Resize({Width(), static_cast<base::Twips>(remembered_height_)});
    } else {
        remembered_height_ = base::RoundHalfEven(Height());
        playlist_shown_ = false;
        Resize({Width(), face::kCompactHeight});
    }
    PlacePlaylist();
    if (playlist_shown_) KeepOnScreen();
}

void Form4::Picture5_Click() {
    Hide();
}

void Form4::Picture16_Click() {
    Form1_.HideWindow();
    Hide();
}

// The video window first: the remote's own unload then saves and ends the program.
void Form4::Picture1_Click() {
    Form1_.UnloadWindow();
    Unload();
}

}  // namespace nqp::remote
