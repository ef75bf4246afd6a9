#pragma once

#include "forms/control.h"

namespace nqp::forms {

// One of several choices, of which one at a time is chosen; "&" marks its access key. The buttons
// of a form are one group.
class OptionButton final : public Control {
public:
    OptionButton(Form& form, const std::string& name, int id, const base::Rect& bounds,
                 const std::string& caption, bool startsGroup = false)
        : Control(form, ControlKind::OptionButton, name, id, bounds) {
        state_.text = caption;
        state_.startsGroup = startsGroup;
    }

    const std::string& Caption() const { return state_.text; }
    bool Chosen() const { return state_.value != 0; }
    // Raises Click, as a person's choice does.
    void Choose();

private:
    void RaiseChange() override { Choose(); }
};

}  // namespace nqp::forms
