#include "remote/volume_slider.h"

#include <algorithm>

namespace nqp::remote {
namespace {

constexpr std::int32_t kBottomVolume = -2500;  // hundredths of a decibel

}  // namespace

base::Twips VolumeTrack::Clamped(base::Twips knobTop) const {
    return std::max(top, std::min(knobTop, bottom - knobHeight));
}

std::int32_t VolumeTrack::VolumeAt(base::Twips knobTop) const {
    const base::Twips way = bottom - top - knobHeight;
    const double fraction = static_cast<double>(knobTop - top) / static_cast<double>(way);
    return base::Floor(fraction * kBottomVolume);
}

void ApplyVolume(core::MediaEngine& engine, std::int32_t volume) {
    engine.SetVolume(volume);
    if (engine.Volume() == kBottomVolume) engine.SetVolume(core::kSilent);
}

}  // namespace nqp::remote
