#include "forms/win32/modal_state.h"

namespace nqp::forms::win32 {

ModalState::ModalState(HWND dialog) : dialog_(dialog) {
    EnumThreadWindows(GetCurrentThreadId(), Disable, reinterpret_cast<LPARAM>(this));
}

ModalState::~ModalState() {
    for (const HWND window : disabled_)
        EnableWindow(window, TRUE);  // fails, harmlessly, for one that is gone
}

// Hidden ones too: they may be shown meanwhile.
BOOL CALLBACK ModalState::Disable(HWND window, LPARAM self) noexcept {
    auto* state = reinterpret_cast<ModalState*>(self);
    if (window == state->dialog_ || IsWindowEnabled(window) == 0) return TRUE;
    EnableWindow(window, FALSE);
    state->disabled_.push_back(window);
    return TRUE;
}

}  // namespace nqp::forms::win32
