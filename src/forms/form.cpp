#include "forms/form.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "forms/control.h"
#include "forms/run_time_error.h"
#include "forms/timer_control.h"

namespace nqp::forms {
namespace {

int loaded_windows = 0;
void (*last_window_unloaded)() = nullptr;

// What is on the screen of an unloaded window, until the message loop lets it go.
struct RetiredPeers {
    std::unique_ptr<WindowPeer> window;
    std::vector<std::unique_ptr<ControlPeer>> controls;  // go first
};

}  // namespace

void SetLastWindowUnloaded(void (*handler)()) {
    last_window_unloaded = handler;
}

Form::Form(const WindowState& state) : state_(state) {}

// The window classes are unloaded by whoever put the program together: here their controls are
// gone.
Form::~Form() {
    assert(!peer_);
}

void Form::Load() {
    if (peer_) return;
    CreatePeers();
    ++loaded_windows;
    Guarded(Origin::Program, [this] { Form_Load(); });
    for (TimerControl* timer : timers_) {
        if (peer_) timer->Start();
    }
}

void Form::CreatePeers() {
    peer_ = CreateWindowPeer(state_, *this, opener_ != nullptr ? opener_->peer_.get() : nullptr);
    state_.bounds = peer_->Bounds();
    // What comes later lies below.
    for (Control* control : controls_) {
        control->peer_ = CreateControlPeer(control->state_, *control, *peer_);
    }
}

void Form::RetirePeers() {
    auto retired = std::make_shared<RetiredPeers>();
    for (TimerControl* timer : timers_)
        timer->Stop();
    for (Control* control : controls_) {
        if (!control->peer_) continue;
        control->peer_->Retire();
        retired->controls.push_back(std::move(control->peer_));
    }
    peer_->Retire();
    retired->window = std::move(peer_);
    Post([retired] {});
}

base::Size Form::ClientSize() const {
    return peer_ ? peer_->ClientSize() : base::Size{};
}

void Form::Maximize() {
    state_.maximized = true;
    if (peer_) peer_->Maximize();
}

void Form::SetCaption(const std::string& caption) {
    state_.caption = caption;
    if (peer_) peer_->SetCaption(caption);
}

base::Twips Form::TwipsPerPixel() const {
    return peer_ ? peer_->TwipsPerPixel() : base::PixelsToTwips(1, base::kDesignDpi);
}

base::Point Form::PointOnScreen(const base::Point& inWindow) const {
    const float scale = peer_ ? peer_->ScreenScale() : 1.0F;
    return {Left() + inWindow.x * scale, Top() + inWindow.y * scale};
}

base::Size Form::ExtentOnScreen() const {
    const float scale = peer_ ? peer_->ScreenScale() : 1.0F;
    return {Width() * scale, Height() * scale};
}

void Form::Show() {
    Load();
    if (!peer_) return;
    if (visible_) {
        peer_->Show();
        return;
    }
    visible_ = true;
    peer_->Show();
    Guarded(Origin::Program, [this] { Form_Activate(); });
}

void Form::ShowModal() {
    Load();
    if (!peer_) return;
    visible_ = true;
    // The peer outlives its own loop: what is retired goes when the outermost loop runs again.
    // A dialog follows from what a person did.
    peer_->ShowModal([this] { Guarded(Origin::User, [this] { Form_Activate(); }); });
}

void Form::ShowInactive() {
    Load();
    if (!peer_) return;
    visible_ = true;
    peer_->ShowInactive();
}

void Form::ShowOnTop() {
    Load();
    if (!peer_) return;
    visible_ = true;
    state_.topmost = true;
    peer_->ShowOnTop();
}

void Form::Hide() {
    visible_ = false;
    if (peer_) peer_->Hide();
}

void Form::Unload() {
    if (!peer_ || unloading_) return;
    unloading_ = true;
    Guarded(Origin::Program, [this] { Form_Unload(); });
    RetirePeers();
    visible_ = false;
    unloading_ = false;
    if (--loaded_windows == 0 && last_window_unloaded != nullptr) last_window_unloaded();
}

void Form::Move(const base::Rect& bounds) {
    if (peer_) {
        peer_->Move(bounds);
    } else {
        state_.bounds = bounds;
    }
}

// Its size may be another one on the monitor it comes to.
void Form::CentreOver(const base::Rect& area) {
    const base::Size before = ExtentOnScreen();
    PlaceOver(area);
    const base::Size after = ExtentOnScreen();
    if (before.width != after.width || before.height != after.height) PlaceOver(area);
}

void Form::PlaceOver(const base::Rect& area) {
    const base::Point middle{area.left + area.width / 2, area.top + area.height / 2};
    const base::Rect room = WorkAreaAt(middle);
    const base::Size size = ExtentOnScreen();
    const auto within = [](base::Twips wanted, base::Twips first, base::Twips last) {
        return std::max(first, std::min(wanted, last));
    };
    Move({within(middle.x - size.width / 2, room.left, room.right() - size.width),
          within(middle.y - size.height / 2, room.top, room.bottom() - size.height), Width(),
          Height()});
}

void Form::SetTopmost(bool topmost) {
    state_.topmost = topmost;
    if (peer_) peer_->SetTopmost(topmost);
}

void Form::BringToFront() {
    if (peer_) peer_->BringToFront();
}

void Form::SetMousePointer(Pointer pointer) {
    state_.pointer = pointer;
    if (peer_) peer_->SetPointer(pointer);
}

void Form::SetPicture(const Picture& picture) {
    state_.backdrop.picture = picture;
    if (peer_) peer_->SetBackdrop(state_.backdrop);
}

void Form::Drag(HitCode code) {
    if (peer_) peer_->Drag(code);
}

void Form::PopupMenu(Menu& menu) {
    if (peer_) peer_->PopUp(menu, nullptr);
}

void Form::PopupMenuAt(Menu& menu, base::Point inWindow) {
    if (peer_) peer_->PopUp(menu, &inWindow);
}

void Form::OnBoundsChanged(const base::Rect& bounds) noexcept {
    const base::Rect before = std::exchange(state_.bounds, bounds);
    if (before.width == bounds.width && before.height == bounds.height) return;
    Guarded(Origin::Program, [this] { Form_Resize(); });
}

void Form::OnActivated() noexcept {
    Guarded(Origin::Program, [this] { Form_Activate(); });
}

void Form::OnDeactivated() noexcept {
    Guarded(Origin::Program, [this] { Form_Deactivate(); });
}

void Form::OnResolutionChanged() noexcept {
    Guarded(Origin::Program, [this] { Form_Resize(); });
}

void Form::OnCloseRequested() noexcept {
    Guarded(Origin::User, [this] { CloseRequested(); });
}

void Form::OnMouseDown(const base::MouseEvent& mouse) noexcept {
    Guarded(Origin::User, [&] { Form_MouseDown(mouse); });
}

void Form::OnMouseMove(const base::MouseEvent& mouse) noexcept {
    Guarded(Origin::Program, [&] { Form_MouseMove(mouse); });
}

void Form::OnMouseUp(const base::MouseEvent& mouse) noexcept {
    Guarded(Origin::User, [&] { Form_MouseUp(mouse); });
}

bool Form::OnKeyDown(const base::KeyEvent& key) noexcept {
    bool used = false;
    Guarded(Origin::User, [&] { used = Form_KeyDown(key); });
    return used;
}

void Form::OnFilesDropped(const std::vector<std::string>& paths) noexcept {
    Guarded(Origin::User, [&] { Form_OLEDragDrop(paths); });
}

void Form::OnDestroyed() noexcept {
    Unload();
}

}  // namespace nqp::forms
