#pragma once

#include <optional>
#include <string>

namespace nqp::video {

// The play rate as a person sets it: steps of a slider whose middle is normal speed and whose
// equal distances are equal factors, and a text.
inline constexpr int kSlowestStep = -40;
inline constexpr int kFastestStep = 40;

// Rounded to hundredths, as it is shown.
double RateOfStep(int step);
// The nearest step, within the range.
int StepOfRate(double rate);
// Two decimals ("1.50").
std::string TextOfRate(double rate);
// A number with a point or a comma, clamped to the rates that the engine plays; nothing where the
// text is no positive number.
std::optional<double> RateOfText(const std::string& text);

}  // namespace nqp::video
