#pragma once

#include "core/audio_track.h"

namespace nqp::platform {

// Takes the sound out of AVI files with the platform's own functions for them. For the window
// thread, and one save at a time: a save that is asked for while another one shows its dialog or
// its progress has failed at once.
class AviAudioTrackWriter final : public core::AudioTrackWriter {
public:
    // A failed or stopped save leaves no empty new file. What the progress function throws ends the
    // save and is thrown on.
    core::AudioTrackResult Save(const core::AudioTrackRequest& request,
                                const Progress& progress) override;
};

}  // namespace nqp::platform
