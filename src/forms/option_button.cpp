#include "forms/option_button.h"

#include "forms/form.h"

namespace nqp::forms {

void OptionButton::Choose() {
    for (Control* control : Parent().Controls()) {
        if (auto* other = dynamic_cast<OptionButton*>(control)) {
            other->state_.value = other == this ? 1 : 0;
            other->Update();
        }
    }
    Click();
}

}  // namespace nqp::forms
