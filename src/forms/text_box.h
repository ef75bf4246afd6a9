#pragma once

#include "forms/control.h"

namespace nqp::forms {

// One line of text to edit.
class TextBox final : public Control {
public:
    TextBox(Form& form, const std::string& name, int id, const base::Rect& bounds,
            const std::string& text = {})
        : Control(form, ControlKind::TextBox, name, id, bounds) {
        state_.text = text;
    }

    // Raised when a person edits the text; SetText does not raise it.
    base::Event<> Change;

    const std::string& Text() const { return state_.text; }
    void SetText(const std::string& text) {
        state_.text = text;
        Update();
    }
    void SetAlignment(Align align) { state_.align = align; }
    // The next two are to be called before the form is loaded. What a person types is no more than
    // so many digits; SetText takes any text.
    void TakeDigits(int count) { state_.digits = count; }
    // It can be read and copied, but not edited.
    void MakeReadOnly() { state_.readOnly = true; }

private:
    void RaiseChange() override { Change(); }
};

}  // namespace nqp::forms
