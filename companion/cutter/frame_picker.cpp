#include "cutter/frame_picker.h"

#include <algorithm>
#include <cmath>

namespace nqp::companion {
namespace {

constexpr std::int64_t kAll = 100;  // percent
// A place that begins this close before the end is not shown; seconds, as containers round them.
constexpr double kTooLittle = 0.0005;

}  // namespace

std::int64_t FramePicker::PlaceOf(double time) const {
    return std::llround((time - origin_) * rate_);
}

// Place p is kept as frame k when p is the whole part of k * 100 / percentage.
std::int64_t FramePicker::AdvanceTo(std::int64_t place) {
    if (place <= place_) return 0;
    place_ = place;
    const std::int64_t kept = (place * percentage_ + kAll - 1) / kAll;
    const std::int64_t count = kept - written_;
    written_ = kept;
    return count;
}

std::int64_t FramePicker::Next(double time) {
    return AdvanceTo(PlaceOf(time));
}

std::int64_t FramePicker::Finish(double end) {
    const auto places = static_cast<std::int64_t>(std::ceil((end - origin_ - kTooLittle) * rate_));
    return AdvanceTo(std::max<std::int64_t>(places, written_ == 0 ? place_ + 1 : 0));
}

}  // namespace nqp::companion
