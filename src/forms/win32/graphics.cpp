#include "forms/win32/graphics.h"

#include <cstring>

namespace nqp::forms::win32 {

Canvas::Canvas(const base::Bitmap& picture)
    : size_{picture.Width(), picture.Height()}, dc_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = picture.Width();
    info.bmiHeader.biHeight = -picture.Height();  // rows from the top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* pixels = nullptr;
    bitmap_.reset(CreateDIBSection(dc_, &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
    if (pixels != nullptr) {
        std::memcpy(pixels, picture.Pixels().data(), picture.Pixels().size_bytes());
    }
    previous_ = SelectObject(dc_, bitmap_.get());
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
    HDC screen = BeginPaint(window_, &paint_);
    GetClientRect(window_, &area_);
    const RECT& part = paint_.rcPaint;
    target_ = CreateCompatibleDC(screen);
    bitmap_.reset(CreateCompatibleBitmap(screen, part.right - part.left, part.bottom - part.top));
    previous_ = SelectObject(target_, bitmap_.get());
    SetViewportOrgEx(target_, -part.left, -part.top, nullptr);
}

BufferedPaint::~BufferedPaint() {
    const RECT& part = paint_.rcPaint;
    BitBlt(paint_.hdc, part.left, part.top, part.right - part.left, part.bottom - part.top, target_,
           part.left, part.top, SRCCOPY);
    SelectObject(target_, previous_);
    DeleteDC(target_);
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
