#pragma once

#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "server/job_work.h"

namespace nqp::companion {

// The one job of a process, done on a thread of its own. Used on the window thread.
class JobRunner {
public:
    using Task = std::function<void()>;
    // Called on any thread; has the window thread do the task.
    using ToWindowThread = std::function<void(Task)>;

    JobRunner(JobWork& work, ToWindowThread toWindowThread)
        : work_(work), toWindowThread_(std::move(toWindowThread)) {}
    // Waits for a job that is under way.
    ~JobRunner();
    JobRunner(const JobRunner&) = delete;
    JobRunner& operator=(const JobRunner&) = delete;

    // Returns at once; `ended` follows on the window thread. Throws CutError for values that are no
    // job, which may be corrected then, and for a second job.
    void Begin(const JobValues& values, Task ended);

    bool Ended() const { return ended_; }
    // Why it was not done: a sentence. Nothing when it was done, or cancelled.
    const std::optional<std::string>& Error() const { return error_; }

private:
    std::optional<std::string> Do(const JobValues& values) noexcept;

    JobWork& work_;
    const ToWindowThread toWindowThread_;
    std::thread thread_;
    bool ended_ = false;
    std::optional<std::string> error_;
};

}  // namespace nqp::companion
