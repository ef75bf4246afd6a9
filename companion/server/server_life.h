#pragma once

#include <chrono>

namespace nqp::companion {

// When the process that serves one job's object has nothing left to do. The system does not always
// notice that a client was killed, so silence ends it too.
class ServerLife {
public:
    using Moment = std::chrono::steady_clock::time_point;

    explicit ServerLife(Moment now) : lastCall_(now), lastEvent_(now) {}

    // Of objects, and locks on the server.
    void Held(Moment now);
    void Released(Moment now);
    // When a call comes and when it ends.
    void Called(Moment now) { lastCall_ = lastEvent_ = now; }
    void JobBegan() { underWay_ = true; }
    // Nobody waits for a job beside its client: the process' end is how the client learns of it.
    void JobEnded(bool beside, Moment now);

    bool IsOver(Moment now) const;

private:
    Moment lastCall_;
    Moment lastEvent_;
    int held_ = 0;
    bool hadClient_ = false;
    bool underWay_ = false;
    bool ended_ = false;
    bool endedBeside_ = false;
};

}  // namespace nqp::companion
