#pragma once

#include <array>

#include "forms/picture_box.h"

namespace nqp::remote {

// Each transport button is two pictures at one place. The highlighted one is shown while the
// pointer is over the button; the focus of the keyboard goes with the picture that is shown.
class HoverHighlight {
public:
    struct Button {
        int number;  // that of the normal picture
        forms::PictureBox& normal;
        forms::PictureBox& highlighted;
    };
    using Buttons = std::array<Button, 4>;

    explicit HoverHighlight(const Buttons& buttons);

    // The number of the button that is highlighted; 0 for none.
    int hover_button() const { return hover_button_; }
    void Show(int number);
    void Reset();
    // The pointer has left a button, which need not be the highlighted one any more.
    void Leave(int number);

private:
    const Button* Highlighted() const;

    Buttons buttons_;
    int hover_button_ = 0;
};

}  // namespace nqp::remote
