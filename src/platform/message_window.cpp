#include "platform/message_window.h"

#include <exception>
#include <utility>

#include "forms/win32/winapi/gdi.h"

namespace nqp::platform {

PixelSize MessageWindow::ClientSize() const {
    RECT client{};
    GetClientRect(handle_, &client);
    return {static_cast<int>(client.right), static_cast<int>(client.bottom)};
}

int MessageWindow::Dpi() const {
    return static_cast<int>(GetDpiForWindow(handle_));
}

bool MessageWindow::Create(const Description& description) {
    const HINSTANCE module = GetModuleHandleW(nullptr);
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.style = description.classStyle;
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = module;
    windowClass.hIcon = LoadIconW(module, MAKEINTRESOURCEW(winapi::kProgramIcon));
    windowClass.hCursor = SystemCursor(IDC_ARROW);
    windowClass.hbrBackground = description.background;
    windowClass.lpszClassName = description.className;
    RegisterClassExW(&windowClass);  // fails harmlessly from the second window on

    const bool child = (description.style & WS_CHILD) != 0;
    const auto menuOrId = child ? reinterpret_cast<HMENU>(INT_PTR{description.controlId}) : nullptr;
    const PixelRect& place = description.place;
    const HWND made =
        CreateWindowExW(description.extendedStyle, description.className, description.title,
                        description.style, place.left, place.top, place.width, place.height,
                        description.parentOrOwner, menuOrId, module, this);
    return made != nullptr;
}

void MessageWindow::Destroy() {
    const HWND window = std::exchange(handle_, nullptr);
    if (window == nullptr) return;
    SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    DestroyWindow(window);
}

LRESULT CALLBACK MessageWindow::Procedure(HWND window, UINT message, WPARAM wParam,
                                          LPARAM lParam) noexcept {
    if (message == WM_NCCREATE) {
        const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        auto* made = static_cast<MessageWindow*>(creation->lpCreateParams);
        made->handle_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(made));
    }
    auto* self = reinterpret_cast<MessageWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    if (message == WM_NCDESTROY) {
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        self->handle_ = nullptr;
        return DefWindowProcW(window, message, wParam, lParam);
    }
    try {
        return self->OnMessage(message, wParam, lParam);
    } catch (const std::exception& error) {
        OutputDebugStringA(error.what());
    } catch (...) {
        OutputDebugStringW(L"unknown exception in a window procedure");
    }
    return 0;
}

HCURSOR SystemCursor(LPCTSTR name) {
    return LoadCursor(nullptr, name);
}

void PaintBlack(HWND window) {
    PAINTSTRUCT paint{};
    const HDC context = BeginPaint(window, &paint);
    FillRect(context, &paint.rcPaint, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    EndPaint(window, &paint);
}

}  // namespace nqp::platform
