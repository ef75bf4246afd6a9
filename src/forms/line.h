#pragma once

#include "forms/control.h"

namespace nqp::forms {

// A horizontal or vertical line between two points; it is at least one pixel wide.
class Line final : public Control {
public:
    Line(Form& form, const std::string& name, int id, base::Point start, base::Point end)
        : Control(form, ControlKind::Line, name, id,
                  {start.x, start.y, end.x - start.x, end.y - start.y}) {}

    base::Twips X1() const { return Left(); }
    base::Twips Y1() const { return Top(); }
    base::Twips X2() const { return Left() + Width(); }
    base::Twips Y2() const { return Top() + Height(); }
    void SetBorderColor(Color color) { SetColors(color, color); }
};

}  // namespace nqp::forms
