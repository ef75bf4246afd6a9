#pragma once

#include "forms/control.h"

namespace nqp::forms {

// Shows one picture, stretched over the whole box and blended where it is not opaque. As long as it
// has none it is a plain box in its colours with a short text, a single letter or sign.
class PictureBox final : public Control {
public:
    PictureBox(Form& form, const std::string& name, int id, const base::Rect& bounds,
               Role role = Role::Image, const std::string& text = {})
        : Control(form, ControlKind::PictureBox, name, id, bounds) {
        state_.role = role;
        state_.text = text;
        state_.align = Align::Center;
    }

    const Picture& ShownPicture() const { return state_.picture; }
    void SetPicture(const Picture& picture) {
        state_.picture = picture;
        Update();
    }
};

}  // namespace nqp::forms
