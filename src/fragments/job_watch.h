#pragma once

#include <chrono>
#include <filesystem>

#include "fragments/hand_off.h"

namespace nqp::fragments {

using Moment = std::chrono::steady_clock::time_point;

// How long a cancelled companion may take to come to its end, and how long its process to go.
inline constexpr std::chrono::seconds kCancelPatience{10};
inline constexpr std::chrono::seconds kEndPatience{5};
// A still takes a moment, and nobody can cancel it.
inline constexpr std::chrono::seconds kImagePatience{120};

// Decides when a companion that a person waits for has had time enough. The marker in the program
// folder is the sign that the person has cancelled.
class JobWatch {
public:
    enum class Verdict { Wait, EndProcess, GiveUp };

    JobWatch(const std::filesystem::path& programFolder, JobKind kind, Moment begin);

    // To be asked again and again. EndProcess comes once, GiveUp some time later, in case that the
    // process' end was not noticed.
    Verdict Look(Moment now);
    // The person has cancelled, be it since the last look.
    bool Cancelled() const;
    bool TookTooLong() const { return too_long_; }

private:
    bool OutOfPatience(Moment now);

    std::filesystem::path flag_;
    Moment deadline_;
    Moment next_look_;
    bool cancelled_ = false;
    bool too_long_ = false;
    bool ended_ = false;
};

}  // namespace nqp::fragments
