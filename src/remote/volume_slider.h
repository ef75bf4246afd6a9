#pragma once

#include <cstdint>

#include "base/geometry.h"
#include "core/media_engine.h"

namespace nqp::remote {

// A vertical slider: its knob runs from the top end of a line, where it is loudest, to the bottom.
struct VolumeTrack {
    base::Twips top = 0;         // Y of the line's upper end
    base::Twips bottom = 0;      // Y of its lower end
    base::Twips knobHeight = 0;  // the knob stays between the two ends

    // The knob's top edge, moved to the nearer end when it lies outside of the track.
    base::Twips Clamped(base::Twips knobTop) const;
    // What a knob place stands for: 0 at the top, 1 at the bottom. Throws forms::RunTimeError when
    // the track is no longer than the knob.
    double FractionAt(base::Twips knobTop) const;
    // The same in hundredths of a decibel: 0 to -2500.
    std::int32_t VolumeAt(base::Twips knobTop) const;
};

// Gives the engine a volume of the slider; the very bottom is silence.
void ApplyVolume(core::MediaEngine& engine, std::int32_t volume);

}  // namespace nqp::remote
