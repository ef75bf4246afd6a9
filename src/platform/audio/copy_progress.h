#pragma once

#include <algorithm>

#include "core/audio_track.h"

namespace nqp::platform {

// Tells how far a copy is: per cent that never fall.
class CopyProgress {
public:
    explicit CopyProgress(const core::AudioTrackWriter::Progress& tell) : tell_(tell) {}

    // True when the copy is to stop.
    bool Tell(int percent) {
        percent_ = std::clamp(percent, percent_, 100);
        return tell_(percent_);
    }
    int Percent() const { return percent_; }

private:
    const core::AudioTrackWriter::Progress& tell_;
    int percent_ = 0;
};

}  // namespace nqp::platform
