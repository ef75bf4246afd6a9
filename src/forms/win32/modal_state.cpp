#include "forms/win32/modal_state.h"

#include "forms/win32/window.h"

namespace nqp::forms::win32 {
namespace {

std::vector<HWND>& Dialogs() {
    static std::vector<HWND> dialogs;
    return dialogs;
}

}  // namespace

ModalState::ModalState(HWND dialog) : dialog_(dialog) {
    Dialogs().push_back(dialog);
    EnumThreadWindows(GetCurrentThreadId(), Disable, reinterpret_cast<LPARAM>(this));
}

ModalState::~ModalState() {
    for (const HWND window : disabled_)
        EnableWindow(window, TRUE);  // fails, harmlessly, for one that is gone
    std::erase(Dialogs(), dialog_);
}

HWND ModalState::Dialog() {
    return Dialogs().empty() ? nullptr : Dialogs().back();
}

// Forms that are hidden too: they may be shown meanwhile. Other hidden windows are the lists and
// tool tips of the dialog itself.
BOOL CALLBACK ModalState::Disable(HWND window, LPARAM self) noexcept {
    auto* state = reinterpret_cast<ModalState*>(self);
    const bool ofTheProgram = Window::Of(window) != nullptr || IsWindowVisible(window) != 0;
    if (window == state->dialog_ || !ofTheProgram || IsWindowEnabled(window) == 0) return TRUE;
    EnableWindow(window, FALSE);
    state->disabled_.push_back(window);
    return TRUE;
}

}  // namespace nqp::forms::win32
