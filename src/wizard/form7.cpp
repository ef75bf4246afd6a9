#include "wizard/form7.h"

namespace nqp::wizard {
namespace {

constexpr base::Rect kBounds{0, 0, 3600, 300};  // twips

}  // namespace

Form7::Form7()
    : forms::Form({.name = "Form7",
                   .caption = "processing...",
                   .frame = forms::FrameStyle::Dialog,
                   .bounds = kBounds}) {}

void Form7::Form_Load() {
    SetTopmost(true);
}

}  // namespace nqp::wizard
