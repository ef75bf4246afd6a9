#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "server/job_signals.h"

namespace nqp::companion {

// The wizard that a person watches a job in. Made, used and destroyed by one thread.
class WizardContact {
public:
    virtual ~WizardContact() = default;
    // False when the wizard is gone.
    virtual bool ShowStatus(const std::string& text) = 0;
    // The file that the person wants, as the save dialog left it; nothing when the wizard does not
    // say.
    virtual std::optional<std::string> OutputPath() = 0;
};

// Null when there is no wizard; may take long.
using WizardFinder = std::function<std::unique_ptr<WizardContact>()>;

struct ReportingRules {
    // Also without any progress: silence would look like a companion that hangs.
    std::chrono::milliseconds between{250};
    // A wizard that does not answer holds up nobody for longer.
    std::chrono::milliseconds lastReport{2000};
    std::chrono::milliseconds target{10000};
};

// Tells the wizard and the status file how far a job is, on a thread of its own: a call to the
// wizard may take any time. A wizard that cannot be found or goes is not looked for again.
class ProgressReporter {
public:
    using Rules = ReportingRules;

    // Begins at once. Without a finder there is no wizard, without a name no status file. The
    // signals are shared, because a thread that hangs in a call outlives the reporter.
    ProgressReporter(WizardFinder wizard, std::filesystem::path statusFile,
                     std::shared_ptr<JobSignals> signals, Rules rules = Rules());
    // Without a further report.
    ~ProgressReporter();
    ProgressReporter(const ProgressReporter&) = delete;
    ProgressReporter& operator=(const ProgressReporter&) = delete;

    // The wizard's output path; nothing without a wizard, or when none answers in time, or when the
    // job is cancelled meanwhile.
    std::optional<std::string> TargetPath();
    // The job is done: the last report says so. Returns when it was made, or takes too long.
    void Finish();

private:
    class Line;

    std::shared_ptr<Line> line_;
};

}  // namespace nqp::companion
