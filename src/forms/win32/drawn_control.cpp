#include "forms/win32/drawn_control.h"

#include <utility>

#include "base/resample.h"
#include "forms/run_time_error.h"
#include "forms/win32/winapi/mouse.h"
#include "forms/win32/winapi/text.h"
#include "forms/win32/window.h"

namespace nqp::forms::win32 {
namespace {

UINT Alignment(Align align) {
    switch (align) {
        case Align::Center:
            return DT_CENTER;
        case Align::Right:
            return DT_RIGHT;
        default:
            return DT_LEFT;
    }
}

// Of a key that is held down.
bool IsRepeated(LPARAM keyDown) {
    constexpr LPARAM kWasDown = LPARAM{1} << 30;
    return (keyDown & kWasDown) != 0;
}

}  // namespace

DrawnControl::DrawnControl(const ControlState& state, ControlEvents& events, Window& window)
    : ControlWindow(state, events, window) {
    const wchar_t* className =
        state.kind == ControlKind::PictureBox ? L"nqp.PictureBox" : L"nqp.Label";
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.style = CS_DBLCLKS;
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpszClassName = className;
    RegisterClassExW(&windowClass);  // fails, harmlessly, from the second time on
    Create(className, 0);
}

bool DrawnControl::TakesKeys() const {
    return State().role == Role::Button || State().role == Role::Slider ||
           State().role == Role::PageHeader;
}

LRESULT DrawnControl::Handle(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    const HWND hwnd = Hwnd();
    if (HandleMouse(hwnd, message, wParam, lParam)) return 0;
    switch (message) {
        case WM_MOUSELEAVE:
            watching_ = false;
            LeaveOrStay();
            return 0;
        case WM_SHOWWINDOW:
            watching_ = false;
            break;
        case WM_CAPTURECHANGED:
            LoseCapture(reinterpret_cast<HWND>(lParam));
            return 0;
        case WM_GETDLGCODE:
            return WantedKeys(lParam);
        case WM_UPDATEUISTATE:
            InvalidateRect(hwnd, nullptr, FALSE);
            break;
        case BM_CLICK:  // the access key
            Press();
            return 0;
        case WM_KEYDOWN:
            if (Events() == nullptr || (IsRepeated(lParam) && State().role == Role::Button)) break;
            Events()->OnKeyDown({static_cast<int>(wParam), winapi::HeldShiftKeys()});
            TellValue();
            return 0;
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            focused_ = message == WM_SETFOCUS;
            InvalidateRect(hwnd, nullptr, FALSE);
            break;
        case WM_SIZE:
        case WM_MOVE:  // the face behind it is another one now
            InvalidateRect(hwnd, nullptr, FALSE);
            break;
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            Paint(hwnd);
            return 0;
        default:
            break;
    }
    return DefaultAnswer(message, wParam, lParam);
}

// Without this the keys would move the focus, or press a dialog's default button.
LRESULT DrawnControl::WantedKeys(LPARAM lParam) const {
    const auto* message = reinterpret_cast<const MSG*>(lParam);
    const bool pressing = message != nullptr && message->message == WM_KEYDOWN &&
                          (message->wParam == VK_RETURN || message->wParam == VK_SPACE);
    if (State().role == Role::Slider) return DLGC_WANTARROWS;
    // Enter is the dialog's: the page is in sight already.
    if (State().role == Role::PageHeader) return DLGC_WANTARROWS | DLGC_BUTTON;
    if (TakesKeys()) return pressing ? DLGC_WANTMESSAGE : DLGC_BUTTON;
    return DLGC_STATIC;
}

// The press captures the pointer, so that a drag goes on outside of the control.
bool DrawnControl::HandleMouse(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    const auto mouse = winapi::ReadMouse(message, wParam, lParam, Dpi());
    if (!mouse || Events() == nullptr) return false;
    switch (mouse->action) {
        case winapi::MouseAction::Down:
            SetCapture(hwnd);
            held_ = mouse->event;
            Events()->OnMouseDown(mouse->event);
            if (mouse->doubled && Events() != nullptr) Events()->OnDoubleClick();
            break;
        case winapi::MouseAction::Move:
            WatchForLeave(hwnd);
            Events()->OnMouseMove(mouse->event);
            if (held_) TellValue();
            break;
        case winapi::MouseAction::Up:
            ReleaseAt(hwnd, lParam, mouse->event);
            break;
    }
    return true;
}

void DrawnControl::WatchForLeave(HWND hwnd) {
    if (watching_) return;
    TRACKMOUSEEVENT track{sizeof track, TME_LEAVE, hwnd, 0};
    watching_ = TrackMouseEvent(&track) != 0;
}

// The word of a leave may be so late that the pointer is back.
void DrawnControl::LeaveOrStay() noexcept {
    if (PointerIsOver()) {
        WatchForLeave(Hwnd());
    } else if (Events() != nullptr) {
        Events()->OnMouseLeave();
    }
}

bool DrawnControl::PointerIsOver() const {
    POINT pointer{};
    return GetCursorPos(&pointer) != 0 && WindowFromPoint(pointer) == Hwnd();
}

// A control that appears under the pointer need not get a move before the pointer leaves it. What
// it took the place of is hidden by then.
void DrawnControl::BecameVisible() {
    if (PointerIsOver()) WatchForLeave(Hwnd());
}

void DrawnControl::ReleaseAt(HWND hwnd, LPARAM position, const base::MouseEvent& event) noexcept {
    const bool pressedHere = GetCapture() == hwnd;
    held_.reset();
    ReleaseCapture();
    Events()->OnMouseUp(event);
    RECT area{};
    GetClientRect(hwnd, &area);
    const POINT pointer{static_cast<short>(LOWORD(position)), static_cast<short>(HIWORD(position))};
    const bool clicked =
        pressedHere && event.Button == base::kLeftButton && PtInRect(&area, pointer) != 0;
    if (clicked && Events() != nullptr) Events()->OnClick();
}

// Another window took the pointer while the button was down: nothing is held any more.
void DrawnControl::LoseCapture(HWND to) noexcept {
    const auto held = std::exchange(held_, std::nullopt);
    if (held && to != Hwnd() && Events() != nullptr) Events()->OnMouseUp(*held);
}

void DrawnControl::Paint(HWND hwnd) {
    Guarded(Origin::Program, [&] {
        const BufferedPaint paint(hwnd);
        if (State().picture != nullptr) {
            DrawPicture(paint.Target(), paint.Area());
        } else {
            Fill(paint.Target(), paint.Area(), State().backColor);
            DrawCaption(paint.Target(), paint.Area());
        }
        if (focused_) DrawFocusRing(paint.Target(), paint.Area(), Dpi());
    });
}

void DrawnControl::DrawPicture(HDC target, const RECT& area) {
    const bool fits = scaled_ != nullptr && scaledFrom_ == State().picture &&
                      scaled_->Size().cx == area.right && scaled_->Size().cy == area.bottom;
    if (!fits) {
        scaledFrom_ = State().picture;
        opaque_ = scaledFrom_->Opaque();
        scaled_ = std::make_unique<Canvas>(base::Resample(
            *scaledFrom_, static_cast<int>(area.right), static_cast<int>(area.bottom)));
    }
    if (!opaque_) {
        const RECT place = winapi::PixelsOf(State().bounds, Dpi());
        OffsetViewportOrgEx(target, -place.left, -place.top, nullptr);
        Parent().DrawFace(target);
        OffsetViewportOrgEx(target, place.left, place.top, nullptr);
        scaled_->BlendTo(target);
    } else {
        scaled_->CopyTo(target);
    }
}

void DrawnControl::DrawCaption(HDC target, RECT area) {
    if (State().text.empty()) return;
    InflateRect(&area, -base::TwipsToPixels(State().indent, Dpi()), 0);
    const HGDIOBJ previous = SelectObject(target, Font());
    SetBkMode(target, TRANSPARENT);
    SetTextColor(target, State().foreColor);
    const UINT lines = State().wraps ? DT_WORDBREAK : DT_SINGLELINE | DT_VCENTER;
    DrawTextW(target, winapi::Utf16(State().text).c_str(), -1, &area,
              lines | DT_END_ELLIPSIS | AccessKeyFormat() | Alignment(State().align));
    SelectObject(target, previous);
}

// The platform underlines access keys for those who use them.
UINT DrawnControl::AccessKeyFormat() const {
    if (!State().accessKey) return DT_NOPREFIX;
    const bool hidden = (SendMessageW(Hwnd(), WM_QUERYUISTATE, 0, 0) & UISF_HIDEACCEL) != 0;
    return hidden ? DT_HIDEPREFIX : 0;
}

// Tools outside the program read a label by its window text.
void DrawnControl::UpdateKind() {
    if (shownText_ != State().text) {
        shownText_ = State().text;
        SetWindowTextW(Hwnd(), winapi::Utf16(shownText_).c_str());
    }
    const LONG_PTR style = GetWindowLongPtrW(Hwnd(), GWL_STYLE);
    const LONG_PTR stop = TakesKeys() && State().tabStop ? LONG_PTR{WS_TABSTOP} : 0;
    if ((style & WS_TABSTOP) != stop) SetWindowLongPtrW(Hwnd(), GWL_STYLE, style ^ WS_TABSTOP);
    InvalidateRect(Hwnd(), nullptr, FALSE);
}

}  // namespace nqp::forms::win32
