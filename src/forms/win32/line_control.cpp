#include "forms/win32/line_control.h"

#include "forms/line.h"
#include "forms/win32/graphics.h"
#include "forms/win32/winapi/gdi.h"
#include "forms/win32/window.h"

namespace nqp::forms::win32 {

LineControl::LineControl(const ControlState& state, Window& window)
    : state_(state), window_(window) {
    window_.Add(*this);
}

LineControl::~LineControl() {
    window_.Remove(*this);
}

void LineControl::Draw(HDC target, int dpi) const {
    if (!state_.visible) return;
    base::Rect area = state_.bounds;
    if (area.width < Line::kThickness) area.width = Line::kThickness;
    if (area.height < Line::kThickness) area.height = Line::kThickness;
    Fill(target, winapi::PixelsOf(area, dpi), state_.foreColor);
}

void LineControl::Update() {
    window_.FaceChanged();
}

}  // namespace nqp::forms::win32
