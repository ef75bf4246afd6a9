#include "video/play_rate.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "base/geometry.h"
#include "base/text.h"
#include "core/media_engine.h"

namespace nqp::video {
namespace {

constexpr double kStepsPerDoubling = 20.0;
constexpr double kHundredths = 100.0;

}  // namespace

double RateOfStep(int step) {
    const double rate = std::exp2(std::clamp(step, kSlowestStep, kFastestStep) / kStepsPerDoubling);
    return std::round(rate * kHundredths) / kHundredths;
}

int StepOfRate(double rate) {
    const double inRange = std::clamp(rate, core::kSlowestRate, core::kFastestRate);
    return static_cast<int>(std::lround(std::log2(inRange) * kStepsPerDoubling));
}

std::string TextOfRate(double rate) {
    std::array<char, 64> text{};
    const auto result =
        std::to_chars(text.data(), text.data() + text.size(), rate, std::chars_format::fixed, 2);
    return {text.data(), result.ptr};
}

std::optional<double> RateOfText(const std::string& text) {
    std::string number = text;
    std::replace(number.begin(), number.end(), ',', '.');
    const std::optional<float> rate = base::ParseSingle(number);
    if (!rate || *rate <= 0) return std::nullopt;
    const double hundredths = std::round(static_cast<double>(*rate) * kHundredths);
    return std::clamp(hundredths / kHundredths, core::kSlowestRate, core::kFastestRate);
}

}  // namespace nqp::video
