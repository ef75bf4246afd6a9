#include "platform/engine/dialog_window.h"

#include <algorithm>

#include "base/geometry.h"

namespace nqp::platform {

namespace {

constexpr DWORD kDialogStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
constexpr DWORD kDialogExtendedStyle = WS_EX_TOPMOST | WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;

}  // namespace

DialogWindow::~DialogWindow() {
    Destroy();
}

void DialogWindow::BringToFront() const {
    ShowWindow(Handle(), SW_SHOW);
    SetForegroundWindow(Handle());
}

bool DialogWindow::CreateDialogWindow(const wchar_t* className, const wchar_t* title, HWND owner,
                                      PixelSize designSize) {
    const bool made = Create({.className = className,
                              .title = title,
                              .background = GetSysColorBrush(COLOR_3DFACE),
                              .style = kDialogStyle,
                              .extendedStyle = kDialogExtendedStyle,
                              .place = {},
                              .parentOrOwner = owner});
    if (!made) return false;
    const PixelRect place = CentredOver(owner, designSize);
    SetWindowPos(Handle(), nullptr, place.left, place.top, place.width, place.height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    font_ = winapi::MessageFont(Dpi(), false, 1.0F);
    return true;
}

HWND DialogWindow::AddControl(const wchar_t* className, const wchar_t* text, DWORD style, int id,
                              const PixelRect& designPlace) {
    const HWND control = CreateWindowExW(
        0, className, text, style | WS_CHILD | WS_VISIBLE, Scaled(designPlace.left),
        Scaled(designPlace.top), Scaled(designPlace.width), Scaled(designPlace.height), Handle(),
        reinterpret_cast<HMENU>(INT_PTR{id}), GetModuleHandleW(nullptr), nullptr);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), TRUE);
    controls_.push_back({control, designPlace});
    return control;
}

LRESULT DialogWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            if (LOWORD(wParam) == IDCANCEL) {
                DestroyWindow(Handle());
            } else {
                OnCommand(LOWORD(wParam), HIWORD(wParam));
            }
            return 0;
        case WM_TIMER:
            OnTimer();
            return 0;
        case WM_DPICHANGED: {
            const auto* place = reinterpret_cast<const RECT*>(lParam);
            SetWindowPos(Handle(), nullptr, place->left, place->top, place->right - place->left,
                         place->bottom - place->top, SWP_NOZORDER | SWP_NOACTIVATE);
            ApplyResolution();
            return 0;
        }
        case WM_DESTROY:
            return 0;
        default:
            return MessageWindow::OnMessage(message, wParam, lParam);
    }
}

int DialogWindow::Scaled(int designPixels) const {
    return MulDiv(designPixels, Dpi(), base::kDesignDpi);
}

PixelRect DialogWindow::CentredOver(HWND owner, PixelSize designSize) const {
    RECT frame{0, 0, Scaled(designSize.width), Scaled(designSize.height)};
    AdjustWindowRectExForDpi(&frame, kDialogStyle, FALSE, kDialogExtendedStyle,
                             static_cast<UINT>(Dpi()));
    const int width = static_cast<int>(frame.right - frame.left);
    const int height = static_cast<int>(frame.bottom - frame.top);
    MONITORINFO monitor{};
    monitor.cbSize = sizeof(monitor);
    GetMonitorInfoW(MonitorFromWindow(owner, MONITOR_DEFAULTTONEAREST), &monitor);
    RECT around = monitor.rcWork;
    if (IsWindowVisible(owner)) GetWindowRect(owner, &around);
    const auto between = [](LONG value, LONG low, LONG high) {
        return static_cast<int>(std::max(low, std::min(value, high)));
    };
    const RECT& work = monitor.rcWork;
    return {between((around.left + around.right - width) / 2, work.left, work.right - width),
            between((around.top + around.bottom - height) / 2, work.top, work.bottom - height),
            width, height};
}

void DialogWindow::ApplyResolution() {
    font_ = winapi::MessageFont(Dpi(), false, 1.0F);
    for (const Control& control : controls_) {
        const PixelRect& place = control.designPlace;
        SetWindowPos(control.window, nullptr, Scaled(place.left), Scaled(place.top),
                     Scaled(place.width), Scaled(place.height), SWP_NOZORDER | SWP_NOACTIVATE);
        SendMessageW(control.window, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), TRUE);
    }
}

void UpdateText(HWND control, const std::wstring& text) {
    std::wstring shown(static_cast<std::size_t>(GetWindowTextLengthW(control)) + 1, L'\0');
    const int length = GetWindowTextW(control, shown.data(), static_cast<int>(shown.size()));
    shown.resize(static_cast<std::size_t>(length));
    if (shown != text) SetWindowTextW(control, text.c_str());
}

}  // namespace nqp::platform
