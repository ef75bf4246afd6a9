#include "fragments/job_watch.h"

#include "base/file.h"
#include "core/program_folder.h"

namespace nqp::fragments {
namespace {

// How often the disk is asked for the marker.
constexpr std::chrono::milliseconds kLookInterval{200};

}  // namespace

JobWatch::JobWatch(const std::filesystem::path& programFolder, JobKind kind, Moment begin)
    : flag_(programFolder / core::kFlagFileName),
      deadline_(kind == JobKind::Image ? begin + kImagePatience : Moment::max()),
      next_look_(begin) {}

JobWatch::Verdict JobWatch::Look(Moment now) {
    if (!OutOfPatience(now)) return Verdict::Wait;
    if (ended_) return Verdict::GiveUp;
    too_long_ = !cancelled_;
    ended_ = true;
    deadline_ = now + kEndPatience;
    return Verdict::EndProcess;
}

bool JobWatch::OutOfPatience(Moment now) {
    if (!cancelled_ && !ended_ && now >= next_look_) {
        next_look_ = now + kLookInterval;
        cancelled_ = base::IsFile(flag_);
        if (cancelled_) deadline_ = now + kCancelPatience;
    }
    return now >= deadline_;
}

bool JobWatch::Cancelled() const {
    return cancelled_ || base::IsFile(flag_);
}

}  // namespace nqp::fragments
