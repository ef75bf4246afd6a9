#include <stdexcept>
#include <utility>

#include "headless/headless.h"
#include "window_driver.h"

namespace nqp::test {
namespace {

headless::Control& PeerOf(const forms::Control& control) {
    for (headless::Control* peer : headless::Controls()) {
        if (&peer->state == &control.State() && peer->events != nullptr) return *peer;
    }
    throw std::logic_error("the control " + control.Name() + " is not on the screen");
}

headless::Window& PeerOf(const forms::Form& form) {
    if (form.Handle() == nullptr) throw std::logic_error("the window is not loaded");
    return *static_cast<headless::Window*>(form.Handle());
}

void Press(headless::Control& peer) {
    switch (peer.state.kind) {
        case forms::ControlKind::CheckBox:
            return peer.events->OnValueChanged(1 - peer.state.value);
        case forms::ControlKind::OptionButton:
            return peer.events->OnValueChanged(1);
        default:
            return peer.events->OnClick();
    }
}

}  // namespace

void ClickOn(forms::Control& control) {
    headless::Control& peer = PeerOf(control);
    if (!peer.state.visible || !peer.state.enabled) return;
    headless::MakeActive(&peer.window, true);
    peer.events->OnMouseDown({.Button = base::kLeftButton});
    if (peer.events != nullptr) peer.events->OnMouseUp({.Button = base::kLeftButton});
    if (peer.events != nullptr) Press(peer);
    RunMessages();
}

void MovePointerOver(forms::Control& control, base::Twips x, base::Twips y) {
    PeerOf(control).events->OnMouseMove({.X = x, .Y = y});
}

void MovePointerOver(forms::Form& form, base::Twips x, base::Twips y) {
    PeerOf(form).events->OnMouseMove({.X = x, .Y = y});
}

void PressOn(forms::Form& form, int button, base::Twips x, base::Twips y) {
    PeerOf(form).events->OnMouseDown({.Button = button, .X = x, .Y = y});
    RunMessages();
}

void PressOn(forms::Control& control, int button, base::Twips x, base::Twips y) {
    PeerOf(control).events->OnMouseDown({.Button = button, .X = x, .Y = y});
    RunMessages();
}

void MoveHolding(forms::Control& control, int button, base::Twips x, base::Twips y) {
    PeerOf(control).events->OnMouseMove({.Button = button, .X = x, .Y = y});
}

void ReleaseOn(forms::Control& control, int button, base::Twips x, base::Twips y) {
    PeerOf(control).events->OnMouseUp({.Button = button, .X = x, .Y = y});
    RunMessages();
}

void RightClickOn(forms::Control& control, base::Twips x, base::Twips y) {
    PressOn(control, base::kRightButton, x, y);
    ReleaseOn(control, base::kRightButton, x, y);
}

void DropFiles(forms::Form& form, const std::vector<std::string>& paths) {
    PeerOf(form).events->OnFilesDropped(paths);
}

void DropFiles(forms::Control& control, const std::vector<std::string>& paths) {
    PeerOf(control).events->OnFilesDropped(paths);
}

void MovePointerOff(forms::Control& control) {
    PeerOf(control).events->OnMouseLeave();
}

void PressKeyIn(forms::Control& control, int keyCode, int shift) {
    headless::Control& peer = PeerOf(control);
    peer.SetFocus();
    const base::KeyEvent key{keyCode, shift};
    if (!peer.window.events->OnKeyDown(key) && peer.events != nullptr) peer.events->OnKeyDown(key);
    RunMessages();
}

void PressKey(forms::Form& form, int keyCode, int shift) {
    PeerOf(form).events->OnKeyDown({keyCode, shift});
    RunMessages();
}

void TypeInto(forms::TextBox& field, const std::string& text) {
    PeerOf(field).text = text;
    PeerOf(field).events->OnTextTyped(text);
}

void ChooseItem(forms::ComboBox& combo, int index) {
    PeerOf(combo).events->OnValueChanged(index);
}

void ChooseLine(forms::ListBox& list, int line) {
    list.Select(line);
}

void LeaveField(forms::TextBox& field) {
    PeerOf(field).events->OnFocusLost();
}

void DragSlider(forms::Slider& slider, int value) {
    PeerOf(slider).events->OnValueChanged(value);
}

void CloseBySystem(forms::Form& form) {
    PeerOf(form).events->OnCloseRequested();
    RunMessages();
}

void GoTo(forms::Form& form) {
    headless::MakeActive(&PeerOf(form), true);
    RunMessages();
}

void GoToAnotherProgram() {
    headless::MakeActive(nullptr, true);
    RunMessages();
}

void ReportFromTrayIcon(forms::Form& form, int messageNumber) {
    const base::Twips perPixel = form.TwipsPerPixel();
    PeerOf(form).events->OnMouseMove({.X = static_cast<base::Twips>(messageNumber) * perPixel});
    RunMessages();
}

void OnNextDrag(forms::Form& form, std::function<base::Rect(forms::HitCode)> drag) {
    PeerOf(form).nextDrag = std::move(drag);
}

void ChooseInNextMenu(forms::Form& form, const forms::Menu&, const forms::MenuItem& item) {
    PeerOf(form).nextMenuChoice = item.Name();
}

void OnNextModal(std::function<void()> act) {
    headless::OnNextModal(std::move(act));
}

void CancelNextMenu(forms::Form& form) {
    PeerOf(form).nextMenuChoice.clear();
}

bool OnScreen(const forms::Form& form) {
    return form.Handle() != nullptr && PeerOf(form).visible;
}

bool Topmost(const forms::Form& form) {
    return PeerOf(form).topmost;
}

bool Active(const forms::Form& form) {
    return form.Handle() != nullptr && headless::ActiveWindow() == &PeerOf(form);
}

bool ShownOn(const forms::Control& control) {
    return PeerOf(control).visible;
}

std::string TextOn(const forms::Control& control) {
    return PeerOf(control).text;
}

forms::Pointer PointerOf(const forms::Form& form) {
    return PeerOf(form).pointer;
}

void RunMessages() {
    headless::RunPostedTasks();
}

bool WaitUntil(const std::function<bool()>& condition) {
    constexpr int kTicks = 100;
    for (int tick = 0; tick < kTicks && !condition(); ++tick) {
        headless::TickTimers();
        RunMessages();
    }
    return condition();
}

}  // namespace nqp::test
