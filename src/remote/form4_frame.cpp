#include <algorithm>
#include <cmath>

#include "remote/face.h"
#include "remote/form4.h"

// What a frame would do for the window: moving, sizing, closing, the icon in the notification area.
namespace nqp::remote {
namespace {

// What the icon in the notification area reports in place of the pointer's position, in pixels.
constexpr int kIconLeftButtonUp = 514;
constexpr int kIconRightButtonUp = 517;

}  // namespace

void Form4::RecordPosition() {
    plX = base::RoundHalfEven(Left());
    plY = base::RoundHalfEven(Top());
}

// The full-screen picture stands where it is, whatever moves.
void Form4::Form_MouseDown(const base::MouseEvent&) {
    core::MediaEngine& engine = Form1_.MediaPlayer1();
    if (title_.empty()) engine.SetVisible(false);
    const bool takeAlong = settings_.move_also && engine.DisplaySize() != core::kFullScreenDisplay;
    // The system may have moved the remote since the last drag.
    RecordPosition();
    if (takeAlong) Form1_.HideForDrag();
    Drag(forms::HitCode::Caption);
    if (!Loaded()) return;
    if (takeAlong) MoveVideoAlong();
    RecordPosition();
}

// By as far as the remote was dragged.
void Form4::MoveVideoAlong() {
    const base::Point video = Form1_.VideoPosition();
    const base::Point target{video.x + (Left() - static_cast<base::Twips>(plX)),
                             video.y + (Top() - static_cast<base::Twips>(plY))};
    Form1_.MoveVideo(target);
    const base::Point moved = Form1_.VideoPosition();
    Form1_.mX = base::RoundHalfEven(moved.x);
    Form1_.mY = base::RoundHalfEven(moved.y);
    Form1_.ShowAfterDrag();
    // A window manager may forget the place of a window that was moved while it was hidden.
    Form1_.MoveVideo(target);
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

// Also carries the icon's button events, in the place of the pointer's horizontal position.
void Form4::Form_MouseMove(const base::MouseEvent& mouse) {
    if (!PointerIsAt(mouse)) {
        const std::int32_t message = base::RoundHalfEven(mouse.X / TwipsPerPixel());
        if (message == kIconLeftButtonUp && tray_restore_) RestoreFromTray();
        if (message == kIconRightButtonUp) PopupMenu(context_.trayMenu);
    }
    hover_.Reset();
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

// Above the full-screen picture, whose keys go on reaching it.
void Form4::ShowRemoteOnTop() {
    ShowOnTop();
}

void Form4::MoveRemote(base::Point topLeft) {
    Move({topLeft.x, topLeft.y, Width(), Height()});
}

// With its list the remote may reach below the screen, where no grip can be taken.
void Form4::KeepOnScreen() {
    const base::Rect area = forms::WorkAreaAt({Left(), Top()});
    const base::Twips lowest = area.bottom() - ExtentOnScreen().height;
    if (Top() > lowest) MoveRemote({Left(), std::max(area.top, lowest)});
    RecordPosition();
}

void Form4::Resize(base::Size size) {
    Move({Left(), Top(), size.width, size.height});
}

void Form4::Form_Resize() {
    LayOutWidth();
    PlacePlaylist();
}

// The title and the position track take what the window is wider.
void Form4::LayOutWidth() {
    const base::Twips extra = std::max(0.0F, Width() - face::kSmallestWidth);
    for (const auto& [control, left] : right_side_)
        control->SetLeft(left + extra);
    Label1.Move({Label1.Left(), Label1.Top(), face::kTitle.width + extra, Label1.Height()});
    for (forms::Line* line : {&Line9, &Line11, &Line12}) {
        line->SetEnds({line->X1(), line->Y1()}, {face::kPositionEnd.x + extra, line->Y1()});
    }
    Picture12.SetLeft(SeekTrack().Clamped(Picture12.Left()));
}

void Form4::PlacePlaylist() {
    List1.SetVisible(playlist_shown_);
    Picture17.SetVisible(playlist_shown_);
    if (!playlist_shown_) return;
    Picture17.SetTop(Height() - Picture17.Height() + face::kGripOverlap);
    List1.Move({face::kListLeft, face::kListTop, Width() - 2 * face::kListLeft,
                Height() - Picture17.Height() - (face::kListTop - face::kGripOverlap) -
                    face::kGripOverlap});
}

void Form4::Picture17_MouseDown(const base::MouseEvent& mouse) {
    grip_drag_x_.Press(mouse.X);
    grip_drag_y_.Press(mouse.Y);
}

void Form4::Picture17_MouseMove(const base::MouseEvent& mouse) {
    if (!grip_drag_y_.Active() || !playlist_shown_) return;
    Resize({std::max(face::kSmallestWidth, grip_drag_x_.EdgeFor(Width(), mouse.X)),
            std::max(face::kSmallestHeight, grip_drag_y_.EdgeFor(Height(), mouse.Y))});
}

void Form4::Picture17_MouseUp(const base::MouseEvent&) {
    grip_drag_x_.Release();
    grip_drag_y_.Release();
}

void Form4::Picture18_MouseDown(const base::MouseEvent& mouse) {
    grip_drag_x_.Press(mouse.X);
}

void Form4::Picture18_MouseMove(const base::MouseEvent& mouse) {
    if (!grip_drag_x_.Active()) return;
    Resize({std::max(face::kSmallestWidth, grip_drag_x_.EdgeFor(Width(), mouse.X)), Height()});
}

void Form4::Picture18_MouseUp(const base::MouseEvent&) {
    grip_drag_x_.Release();
}

}  // namespace nqp::remote
