#include "forms/win32/winapi/mouse.h"

#include <windowsx.h>

namespace nqp::winapi {
namespace {

int HeldButtons(WPARAM wParam) {
    return ((wParam & MK_LBUTTON) != 0 ? base::kLeftButton : 0) |
           ((wParam & MK_RBUTTON) != 0 ? base::kRightButton : 0) |
           ((wParam & MK_MBUTTON) != 0 ? base::kMiddleButton : 0);
}

// As they were when the message was made; of Alt only the state now is known.
int ShiftKeys(WPARAM wParam) {
    return ((wParam & MK_SHIFT) != 0 ? base::kShiftKey : 0) |
           ((wParam & MK_CONTROL) != 0 ? base::kControlKey : 0) |
           (GetKeyState(VK_MENU) < 0 ? base::kAltKey : 0);
}

int ButtonOf(UINT message) {
    switch (message) {
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
        case WM_LBUTTONUP:
            return base::kLeftButton;
        case WM_RBUTTONDOWN:
        case WM_RBUTTONDBLCLK:
        case WM_RBUTTONUP:
            return base::kRightButton;
        default:
            return base::kMiddleButton;
    }
}

std::optional<MouseAction> ActionOf(UINT message) {
    switch (message) {
        case WM_MOUSEMOVE:
            return MouseAction::Move;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
        case WM_RBUTTONDOWN:
        case WM_RBUTTONDBLCLK:
        case WM_MBUTTONDOWN:
        case WM_MBUTTONDBLCLK:
            return MouseAction::Down;
        case WM_LBUTTONUP:
        case WM_RBUTTONUP:
        case WM_MBUTTONUP:
            return MouseAction::Up;
        default:
            return std::nullopt;
    }
}

}  // namespace

int HeldShiftKeys() {
    const auto held = [](int key) { return GetKeyState(key) < 0; };
    return (held(VK_SHIFT) ? base::kShiftKey : 0) | (held(VK_CONTROL) ? base::kControlKey : 0) |
           (held(VK_MENU) ? base::kAltKey : 0);
}

std::optional<MouseMessage> ReadMouse(UINT message, WPARAM wParam, LPARAM lParam, int dpi) {
    const std::optional<MouseAction> action = ActionOf(message);
    if (!action) return std::nullopt;
    const bool moved = *action == MouseAction::Move;
    const bool doubled =
        message == WM_LBUTTONDBLCLK || message == WM_RBUTTONDBLCLK || message == WM_MBUTTONDBLCLK;
    return MouseMessage{*action,
                        doubled,
                        {moved ? HeldButtons(wParam) : ButtonOf(message), ShiftKeys(wParam),
                         base::PixelsToTwips(GET_X_LPARAM(lParam), dpi),
                         base::PixelsToTwips(GET_Y_LPARAM(lParam), dpi)}};
}

}  // namespace nqp::winapi
