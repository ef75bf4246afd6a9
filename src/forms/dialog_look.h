#pragma once

#include "base/geometry.h"
#include "forms/state.h"

// What the dialogs have in common. Twips.
namespace nqp::forms::look {

inline constexpr forms::Color kPaper = forms::Rgb(247, 248, 250);
inline constexpr forms::Color kInk = forms::Rgb(28, 28, 32);
inline constexpr forms::Color kFaintInk = forms::Rgb(84, 87, 96);
inline constexpr forms::Color kWarningInk = forms::Rgb(168, 40, 16);

inline constexpr base::Twips kButtonHeight = 390;
inline constexpr base::Twips kButtonGap = 150;

}  // namespace nqp::forms::look
