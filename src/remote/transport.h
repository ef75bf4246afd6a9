#pragma once

#include "core/media_engine.h"
#include "core/remote_window.h"

namespace nqp::remote {

// The remote's flags about playing, and what its transport buttons do with the engine.
class Transport {
public:
    Transport(core::MediaEngine& engine, core::RemoteWindow& remote)
        : engine_(engine), remote_(remote) {}

    bool ready_to_play = false;  // playing was started and is neither paused nor stopped
    bool bPause = false;         // playing is paused
    bool stopped = false;        // the stop button was used last
    bool loading = false;        // the position has not moved yet since playing was started

    void Reset();
    void Play();
    // True when it stopped: the clip then waits, paused and hidden, at its beginning.
    bool Stop();
    void TogglePause();

private:
    bool EngineReady() const;
    void PauseNow();
    void Resume();

    core::MediaEngine& engine_;
    core::RemoteWindow& remote_;
};

}  // namespace nqp::remote
