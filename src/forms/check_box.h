#pragma once

#include "forms/control.h"

namespace nqp::forms {

// A box with a caption that a person marks and clears; "&" marks its access key.
class CheckBox final : public Control {
public:
    CheckBox(Form& form, const std::string& name, int id, const base::Rect& bounds,
             const std::string& caption = {})
        : Control(form, ControlKind::CheckBox, name, id, bounds) {
        state_.text = caption;
    }

    const std::string& Caption() const { return state_.text; }
    void SetCaption(const std::string& caption) {
        state_.text = caption;
        Update();
    }
    bool Checked() const { return state_.value != 0; }
    void SetChecked(bool checked) {
        state_.value = checked ? 1 : 0;
        Update();
    }

private:
    void RaiseChange() override { Click(); }
};

}  // namespace nqp::forms
