#include "forms/win32/graphics.h"

#include <cstring>

namespace nqp::forms::win32 {

Canvas::Canvas(SIZE size) : size_(size), dc_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = size.cx;
    info.bmiHeader.biHeight = -size.cy;  // rows from the top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    bitmap_.reset(CreateDIBSection(dc_, &info, DIB_RGB_COLORS, &pixels_, nullptr, 0));
    previous_ = SelectObject(dc_, bitmap_.get());
}

Canvas::Canvas(const base::Bitmap& picture) : Canvas(SIZE{picture.Width(), picture.Height()}) {
    if (pixels_ == nullptr) return;
    std::memcpy(pixels_, picture.Pixels().data(), picture.Pixels().size_bytes());
}

Canvas::~Canvas() {
    SelectObject(dc_, previous_);
    DeleteDC(dc_);
}

void Canvas::CopyTo(HDC target) const {
    BitBlt(target, 0, 0, size_.cx, size_.cy, dc_, 0, 0, SRCCOPY);
}

void Canvas::BlendTo(HDC target) const {
    constexpr BLENDFUNCTION kOver{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    AlphaBlend(target, 0, 0, size_.cx, size_.cy, dc_, 0, 0, size_.cx, size_.cy, kOver);
}

BufferedPaint::BufferedPaint(HWND window) : window_(window) {
    BeginPaint(window_, &paint_);
    GetClientRect(window_, &area_);
    const RECT& part = paint_.rcPaint;
    canvas_.emplace(SIZE{part.right - part.left, part.bottom - part.top});
    SetViewportOrgEx(Target(), -part.left, -part.top, nullptr);
}

BufferedPaint::~BufferedPaint() {
    const RECT& part = paint_.rcPaint;
    BitBlt(paint_.hdc, part.left, part.top, part.right - part.left, part.bottom - part.top,
           Target(), part.left, part.top, SRCCOPY);
    canvas_.reset();
    EndPaint(window_, &paint_);
}

void Fill(HDC target, const RECT& area, Color color) {
    SetDCBrushColor(target, color);
    FillRect(target, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

// A light frame inside of a dark one.
void DrawFocusRing(HDC target, RECT area, int dpi) {
    const int thickness = MulDiv(1, dpi, base::kDesignDpi);
    for (const Color color : {Rgb(0, 0, 0), Rgb(255, 255, 255)}) {
        SetDCBrushColor(target, color);
        for (int ring = 0; ring < thickness; ++ring) {
            FrameRect(target, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
            InflateRect(&area, -1, -1);
        }
    }
}

}  // namespace nqp::forms::win32
