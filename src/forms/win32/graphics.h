#pragma once

#include <windows.h>

#include "forms/state.h"
#include "forms/win32/winapi/gdi.h"

namespace nqp::forms::win32 {

// Draws through a bitmap in memory, so that nothing flickers; shows it when it goes.
class BufferedPaint {
public:
    explicit BufferedPaint(HWND window);
    ~BufferedPaint();
    BufferedPaint(const BufferedPaint&) = delete;
    BufferedPaint& operator=(const BufferedPaint&) = delete;

    HDC Canvas() const { return canvas_; }
    const RECT& Area() const { return area_; }
    void Fill(const RECT& area, Color color) const;

private:
    HWND window_;
    PAINTSTRUCT paint_{};
    RECT area_{};
    HDC canvas_;
    winapi::GdiObject bitmap_;
    HGDIOBJ previous_;
};

}  // namespace nqp::forms::win32
