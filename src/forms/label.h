#pragma once

#include "forms/control.h"

namespace nqp::forms {

// One line of text, cut with an ellipsis when it is too long.
class Label final : public Control {
public:
    Label(Form& form, const std::string& name, int id, const base::Rect& bounds,
          const std::string& caption = {})
        : Control(form, ControlKind::Label, name, id, bounds) {
        state_.text = caption;
    }

    const std::string& Caption() const { return state_.text; }
    void SetCaption(const std::string& caption) {
        if (state_.text == caption) return;
        state_.text = caption;
        Update();
    }
    void SetAlignment(Align align) {
        state_.align = align;
        Update();
    }
    // Blank space at both ends of the text.
    void SetIndent(base::Twips indent) {
        state_.indent = indent;
        Update();
    }
    // "&" marks the key that goes to the control behind the label.
    void MarkAccessKey() { state_.accessKey = true; }
    // The text goes on in further lines; it begins at the top then.
    void Wrap() { state_.wraps = true; }
    // A label that is pressed to go to a page.
    void MakePageHeader() { state_.role = Role::PageHeader; }
    // Whether its page is the one in sight.
    void SetChosen(bool chosen) {
        if (state_.tabStop == chosen && (state_.value != 0) == chosen) return;
        state_.value = chosen ? 1 : 0;
        state_.tabStop = chosen;
        Update();
    }
    // Weight and size relative to the system's message font.
    void SetFont(bool bold, float scale) {
        state_.bold = bold;
        state_.fontScale = scale;
        Update();
    }
};

}  // namespace nqp::forms
