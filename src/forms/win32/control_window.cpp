#include "forms/win32/control_window.h"

#include <oleacc.h>

#include <unordered_map>
#include <utility>

#include "forms/win32/accessible.h"
#include "forms/win32/file_drop.h"
#include "forms/win32/winapi/gdi.h"
#include "forms/win32/window.h"

namespace nqp::forms::win32 {
namespace {

std::unordered_map<HWND, ControlWindow*>& ControlWindows() {
    static std::unordered_map<HWND, ControlWindow*> windows;
    return windows;
}

// Returns the one before. The platform's helper for this keeps a property of the window, which it
// looks up at each message; that was half of the time a face took to paint.
WNDPROC PutProcedure(HWND hwnd, WNDPROC procedure) {
    return reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
}

}  // namespace

ControlWindow::ControlWindow(const ControlState& state, ControlEvents& events, Window& window)
    : state_(state), events_(&events), window_(window) {
    window_.Add(*this);
}

ControlWindow::~ControlWindow() {
    window_.Remove(*this);
    ControlWindows().erase(hwnd_);
    if (state_.takesFiles) EndFileDrop(hwnd_);
    if (hwnd_ == nullptr) return;
    PutProcedure(hwnd_, classProcedure_);
    DestroyWindow(hwnd_);
}

ControlWindow* ControlWindow::Of(HWND hwnd) {
    const auto found = ControlWindows().find(hwnd);
    return found == ControlWindows().end() ? nullptr : found->second;
}

void ControlWindow::Create(const wchar_t* className, DWORD style, DWORD extendedStyle) {
    // In a dialog the arrow keys go round among option buttons, and through nothing else.
    const bool inGroup = state_.kind == ControlKind::OptionButton && !state_.startsGroup;
    if (window_.IsDialog() && !inGroup) style |= WS_GROUP;
    hwnd_ = CreateWindowExW(extendedStyle, className, nullptr, WS_CHILD | WS_CLIPSIBLINGS | style,
                            0, 0, 0, 0, window_.Hwnd(),
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(state_.id)),
                            GetModuleHandleW(nullptr), this);
    ControlWindows()[hwnd_] = this;
    classProcedure_ = PutProcedure(hwnd_, Procedure);
    Update();
    if (!state_.takesFiles) return;
    BeginFileDrop(hwnd_, [this](const std::vector<std::string>& paths) {
        if (events_ != nullptr) events_->OnFilesDropped(paths);
    });
}

int ControlWindow::Dpi() const {
    return window_.Dpi();
}

void ControlWindow::Update() {
    Place();
    UpdateFont();
    if ((IsWindowEnabled(hwnd_) != 0) != state_.enabled) EnableWindow(hwnd_, state_.enabled);
    UpdateKind();
    if (toolTip_ != state_.toolTip) {
        toolTip_ = state_.toolTip;
        window_.SetToolTip(hwnd_, toolTip_);
    }
    UpdateVisibility();
    UpdateAccessibility();
}

RECT ControlWindow::PlaceOnScreen() const {
    return winapi::PixelsOf(state_.bounds, Dpi());
}

// The edges are rounded, not the size, so that neighbours meet at every resolution.
void ControlWindow::Place() {
    const RECT place = PlaceOnScreen();
    if (EqualRect(&place, &place_) != 0) return;
    place_ = place;
    SetWindowPos(hwnd_, nullptr, place.left, place.top, place.right - place.left,
                 place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

// A control that is hidden gives the keys back to its window.
void ControlWindow::UpdateVisibility() {
    const bool shown = (GetWindowLongPtrW(hwnd_, GWL_STYLE) & WS_VISIBLE) != 0;
    if (shown == state_.visible) return;
    if (!state_.visible && HasFocus()) window_.SetFocusTo(window_.Hwnd());
    ShowWindow(hwnd_, state_.visible ? SW_SHOWNA : SW_HIDE);
    if (state_.visible) BecameVisible();
}

void ControlWindow::UpdateAccessibility() {
    if (accessibleName_ != state_.accessibleName) {
        accessibleName_ = state_.accessibleName;
        NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, hwnd_, OBJID_CLIENT, CHILDID_SELF);
    }
}

void ControlWindow::TellValue() {
    if (accessibleValue_ == state_.accessibleValue) return;
    accessibleValue_ = state_.accessibleValue;
    NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, hwnd_, OBJID_CLIENT, CHILDID_SELF);
}

LRESULT CALLBACK ControlWindow::Procedure(HWND hwnd, UINT message, WPARAM wParam,
                                          LPARAM lParam) noexcept {
    ControlWindow* control = Of(hwnd);
    if (control == nullptr) return DefWindowProcW(hwnd, message, wParam, lParam);
    const bool asked = message == WM_GETOBJECT && static_cast<LONG>(lParam) == OBJID_CLIENT;
    if (asked && !control->accessibleName_.empty()) return AccessibleObjectOf(hwnd, wParam);
    if (message == kPress) {
        control->Press();
        return 0;
    }
    if (message == WM_NCDESTROY) {
        // The platform took it away together with its parent.
        ControlWindows().erase(hwnd);
        return CallWindowProcW(control->classProcedure_, std::exchange(control->hwnd_, nullptr),
                               message, wParam, lParam);
    }
    return control->Handle(message, wParam, lParam);
}

LRESULT ControlWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    return DefaultAnswer(message, wParam, lParam);
}

LRESULT ControlWindow::DefaultAnswer(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    return CallWindowProcW(classProcedure_, hwnd_, message, wParam, lParam);
}

void ControlWindow::UpdateFont() {
    if (fontDpi_ == Dpi() && fontBold_ == state_.bold && fontScale_ == state_.fontScale) return;
    fontDpi_ = Dpi();
    fontBold_ = state_.bold;
    fontScale_ = state_.fontScale;
    winapi::GdiObject font = FittingFont();
    SendMessageW(hwnd_, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), FALSE);
    font_ = std::move(font);
}

// A person may have made the system's texts larger than a line of the face is high.
winapi::GdiObject ControlWindow::FittingFont() const {
    winapi::GdiObject font = winapi::MessageFont(fontDpi_, fontBold_, fontScale_);
    const bool oneLine = (state_.kind == ControlKind::Label && !state_.wraps) ||
                         state_.kind == ControlKind::TextBox || state_.flat;
    const int room = static_cast<int>(place_.bottom - place_.top);
    const int height = winapi::HeightOf(static_cast<HFONT>(font.get()));
    // A font's height counts more than its letters need.
    if (!oneLine || room <= 0 || height <= room + room / 4) return font;
    const float shrink = static_cast<float>(room) / static_cast<float>(height);
    return winapi::MessageFont(fontDpi_, fontBold_, fontScale_ * shrink);
}

void ControlWindow::SetFocus() {
    window_.SetFocusTo(hwnd_);
}

bool ControlWindow::HasFocus() const {
    return window_.Focus() == hwnd_;
}

void ControlWindow::Press() {
    const bool usable = state_.visible && state_.enabled && IsWindowEnabled(window_.Hwnd()) != 0;
    if (events_ != nullptr && usable) events_->OnClick();
}

void ControlWindow::Retire() {
    events_ = nullptr;
}

}  // namespace nqp::forms::win32
