#pragma once

#include <cstdint>

#include "base/geometry.h"

namespace nqp::remote {

// A horizontal slider. Its knob is kept between the ends of one line and measured against another;
// both are drawn at the same place.
struct PositionTrack {
    base::Twips boundLeft = 0;  // X ends of the line that keeps the knob
    base::Twips boundRight = 0;
    base::Twips scaleLeft = 0;  // X ends of the line that it is measured against
    base::Twips scaleRight = 0;
    base::Twips knobWidth = 0;

    // The knob's left edge, moved to the nearer end when it lies outside of the track.
    base::Twips Clamped(base::Twips knobLeft) const;
    // Whether the track is longer than the knob, so that a place stands for a position.
    bool HasRoom() const { return Room() != 0; }
    // The whole second that a knob place stands for, the fraction of a second dropped. Throws
    // forms::RunTimeError when the track has no room.
    std::int32_t SecondAt(base::Twips knobLeft, double duration) const;
    // The knob's left edge for a position; the duration is not 0.
    base::Twips LeftAt(double position, double duration) const;

private:
    base::Twips Room() const { return scaleRight - scaleLeft - knobWidth; }
};

}  // namespace nqp::remote
