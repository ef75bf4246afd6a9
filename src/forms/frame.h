#pragma once

#include <initializer_list>
#include <vector>

#include "forms/control.h"

namespace nqp::forms {

// A page: a coloured area of the face, with the controls on it. They are in sight as long as it is.
class Frame final : public Control {
public:
    Frame(Form& form, const std::string& name, int id, const base::Rect& bounds)
        : Control(form, ControlKind::Frame, name, id, bounds) {}

    void Hold(std::initializer_list<Control*> controls);

private:
    void VisibilityChanged() override;

    std::vector<Control*> held_;
};

}  // namespace nqp::forms
