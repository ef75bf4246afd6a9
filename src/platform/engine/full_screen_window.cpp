#include "platform/engine/full_screen_window.h"

namespace nqp::platform {

namespace {

constexpr UINT_PTR kPointerTimer = 1;
constexpr UINT kPointerIdleTime = 3000;  // milliseconds

RECT MonitorOf(HWND window) {
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &info);
    return info.rcMonitor;
}

}  // namespace

FullScreenWindow::FullScreenWindow(HWND view, VideoViewClient& client)
    : view_(view), client_(client) {
    const HWND owner = GetAncestor(view, GA_ROOT);
    const RECT monitor = MonitorOf(owner);
    const bool made =
        Create({.className = L"nqp.FullScreen",
                .classStyle = CS_DBLCLKS,
                .style = WS_POPUP | WS_CLIPCHILDREN,
                .extendedStyle = WS_EX_TOPMOST,
                .place = {static_cast<int>(monitor.left), static_cast<int>(monitor.top),
                          static_cast<int>(monitor.right - monitor.left),
                          static_cast<int>(monitor.bottom - monitor.top)},
                .parentOrOwner = owner});
    if (!made) return;
    GetCursorPos(&pointer_);
    ShowWindow(Handle(), SW_SHOW);
    SetForegroundWindow(Handle());
    SetFocus(Handle());
    SetTimer(Handle(), kPointerTimer, kPointerIdleTime, nullptr);
}

FullScreenWindow::~FullScreenWindow() {
    Destroy();
    if (pointerHidden_) ShowPointer();
}

LRESULT FullScreenWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            PaintBlack(Handle());
            return 0;
        case WM_SIZE:
            client_.OnPictureAreaChanged();
            return 0;
        case WM_DISPLAYCHANGE:
            CoverMonitor();
            return 0;
        case WM_ACTIVATEAPP:
            // Another program that is brought forward must not stay hidden behind the picture.
            SetWindowPos(Handle(), wParam == FALSE ? HWND_NOTOPMOST : HWND_TOPMOST, 0, 0, 0, 0,
                         SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
            return 0;
        case WM_TIMER:
            HidePointer();
            return 0;
        case WM_SETCURSOR:
            SetCursor(pointerHidden_ ? nullptr : SystemCursor(IDC_ARROW));
            return TRUE;
        case WM_MOUSEMOVE:
            OnPointerMoved();
            return 0;
        case WM_RBUTTONDOWN:
            client_.OnMouseDown(ToMouseEvent(Handle(), view_, message, wParam, lParam));
            return 0;
        case WM_RBUTTONUP:
            client_.OnMouseUp(ToMouseEvent(Handle(), view_, message, wParam, lParam));
            return 0;
        case WM_CLOSE:
        case WM_LBUTTONDBLCLK:
            client_.OnLeaveFullScreen();
            return 0;
        case WM_KEYDOWN:
        case WM_KEYUP:
            return OnKeyMessage(message, wParam, lParam);
        default:
            return MessageWindow::OnMessage(message, wParam, lParam);
    }
}

LRESULT FullScreenWindow::OnKeyMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (wParam != VK_ESCAPE) {
        PostMessageW(GetAncestor(view_, GA_ROOT), message, wParam, lParam);
    } else if (message == WM_KEYDOWN) {
        client_.OnLeaveFullScreen();
    }
    return 0;
}

void FullScreenWindow::CoverMonitor() {
    const RECT monitor = MonitorOf(Handle());
    SetWindowPos(Handle(), nullptr, monitor.left, monitor.top, monitor.right - monitor.left,
                 monitor.bottom - monitor.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

void FullScreenWindow::OnPointerMoved() {
    POINT now{};
    GetCursorPos(&now);
    // Windows also sends a move when only the windows under the pointer changed.
    if (now.x == pointer_.x && now.y == pointer_.y) return;
    pointer_ = now;
    if (pointerHidden_) ShowPointer();
    pointerHidden_ = false;
    SetTimer(Handle(), kPointerTimer, kPointerIdleTime, nullptr);
}

void FullScreenWindow::HidePointer() {
    KillTimer(Handle(), kPointerTimer);
    pointerHidden_ = true;
    POINT now{};
    GetCursorPos(&now);
    if (WindowFromPoint(now) == Handle()) SetCursor(nullptr);
}

void FullScreenWindow::ShowPointer() const {
    SetCursor(SystemCursor(IDC_ARROW));
}

}  // namespace nqp::platform
