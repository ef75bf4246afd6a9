#include "remote/transport.h"

namespace nqp::remote {

void Transport::Reset() {
    ready_to_play = false;
    bPause = false;
    stopped = false;
    loading = false;
}

bool Transport::EngineReady() const {
    return engine_.Readiness() != 0 && !engine_.FileName().empty();
}

void Transport::Play() {
    ready_to_play = true;
    stopped = false;
    bPause = false;
    if (!EngineReady()) return;
    engine_.SetVisible(true);
    loading = true;
    if (remote_.Settings().auto_fullscreen) {
        engine_.SetDisplaySize(core::kFullScreenDisplay);
        if (remote_.Settings().control_at_fullscreen) remote_.ShowRemoteOnTop();
    }
    engine_.Play();
}

bool Transport::Stop() {
    if (!ready_to_play || bPause || !EngineReady()) return false;
    engine_.Pause();
    stopped = true;
    ready_to_play = false;
    loading = false;
    engine_.SetVisible(false);
    engine_.SetCurrentPosition(0);
    return true;
}

void Transport::TogglePause() {
    if (ready_to_play && !stopped && EngineReady()) {
        PauseNow();
    } else if (!ready_to_play && bPause && EngineReady()) {
        Resume();
    }
}

void Transport::PauseNow() {
    engine_.Pause();
    bPause = true;
    ready_to_play = false;
}

void Transport::Resume() {
    bPause = false;
    ready_to_play = true;
    loading = true;
    engine_.SetVisible(true);
    engine_.Play();
}

}  // namespace nqp::remote
