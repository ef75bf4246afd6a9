#pragma once

#include <windows.h>

#include <vector>

namespace nqp::forms::win32 {

// As long as it lives, the other windows of this thread take no input.
class ModalState {
public:
    explicit ModalState(HWND dialog);
    ~ModalState();
    // The dialog that takes the input now; null when none is shown.
    static HWND Dialog();

    ModalState(const ModalState&) = delete;
    ModalState& operator=(const ModalState&) = delete;

private:
    static BOOL CALLBACK Disable(HWND window, LPARAM self) noexcept;

    HWND dialog_;
    std::vector<HWND> disabled_;
};

}  // namespace nqp::forms::win32
