#pragma once

#include <vector>

namespace nqp::companion {

// Frames a second as a fraction.
struct FrameRate {
    int num = 25;
    int den = 1;

    double Value() const { return static_cast<double>(num) / den; }
    bool operator==(const FrameRate&) const = default;
};

// A rate at which no frame is missed that comes at these times (seconds). The container's own guess
// is taken where it is one; it may be a mean over pauses, or the tick of a clock. Without times,
// the guess, or the usual rate where that is none.
FrameRate ChooseFrameRate(FrameRate guess, std::vector<double> times);

}  // namespace nqp::companion
