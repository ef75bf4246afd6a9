#include "cutter/frame_rate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace nqp::companion {
namespace {

// No real clip shows more, but the clocks of some containers are this fine.
constexpr double kMostFramesASecond = 240;
constexpr FrameRate kUsualFrameRate{25, 1};
// Where frames come at no rate at all, more are not made.
constexpr double kMostMade = 120;
// Below it a fragment could not end where it is to end; the rate is multiplied.
constexpr double kFewestFramesASecond = 2;
constexpr double kEnoughFramesASecond = 10;
// Two frames in less than this share of a place would be shown in one.
constexpr double kTooClose = 0.75;
// Containers round times to milliseconds.
constexpr double kRounding = 0.0011;
constexpr int kThousand = 1000;

constexpr std::array<FrameRate, 13> kRates = {{{24000, 1001},
                                               {24, 1},
                                               {25, 1},
                                               {30000, 1001},
                                               {30, 1},
                                               {48, 1},
                                               {50, 1},
                                               {60000, 1001},
                                               {60, 1},
                                               {100, 1},
                                               {120000, 1001},
                                               {120, 1},
                                               {240, 1}}};

bool IsPlausible(const FrameRate& rate) {
    return rate.num > 0 && rate.den > 0 && rate.Value() <= kMostFramesASecond;
}

// The shortest time from one frame to the next, but for a few outliers.
double ShortestStep(std::vector<double> times) {
    std::ranges::sort(times);
    std::vector<double> steps;
    for (std::size_t i = 1; i < times.size(); ++i) {
        const double step = times[i] - times[i - 1];
        if (step * kMostFramesASecond >= kTooClose) steps.push_back(step);
    }
    if (steps.empty()) return 0;
    constexpr std::size_t kOneInFifty = 50;
    const auto place = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / kOneInFifty);
    std::ranges::nth_element(steps, place);
    return *place;
}

// Among those that a rounded step may stand for, the one nearest to it.
FrameRate RateOfStep(double step) {
    const auto distance = [step](const FrameRate& rate) {
        return std::abs(1 / rate.Value() - step);
    };
    const FrameRate nearest = *std::ranges::min_element(kRates, {}, distance);
    if (distance(nearest) <= kRounding) return nearest;
    return {static_cast<int>(std::lround(kThousand / step)), kThousand};
}

FrameRate Enough(const FrameRate& rate) {
    if (rate.Value() >= kFewestFramesASecond) return rate;
    const double times = std::ceil(kEnoughFramesASecond / rate.Value());
    const double most = std::numeric_limits<int>::max();
    if (times * rate.num > most) return kUsualFrameRate;
    return {static_cast<int>(times) * rate.num, rate.den};
}

}  // namespace

FrameRate ChooseFrameRate(FrameRate guess, std::vector<double> times) {
    const double step = ShortestStep(std::move(times));
    const bool plausible = IsPlausible(guess);
    if (step <= 0) return plausible ? Enough(guess) : kUsualFrameRate;
    if (plausible && step * guess.Value() >= kTooClose) return Enough(guess);
    return Enough(RateOfStep(std::max(step, 1 / kMostMade)));
}

}  // namespace nqp::companion
