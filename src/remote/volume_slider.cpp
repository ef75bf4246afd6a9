#include "remote/volume_slider.h"

#include <algorithm>

#include "forms/run_time_error.h"

namespace nqp::remote {
namespace {

constexpr std::int32_t kBottomVolume = -2500;  // hundredths of a decibel

}  // namespace

base::Twips VolumeTrack::Clamped(base::Twips knobTop) const {
    return std::max(top, std::min(knobTop, bottom - knobHeight));
}

double VolumeTrack::FractionAt(base::Twips knobTop) const {
    const base::Twips way = bottom - top - knobHeight;
    if (way == 0) throw forms::RunTimeError("The volume slider has no room: division by zero.");
    return static_cast<double>(knobTop - top) / static_cast<double>(way);
}

std::int32_t VolumeTrack::VolumeAt(base::Twips knobTop) const {
    return base::Floor(FractionAt(knobTop) * kBottomVolume);
}

void ApplyVolume(core::MediaEngine& engine, std::int32_t volume) {
    engine.SetVolume(volume);
    if (engine.Volume() == kBottomVolume) engine.SetVolume(core::kSilent);
}

}  // namespace nqp::remote
