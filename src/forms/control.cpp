#include "forms/control.h"

#include <utility>

#include "forms/form.h"
#include "forms/run_time_error.h"

namespace nqp::forms {

Control::Control(Form& form, ControlKind kind, const std::string& name, int id,
                 const base::Rect& bounds)
    : form_(form) {
    state_.kind = kind;
    state_.name = name;
    state_.id = id;
    state_.bounds = bounds;
    form.controls_.push_back(this);
}

Control::~Control() = default;

void Control::Update() {
    if (peer_) peer_->Update();
}

void Control::SetLeft(base::Twips left) {
    Move({left, state_.bounds.top, state_.bounds.width, state_.bounds.height});
}

void Control::SetTop(base::Twips top) {
    Move({state_.bounds.left, top, state_.bounds.width, state_.bounds.height});
}

void Control::Move(const base::Rect& bounds) {
    if (bounds == state_.bounds) return;
    const base::Rect before = std::exchange(state_.bounds, bounds);
    Update();
    if (before.width != bounds.width || before.height != bounds.height) Resize();
}

void Control::SetVisible(bool visible) {
    if (shown_ == visible) return;
    shown_ = visible;
    ShowOrHide();
}

void Control::ShowOrHide() {
    state_.visible = shown_ && (frame_ == nullptr || frame_->Visible());
    Update();
    VisibilityChanged();
}

void Control::PutOnto(Control& control) {
    control.frame_ = this;
    control.ShowOrHide();
}

void Control::SetTabStop(bool stop) {
    state_.tabStop = stop;
    Update();
}

void Control::SetEnabled(bool enabled) {
    state_.enabled = enabled;
    Update();
}

void Control::SetToolTipText(const std::string& text) {
    state_.toolTip = text;
    Update();
}

void Control::SetColors(Color fore, Color back) {
    if (state_.foreColor == fore && state_.backColor == back) return;
    state_.foreColor = fore;
    state_.backColor = back;
    Update();
}

void Control::SetAccessibleName(const std::string& name) {
    state_.accessibleName = name;
    Update();
}

void Control::SetAccessibleValue(const std::string& value) {
    if (state_.accessibleValue == value) return;
    state_.accessibleValue = value;
    Update();
}

void Control::SetFocus() {
    if (peer_) peer_->SetFocus();
}

bool Control::HasFocus() const {
    return peer_ && peer_->HasFocus();
}

void Control::OnClick() noexcept {
    Guarded(Origin::User, [this] { Click(); });
}

void Control::OnDoubleClick() noexcept {
    Guarded(Origin::User, [this] { DblClick(); });
}

void Control::OnMouseDown(const base::MouseEvent& mouse) noexcept {
    Guarded(Origin::User, [&] { MouseDown(mouse); });
}

void Control::OnMouseMove(const base::MouseEvent& mouse) noexcept {
    Guarded(Origin::Program, [&] { MouseMove(mouse); });
}

void Control::OnMouseUp(const base::MouseEvent& mouse) noexcept {
    Guarded(Origin::User, [&] { MouseUp(mouse); });
}

void Control::OnMouseLeave() noexcept {
    Guarded(Origin::Program, [this] { MouseLeave(); });
}

void Control::OnKeyDown(const base::KeyEvent& key) noexcept {
    const bool presses = key.KeyCode == base::kKeyEnter || key.KeyCode == base::kKeySpace;
    const bool button = state_.role == Role::Button || state_.role == Role::PageHeader;
    if (presses && button) {
        OnClick();
    } else {
        Guarded(Origin::User, [&] { KeyDown(key); });
    }
}

void Control::OnTextTyped(const std::string& text) noexcept {
    state_.text = text;
    Guarded(Origin::User, [this] { RaiseChange(); });
}

void Control::OnValueChanged(int value) noexcept {
    state_.value = value;
    Guarded(Origin::User, [this] { RaiseChange(); });
}

void Control::OnFilesDropped(const std::vector<std::string>& paths) noexcept {
    Guarded(Origin::User, [&] { OLEDragDrop(paths); });
}

void Control::OnFocusLost() noexcept {
    Guarded(Origin::Program, [this] { LostFocus(); });
}

}  // namespace nqp::forms
