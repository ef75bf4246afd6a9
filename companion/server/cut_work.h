#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <utility>

#include "cutter/cut.h"
#include "dialog/format_dialog.h"
#include "server/job_work.h"
#include "server/progress_reporter.h"

namespace nqp::companion {

// The functions of cutter/cut.h.
class Cutter {
public:
    virtual void Check(const CutJob& job) = 0;
    virtual std::optional<double> CopyBegin(const CutJob& job, CutWatch& watch) = 0;
    virtual CutReport Cut(const CutJob& job, CutWatch& watch) = 0;

protected:
    ~Cutter() = default;
};

class FormatQuestion {
public:
    // Asks the person; from any thread but the one of the windows. Nothing when the question, or
    // the job, is cancelled.
    virtual std::optional<FormatChoice> Ask(const FormatOffer& offer,
                                            std::function<bool()> cancelled) = 0;

protected:
    ~FormatQuestion() = default;
};

// Cuts what the values say, with all that the player and its user take part in: the format is asked
// for, the sound is what the user's file is to be, the progress is told.
class CutWork final : public JobWork {
public:
    // The finder is called on threads of its own.
    CutWork(Cutter& cutter, FormatQuestion& question, WizardFinder wizard,
            std::filesystem::path programFolder, ReportingRules rules = ReportingRules())
        : cutter_(cutter),
          question_(question),
          wizard_(std::move(wizard)),
          programFolder_(std::move(programFolder)),
          rules_(rules) {}

    void Check(const JobValues& values) override;
    void Do(const JobValues& values) override;

private:
    bool ChooseFormat(CutJob& job, JobSignals& signals);
    std::optional<FormatChoice> AskForFormat(const FormatChoice& remembered,
                                             std::optional<double> copyBegin, JobSignals& signals);
    void ChooseSound(CutJob& job, const JobValues& values, ProgressReporter& reporter) const;

    Cutter& cutter_;
    FormatQuestion& question_;
    const WizardFinder wizard_;
    const std::filesystem::path programFolder_;
    const ReportingRules rules_;
};

}  // namespace nqp::companion
