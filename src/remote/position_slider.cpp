#include "remote/position_slider.h"

#include "forms/run_time_error.h"

namespace nqp::remote {

base::Twips PositionTrack::Clamped(base::Twips knobLeft) const {
    if (knobLeft < boundLeft) return boundLeft;
    if (knobLeft + knobWidth > boundRight) return boundRight - knobWidth;
    return knobLeft;
}

std::int32_t PositionTrack::SecondAt(base::Twips knobLeft, double duration) const {
    if (!HasRoom())
        throw forms::RunTimeError("The position slider has no room to move: division by zero.");
    const double fraction = static_cast<double>(knobLeft - scaleLeft) / static_cast<double>(Room());
    return base::Floor(fraction * duration);
}

base::Twips PositionTrack::LeftAt(double position, double duration) const {
    return static_cast<base::Twips>(position / duration * static_cast<double>(Room())) + scaleLeft;
}

}  // namespace nqp::remote
