#include "forms/form.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "forms/control.h"
#include "forms/run_time_error.h"
#include "forms/timer_control.h"

namespace nqp::forms {
namespace {

// The window of the program that was active last, also while another program is in front.
Form* last_active = nullptr;
int loaded_windows = 0;
void (*last_window_unloaded)() = nullptr;

// What is on the screen of an unloaded window, until the message loop lets it go.
struct RetiredPeers {
    std::vector<std::unique_ptr<ControlPeer>> controls;
    std::unique_ptr<WindowPeer> window;
};

}  // namespace

void SetLastWindowUnloaded(void (*handler)()) {
    last_window_unloaded = handler;
}

Form::Form(const WindowState& state) : state_(state) {}

Form::~Form() {
    if (last_active == this) last_active = nullptr;
    if (peer_) {
        RetirePeers();
        --loaded_windows;
    }
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
    // What comes later lies below, and lines belong to the face, below everything.
    const auto isLine = [](const Control* control) {
        return control->state_.kind == ControlKind::Line;
    };
    std::vector<Control*> fromTheTop = controls_;
    std::stable_partition(fromTheTop.begin(), fromTheTop.end(), std::not_fn(isLine));
    for (Control* control : fromTheTop) {
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
    Post([retired] { retired->controls.clear(); });
}

base::Twips Form::TwipsPerPixel() const {
    return peer_ ? peer_->TwipsPerPixel() : base::PixelsToTwips(1, base::kDesignDpi);
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
    // Also where the system refused to put the window in front: it was shown all the same.
    last_active = this;
    Guarded(Origin::Program, [this] { Form_Activate(); });
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

void Form::Drag(HitCode code) {
    if (peer_) peer_->Drag(code);
}

void Form::PopupMenu(Menu& menu) {
    if (peer_) peer_->PopUp(menu);
}

bool Form::OpenedBy(const Form& other) const {
    for (const Form* form = opener_; form != nullptr; form = form->opener_) {
        if (form == &other) return true;
    }
    return false;
}

void Form::OnBoundsChanged(const base::Rect& bounds) noexcept {
    const base::Rect before = std::exchange(state_.bounds, bounds);
    if (before.width == bounds.width && before.height == bounds.height) return;
    Guarded(Origin::User, [this] { Form_Resize(); });
}

void Form::OnActivated(bool byPerson) noexcept {
    const Form* previous = std::exchange(last_active, this);
    if (!byPerson || previous == nullptr || previous == this || previous->OpenedBy(*this)) return;
    Guarded(Origin::User, [this] { Form_Activate(); });
}

void Form::OnDeactivated() noexcept {
    Guarded(Origin::User, [this] { Form_Deactivate(); });
}

void Form::OnCloseRequested() noexcept {
    Guarded(Origin::User, [this] { CloseRequested(); });
}

void Form::OnMouseDown(const base::MouseEvent& mouse) noexcept {
    Guarded(Origin::User, [&] { Form_MouseDown(mouse); });
}

void Form::OnMouseMove(const base::MouseEvent& mouse) noexcept {
    Guarded(Origin::User, [&] { Form_MouseMove(mouse); });
}

void Form::OnMouseUp(const base::MouseEvent& mouse) noexcept {
    Guarded(Origin::User, [&] { Form_MouseUp(mouse); });
}

bool Form::OnKeyDown(const base::KeyEvent& key) noexcept {
    bool used = false;
    Guarded(Origin::User, [&] { used = Form_KeyDown(key); });
    return used;
}

void Form::OnDestroyed() noexcept {
    Unload();
}

}  // namespace nqp::forms
