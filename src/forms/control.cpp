#include "forms/control.h"

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
    state_.bounds = bounds;
    Update();
}

void Control::SetVisible(bool visible) {
    state_.visible = visible;
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
    state_.foreColor = fore;
    state_.backColor = back;
    Update();
}

void Control::SetFocus() {
    if (peer_) peer_->SetFocus();
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

void Control::OnTextTyped(const std::string& text) noexcept {
    state_.text = text;
    Guarded(Origin::User, [this] { RaiseChange(); });
}

void Control::OnValueChanged(int value) noexcept {
    state_.value = value;
    Guarded(Origin::User, [this] { RaiseChange(); });
}

void Control::OnFocusLost() noexcept {
    Guarded(Origin::Program, [this] { LostFocus(); });
}

}  // namespace nqp::forms
