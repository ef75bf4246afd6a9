#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <utility>

#include "cutter/cut.h"

namespace nqp::companion {

// What goes to and from a job while it is done: how far it is, and whether it is cancelled, which
// the existence of a file says. From any thread.
class JobSignals final : public CutWatch {
public:
    // Without a file's name the job cannot be cancelled.
    explicit JobSignals(std::filesystem::path cancelFile) : cancelFile_(std::move(cancelFile)) {}

    void Progress(int percent) override { percent_ = percent; }
    int Percent() const { return percent_; }

    // A job that was cancelled once stays so. The disk is looked at ten times a second at most.
    bool Cancelled() override;

private:
    using Ticks = std::chrono::steady_clock::rep;

    const std::filesystem::path cancelFile_;
    std::atomic<int> percent_ = 0;
    std::atomic<bool> cancelled_ = false;
    std::atomic<Ticks> nextLook_ = 0;
};

}  // namespace nqp::companion
