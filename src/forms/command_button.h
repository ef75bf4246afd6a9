#pragma once

#include "forms/control.h"

namespace nqp::forms {

// A push button; "&" in the caption marks its access key. Enter presses the default one.
class CommandButton final : public Control {
public:
    CommandButton(Form& form, const std::string& name, int id, const base::Rect& bounds,
                  const std::string& caption, bool isDefault = false)
        : Control(form, ControlKind::CommandButton, name, id, bounds) {
        state_.text = caption;
        state_.isDefault = isDefault;
    }

    const std::string& Caption() const { return state_.text; }
    // Drawn in its colours, without the platform's frame.
    void SetFlat(bool flat) { state_.flat = flat; }
};

}  // namespace nqp::forms
