#pragma once

#include <windows.h>

#include <optional>
#include <type_traits>

#include "base/bitmap.h"
#include "forms/state.h"
#include "forms/win32/winapi/gdi.h"

namespace nqp::forms::win32 {

// A picture in memory that can be copied or blended onto the screen.
class Canvas {
public:
    explicit Canvas(SIZE size);
    explicit Canvas(const base::Bitmap& picture);
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    ~Canvas();

    SIZE Size() const { return size_; }
    // To draw into it.
    HDC Dc() const { return dc_; }
    // With its upper left corner at the origin of the target.
    void CopyTo(HDC target) const;
    void BlendTo(HDC target) const;

private:
    SIZE size_;
    HDC dc_;
    void* pixels_ = nullptr;
    winapi::GdiObject bitmap_;
    HGDIOBJ previous_;
};

// Draws the part of a window that needs it through a bitmap in memory, so that nothing flickers;
// shows it when it goes. Coordinates are those of the window.
class BufferedPaint {
public:
    explicit BufferedPaint(HWND window);
    ~BufferedPaint();
    BufferedPaint(const BufferedPaint&) = delete;
    BufferedPaint& operator=(const BufferedPaint&) = delete;

    HDC Target() const { return canvas_->Dc(); }
    // The whole window.
    const RECT& Area() const { return area_; }

private:
    HWND window_;
    PAINTSTRUCT paint_{};
    RECT area_{};
    std::optional<Canvas> canvas_;  // as large as the part
};

void Fill(HDC target, const RECT& area, Color color);
// Shows where the keyboard's focus is, on any ground.
void DrawFocusRing(HDC target, RECT area, int dpi);

}  // namespace nqp::forms::win32
