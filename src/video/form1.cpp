#include "video/form1.h"

#include "video/form5.h"
#include "video/resize_zones.h"

namespace nqp::video {
namespace {

constexpr base::Rect kFirstGeometry{3090, 1005, 5160, 3855};  // twips
constexpr base::Twips kSmallestSide = 400;
// Where the menu opens when a key asks for it: from the upper left corner, twips.
constexpr base::Twips kMenuInset = 300;
constexpr int kMediaPlayer1Id = 101;

}  // namespace

Form1::Form1(core::MediaEngine& engine)
    : forms::Form({.name = "Form1",
                   .caption = "Nuvex Quillon Player",
                   .bounds = kFirstGeometry,
                   .backColor = forms::Rgb(0, 0, 0),
                   .pointer = forms::Pointer::Arrow}),
      MediaPlayer1_(engine) {
    MediaPlayer1_.MouseDown.calls<&Form1::MediaPlayer1_MouseDown>(this);
    MediaPlayer1_.MouseMove.calls<&Form1::MediaPlayer1_MouseMove>(this);
    MediaPlayer1_.PlayStateChange.calls<&Form1::MediaPlayer1_PlayStateChange>(this);
    i1.Click.calls<&Form1::i1_Click>(this);
    i2.Click.calls<&Form1::i2_Click>(this);
    i3.Click.calls<&Form1::i3_Click>(this);
}

void Form1::Connect(core::RemoteWindow& remote, Form5& contextMenu) {
    Form4_ = &remote;
    Form5_ = &contextMenu;
}

void Form1::Form_Load() {
    MediaPlayer1_.Attach(Handle(), kMediaPlayer1Id);
    Form_Resize();
}

void Form1::Form_Unload() {
    Form5_->CloseAll();
    MediaPlayer1_.Detach();
}

// Also hides the picture of a clip that plays: whoever brings the window forward starts from the
// bare window.
void Form1::Form_Activate() {
    MediaPlayer1_.SetAutoStart(Form4_->Settings().auto_start);
    MediaPlayer1_.SetVisible(false);
    bFullScreen_ = false;
    bmute_ = false;
    menu_showing = false;
    if (mW == 0) {
        mX = base::RoundHalfEven(kFirstGeometry.left);
        mY = base::RoundHalfEven(kFirstGeometry.top);
        mW = base::RoundHalfEven(kFirstGeometry.width);
        mH = base::RoundHalfEven(kFirstGeometry.height);
    }
    PlaceWindow();
}

void Form1::PlaceWindow() {
    Move({static_cast<base::Twips>(mX), static_cast<base::Twips>(mY), static_cast<base::Twips>(mW),
          static_cast<base::Twips>(mH)});
}

void Form1::Form_Resize() {
    if (Width() < kSmallestSide) Move({Left(), Top(), kSmallestSide, Height()});
    if (Height() < kSmallestSide) Move({Left(), Top(), Width(), kSmallestSide});
    MediaPlayer1_.SetHeight(Height());
    MediaPlayer1_.SetWidth(Width());
}

forms::HitCode Form1::ZoneUnder(const base::MouseEvent& mouse) const {
    return ZoneAt({mouse.X, mouse.Y}, {Width(), Height()});
}

void Form1::Form_MouseMove(const base::MouseEvent& mouse) {
    SetMousePointer(ZoneUnder(mouse) == forms::HitCode::Caption ? forms::Pointer::Arrow
                                                                : forms::Pointer::FourWaySizing);
}

void Form1::MediaPlayer1_MouseMove(const base::MouseEvent& mouse) {
    MediaPlayer1_.SetCursorType(ZoneUnder(mouse) == forms::HitCode::Caption ? core::kNormalCursor
                                                                            : core::kSizingCursor);
}

void Form1::DragFrom(const base::MouseEvent& mouse) {
    pending_hit_code_ = ZoneUnder(mouse);
    Drag(pending_hit_code_);
}

void Form1::RecordGeometry() {
    mX = base::RoundHalfEven(Left());
    mY = base::RoundHalfEven(Top());
    mW = base::RoundHalfEven(Width());
    mH = base::RoundHalfEven(Height());
}

void Form1::Form_MouseDown(const base::MouseEvent& mouse) {
    DragFrom(mouse);
    RecordGeometry();
}

void Form1::MediaPlayer1_MouseDown(const base::MouseEvent& mouse) {
    const bool move_also = Form4_->Settings().move_also;
    if (mouse.Button == base::kLeftButton) DragFrom(mouse);
    if (move_also) MoveRemoteAlong();
    RecordGeometry();
    Form5_->Unload();
    if (mouse.Button == base::kRightButton) OpenContextMenu({mouse.X, mouse.Y});
}

// By as far as this window has moved since its geometry was recorded last.
void Form1::MoveRemoteAlong() {
    const base::Point remote = Form4_->RemotePosition();
    Form4_->MoveRemote({remote.x + (Left() - static_cast<base::Twips>(mX)),
                        remote.y + (Top() - static_cast<base::Twips>(mY))});
    const base::Point moved = Form4_->RemotePosition();
    Form4_->plX = base::RoundHalfEven(moved.x);
    Form4_->plY = base::RoundHalfEven(moved.y);
}

// Also gets the keys of the full-screen picture.
bool Form1::Form_KeyDown(const base::KeyEvent& key) {
    // The keys that open a context menu everywhere else open this one too.
    const bool asksForMenu = key.KeyCode == base::kKeyMenu ||
                             (key.KeyCode == base::kKeyF10 && key.Shift == base::kShiftKey);
    if (asksForMenu) OpenContextMenu({kMenuInset, kMenuInset});
    return asksForMenu || RunKey(key);
}

bool Form1::RunKey(const base::KeyEvent& key) {
    const bool fullScreen = MediaPlayer1_.DisplaySize() == core::kFullScreenDisplay;
    if (key.KeyCode == base::kKeyO && key.Shift == base::kControlKey) {
        open_media();
        return true;
    }
    if (key.Shift != 0) return false;
    switch (key.KeyCode) {
        case base::kKeySpace:
            MediaPlayer1_.State() == core::PlayState::Playing ? pause_media() : play_media();
            return true;
        case base::kKeyF11:
            fullScreen ? LeaveFullScreen() : Form5_->ShowFullScreen();
            return true;
        case base::kKeyEscape:
            if (fullScreen) LeaveFullScreen();
            return fullScreen;
        default:
            return false;
    }
}

void Form1::LeaveFullScreen() {
    MediaPlayer1_.SetDisplaySize(core::kWindowDisplay);
}

// What stands over the window goes with it.
void Form1::HideWindow() {
    LeaveFullScreen();
    Form5_->CloseAll();
    Hide();
}

// A picture that is held still is not drawn by itself when its window comes back.
void Form1::ShowAfterDrag() {
    ShowInactive();
    MediaPlayer1_.SetVisible(MediaPlayer1_.Visible());
}

void Form1::OpenContextMenu(base::Point inWindow) {
    menu_showing = true;
    Form5_->Load();
    Form5_->PlaceAt(PointOnScreen(inWindow));
    Form5_->SetTopmost(true);
    Form5_->highlighted_item = 0;
    Form5_->Show();
}

void Form1::MediaPlayer1_PlayStateChange(core::PlayState oldState, core::PlayState newState) {
    const bool stopped =
        oldState == core::PlayState::Playing && newState == core::PlayState::Stopped;
    if (stopped && MediaPlayer1_.Duration() == MediaPlayer1_.CurrentPosition()) {
        Form4_->next_playlist_item();
    }
}

// Whoever closes the video window by the system's means is done with the player.
void Form1::CloseRequested() {
    i3_Click();
}

void Form1::i1_Click() {
    Show();
    Form4_->ShowRemote();
    Form_Activate();
}

void Form1::i2_Click() {
    HideWindow();
    Form4_->HideRemote();
}

void Form1::i3_Click() {
    Form4_->Picture1_Click();
}

void Form1::open_media() {
    Form4_->Picture11_Click();
}

void Form1::pause_media() {
    Form4_->Picture9_Click();
}

void Form1::play_media() {
    Form4_->Picture7_Click();
}

}  // namespace nqp::video
