#pragma once

#include "forms/control.h"

namespace nqp::forms {

class PictureBox final : public Control {
public:
    PictureBox(Form& form, const std::string& name, int id, const base::Rect& bounds)
        : Control(form, ControlKind::PictureBox, name, id, bounds) {}
};

}  // namespace nqp::forms
