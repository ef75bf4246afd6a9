#include "forms/win32/control_window.h"

#include <unordered_map>

#include "forms/win32/window.h"

namespace nqp::forms::win32 {
namespace {

std::unordered_map<HWND, ControlWindow*>& ControlWindows() {
    static std::unordered_map<HWND, ControlWindow*> windows;
    return windows;
}

}  // namespace

ControlWindow::ControlWindow(const ControlState& state, ControlEvents& events, Window& window)
    : state_(state), events_(&events), window_(window) {
    window_.Add(*this);
}

ControlWindow::~ControlWindow() {
    window_.Remove(*this);
    ControlWindows().erase(hwnd_);
    DestroyWindow(hwnd_);
}

ControlWindow* ControlWindow::Of(HWND hwnd) {
    const auto found = ControlWindows().find(hwnd);
    return found == ControlWindows().end() ? nullptr : found->second;
}

void ControlWindow::Create(const wchar_t* className, DWORD style, DWORD extendedStyle) {
    hwnd_ = CreateWindowExW(extendedStyle, className, nullptr, WS_CHILD | WS_CLIPSIBLINGS | style,
                            0, 0, 0, 0, window_.Hwnd(),
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(state_.id)),
                            GetModuleHandleW(nullptr), this);
    ControlWindows()[hwnd_] = this;
    Update();
}

int ControlWindow::Dpi() const {
    return window_.Dpi();
}

void ControlWindow::Update() {
    Place();
    UpdateFont();
    EnableWindow(hwnd_, state_.enabled ? TRUE : FALSE);
    UpdateKind();
    if (toolTip_ != state_.toolTip) {
        toolTip_ = state_.toolTip;
        window_.SetToolTip(hwnd_, toolTip_);
    }
    ShowWindow(hwnd_, state_.visible ? SW_SHOWNA : SW_HIDE);
}

// The edges are rounded, not the size, so that neighbours meet at every resolution.
void ControlWindow::Place() {
    const int dpi = Dpi();
    const base::Rect& bounds = state_.bounds;
    const int left = base::TwipsToPixels(bounds.left, dpi);
    const int top = base::TwipsToPixels(bounds.top, dpi);
    const int width = base::TwipsToPixels(bounds.right(), dpi) - left;
    const int height = base::TwipsToPixels(bounds.bottom(), dpi) - top;
    const bool line = state_.kind == ControlKind::Line;
    SetWindowPos(hwnd_, nullptr, left, top, line && width < 1 ? 1 : width,
                 line && height < 1 ? 1 : height, SWP_NOZORDER | SWP_NOACTIVATE);
}

void ControlWindow::UpdateFont() {
    if (fontDpi_ == Dpi() && fontBold_ == state_.bold && fontScale_ == state_.fontScale) return;
    fontDpi_ = Dpi();
    fontBold_ = state_.bold;
    fontScale_ = state_.fontScale;
    winapi::GdiObject font = winapi::MessageFont(fontDpi_, fontBold_, fontScale_);
    SendMessageW(hwnd_, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), FALSE);
    font_ = std::move(font);
}

void ControlWindow::SetFocus() {
    ::SetFocus(hwnd_);
}

void ControlWindow::Retire() {
    events_ = nullptr;
}

}  // namespace nqp::forms::win32
