#include "forms/win32/screen.h"

#include <windowsx.h>

#include "forms/backend.h"

namespace nqp::forms {
namespace win32 {

base::Rect ScreenRectangle(const RECT& pixels) {
    const int dpi = ScreenDpi();
    const auto twips = [dpi](LONG value) {
        return base::PixelsToTwips(static_cast<int>(value), dpi);
    };
    return {twips(pixels.left), twips(pixels.top), twips(pixels.right - pixels.left),
            twips(pixels.bottom - pixels.top)};
}

int ScreenDpi() {
    return static_cast<int>(GetDpiForSystem());
}

}  // namespace win32

base::Size ScreenSize() {
    const int dpi = win32::ScreenDpi();
    return {base::PixelsToTwips(GetSystemMetrics(SM_CXSCREEN), dpi),
            base::PixelsToTwips(GetSystemMetrics(SM_CYSCREEN), dpi)};
}

base::Rect VirtualScreen() {
    RECT screen{};
    screen.left = GetSystemMetrics(SM_XVIRTUALSCREEN);
    screen.top = GetSystemMetrics(SM_YVIRTUALSCREEN);
    screen.right = screen.left + GetSystemMetrics(SM_CXVIRTUALSCREEN);
    screen.bottom = screen.top + GetSystemMetrics(SM_CYVIRTUALSCREEN);
    return win32::ScreenRectangle(screen);
}

base::Rect WorkAreaAt(const base::Point& point) {
    const int dpi = win32::ScreenDpi();
    const POINT pixel{base::TwipsToPixels(point.x, dpi), base::TwipsToPixels(point.y, dpi)};
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromPoint(pixel, MONITOR_DEFAULTTONEAREST), &monitor);
    return win32::ScreenRectangle(monitor.rcWork);
}

base::Point PointerOnScreen() {
    const int dpi = win32::ScreenDpi();
    const DWORD position = GetMessagePos();
    return {base::PixelsToTwips(GET_X_LPARAM(position), dpi),
            base::PixelsToTwips(GET_Y_LPARAM(position), dpi)};
}

}  // namespace nqp::forms
