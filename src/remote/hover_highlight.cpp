#include "remote/hover_highlight.h"

#include <algorithm>

namespace nqp::remote {
namespace {

void Replace(forms::PictureBox& shown, forms::PictureBox& next) {
    const bool focused = shown.HasFocus();
    shown.SetVisible(false);
    next.SetVisible(true);
    if (focused) next.SetFocus();
}

}  // namespace

HoverHighlight::HoverHighlight(const Buttons& buttons) : buttons_(buttons) {
    for (const Button& button : buttons_)
        button.highlighted.SetVisible(false);
}

const HoverHighlight::Button* HoverHighlight::Highlighted() const {
    const auto found = std::find_if(buttons_.begin(), buttons_.end(), [this](const Button& button) {
        return button.number == hover_button_;
    });
    return found == buttons_.end() ? nullptr : &*found;
}

void HoverHighlight::Show(int number) {
    Reset();
    hover_button_ = number;
    if (const Button* button = Highlighted()) Replace(button->normal, button->highlighted);
}

void HoverHighlight::Reset() {
    if (const Button* button = Highlighted()) Replace(button->highlighted, button->normal);
    hover_button_ = 0;
}

void HoverHighlight::Leave(int number) {
    if (hover_button_ == number) Reset();
}

}  // namespace nqp::remote
