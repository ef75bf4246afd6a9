#pragma once

#include "forms/control.h"

namespace nqp::forms {

// A horizontal or vertical line between two points, 15 twips thick to the right or downwards. It is
// drawn on the face of its window, below every other control.
class Line final : public Control {
public:
    static constexpr base::Twips kThickness = 15;

    Line(Form& form, const std::string& name, base::Point start, base::Point end)
        : Control(form, ControlKind::Line, name, 0,
                  {start.x, start.y, end.x - start.x, end.y - start.y}) {}

    base::Twips X1() const { return Left(); }
    base::Twips Y1() const { return Top(); }
    base::Twips X2() const { return Left() + Width(); }
    base::Twips Y2() const { return Top() + Height(); }
    void SetEnds(base::Point start, base::Point end) {
        Move({start.x, start.y, end.x - start.x, end.y - start.y});
    }
    Color BorderColor() const { return ForeColor(); }
    void SetBorderColor(Color color) { SetColors(color, color); }
};

}  // namespace nqp::forms
