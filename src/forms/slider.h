#pragma once

#include "forms/control.h"

namespace nqp::forms {

// The platform's own horizontal slider, in whole steps.
class Slider final : public Control {
public:
    Slider(Form& form, const std::string& name, int id, const base::Rect& bounds, int minimum,
           int maximum)
        : Control(form, ControlKind::Slider, name, id, bounds) {
        state_.minimum = minimum;
        state_.maximum = maximum;
        state_.value = minimum;
    }

    // Raised when a person moves the slider; SetValue does not raise it.
    base::Event<> Change;

    int Value() const { return state_.value; }
    void SetValue(int value) {
        state_.value = value;
        Update();
    }

private:
    void RaiseChange() override { Change(); }
};

}  // namespace nqp::forms
