#include "server/job_signals.h"

#include "base/file.h"

namespace nqp::companion {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kBetweenLooks =
    std::chrono::duration_cast<Clock::duration>(std::chrono::milliseconds(100)).count();

}  // namespace

bool JobSignals::Cancelled() {
    if (cancelled_ || cancelFile_.empty()) return cancelled_;
    const Ticks now = Clock::now().time_since_epoch().count();
    if (now < nextLook_) return false;
    nextLook_ = now + kBetweenLooks;
    if (base::IsFile(cancelFile_)) cancelled_ = true;
    return cancelled_;
}

}  // namespace nqp::companion
