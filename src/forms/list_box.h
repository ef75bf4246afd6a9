#pragma once

#include "forms/control.h"

namespace nqp::forms {

// A list of lines of text.
class ListBox final : public Control {
public:
    ListBox(Form& form, const std::string& name, int id, const base::Rect& bounds)
        : Control(form, ControlKind::ListBox, name, id, bounds) {}
};

}  // namespace nqp::forms
