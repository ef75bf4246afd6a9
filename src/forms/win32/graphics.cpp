#include "forms/win32/graphics.h"

namespace nqp::forms::win32 {

BufferedPaint::BufferedPaint(HWND window) : window_(window) {
    HDC screen = BeginPaint(window_, &paint_);
    GetClientRect(window_, &area_);
    canvas_ = CreateCompatibleDC(screen);
    bitmap_.reset(CreateCompatibleBitmap(screen, area_.right, area_.bottom));
    previous_ = SelectObject(canvas_, bitmap_.get());
}

BufferedPaint::~BufferedPaint() {
    BitBlt(paint_.hdc, 0, 0, area_.right, area_.bottom, canvas_, 0, 0, SRCCOPY);
    SelectObject(canvas_, previous_);
    DeleteDC(canvas_);
    EndPaint(window_, &paint_);
}

void BufferedPaint::Fill(const RECT& area, Color color) const {
    SetDCBrushColor(canvas_, color);
    FillRect(canvas_, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

}  // namespace nqp::forms::win32
