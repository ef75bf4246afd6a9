#include "server/server_life.h"

namespace nqp::companion {
namespace {

using namespace std::chrono_literals;

constexpr auto kWaitForClient = 20s;
// The answer to the client's last call is still on its way, and nothing tells when it has arrived.
constexpr auto kLastAnswer = 100ms;
// To fetch what a job that was waited for has left: the text of an error.
constexpr auto kAfterJob = 10s;
constexpr auto kSilence = 10min;

}  // namespace

void ServerLife::Held(Moment now) {
    ++held_;
    hadClient_ = true;
    Called(now);
}

void ServerLife::Released(Moment now) {
    --held_;
    lastEvent_ = now;
}

void ServerLife::JobEnded(bool beside, Moment now) {
    underWay_ = false;
    ended_ = true;
    endedBeside_ = beside;
    lastEvent_ = now;
}

bool ServerLife::IsOver(Moment now) const {
    if (underWay_) return false;
    if (!hadClient_) return now - lastCall_ >= kWaitForClient;
    if (endedBeside_ || held_ == 0) return now - lastEvent_ >= kLastAnswer;
    return now - lastCall_ >= (ended_ ? kAfterJob : kSilence);
}

}  // namespace nqp::companion
