#include "forms/frame.h"

namespace nqp::forms {

void Frame::Hold(std::initializer_list<Control*> controls) {
    held_.insert(held_.end(), controls);
    for (Control* control : controls)
        PutOnto(*control);
}

void Frame::VisibilityChanged() {
    for (Control* control : held_)
        ShowWithThis(*control);
}

}  // namespace nqp::forms
