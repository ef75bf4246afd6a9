#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

#include "forms/state.h"

namespace nqp::forms::win32 {

struct GdiDeleter {
    using pointer = HGDIOBJ;
    void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
using GdiObject = std::unique_ptr<std::remove_pointer_t<HGDIOBJ>, GdiDeleter>;

// The system's message font at a resolution.
GdiObject MessageFont(int dpi, bool bold, float scale);

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
    GdiObject bitmap_;
    HGDIOBJ previous_;
};

}  // namespace nqp::forms::win32
