#include "forms/win32/drawn_control.h"

#include "forms/win32/graphics.h"
#include "forms/win32/winapi/mouse.h"
#include "forms/win32/winapi/text.h"

namespace nqp::forms::win32 {
namespace {

const wchar_t* ClassNameOf(ControlKind kind) {
    switch (kind) {
        case ControlKind::Line:
            return L"nqp.Line";
        case ControlKind::PictureBox:
            return L"nqp.PictureBox";
        default:
            return L"nqp.Label";
    }
}

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

}  // namespace

DrawnControl::DrawnControl(const ControlState& state, ControlEvents& events, Window& window)
    : ControlWindow(state, events, window) {
    const wchar_t* className = ClassNameOf(state.kind);
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.style = CS_DBLCLKS;
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpszClassName = className;
    RegisterClassExW(&windowClass);  // fails, harmlessly, from the second time on
    Create(className, 0);
}

LRESULT CALLBACK DrawnControl::Procedure(HWND hwnd, UINT message, WPARAM wParam,
                                         LPARAM lParam) noexcept {
    auto* control = static_cast<DrawnControl*>(ControlWindow::Of(hwnd));
    if (control == nullptr) return DefWindowProcW(hwnd, message, wParam, lParam);
    return control->Handle(hwnd, message, wParam, lParam);
}

LRESULT DrawnControl::Handle(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (HandleMouse(hwnd, message, wParam, lParam)) return 0;
    switch (message) {
        case WM_NCHITTEST:
            // A line belongs to the face of its window.
            if (State().kind == ControlKind::Line) return HTTRANSPARENT;
            break;
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            Paint(hwnd);
            return 0;
        default:
            break;
    }
    return DefWindowProcW(hwnd, message, wParam, lParam);
}

// The press captures the pointer, so that a drag goes on outside of the control.
bool DrawnControl::HandleMouse(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    const auto mouse = winapi::ReadMouse(message, wParam, lParam, Dpi());
    if (!mouse || Events() == nullptr) return false;
    switch (mouse->action) {
        case winapi::MouseAction::Down:
            SetCapture(hwnd);
            Events()->OnMouseDown(mouse->event);
            if (mouse->doubled && Events() != nullptr) Events()->OnDoubleClick();
            break;
        case winapi::MouseAction::Move:
            Events()->OnMouseMove(mouse->event);
            break;
        case winapi::MouseAction::Up:
            ReleaseAt(hwnd, lParam, mouse->event);
            break;
    }
    return true;
}

void DrawnControl::ReleaseAt(HWND hwnd, LPARAM position, const base::MouseEvent& event) noexcept {
    const bool pressedHere = GetCapture() == hwnd;
    ReleaseCapture();
    Events()->OnMouseUp(event);
    RECT area{};
    GetClientRect(hwnd, &area);
    const POINT pointer{static_cast<short>(LOWORD(position)), static_cast<short>(HIWORD(position))};
    const bool clicked =
        pressedHere && event.Button == base::kLeftButton && PtInRect(&area, pointer) != 0;
    if (clicked && Events() != nullptr) Events()->OnClick();
}

void DrawnControl::Paint(HWND hwnd) {
    const BufferedPaint paint(hwnd);
    paint.Fill(paint.Area(), State().backColor);
    if (State().text.empty()) return;
    RECT area = paint.Area();
    InflateRect(&area, -base::TwipsToPixels(State().indent, Dpi()), 0);
    const HGDIOBJ previous = SelectObject(paint.Canvas(), Font());
    SetBkMode(paint.Canvas(), TRANSPARENT);
    SetTextColor(paint.Canvas(), State().foreColor);
    DrawTextW(
        paint.Canvas(), winapi::Utf16(State().text).c_str(), -1, &area,
        DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS | Alignment(State().align));
    SelectObject(paint.Canvas(), previous);
}

// Tools outside the program read a label by its window text.
void DrawnControl::UpdateKind() {
    SetWindowTextW(Hwnd(), winapi::Utf16(State().text).c_str());
    InvalidateRect(Hwnd(), nullptr, FALSE);
}

}  // namespace nqp::forms::win32
