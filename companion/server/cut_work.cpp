#include "server/cut_work.h"

#include <memory>

#include "base/file.h"
#include "base/text.h"
#include "server/sound_target.h"

namespace nqp::companion {
namespace {

using core::JobMode;

std::filesystem::path PathIn(const std::string& text) {
    return base::PathFromUtf8(base::UpToNul(text));
}

}  // namespace

void CutWork::Check(const JobValues& values) {
    cutter_.Check(JobOf(values));
}

void CutWork::Do(const JobValues& values) {
    CutJob job = JobOf(values);
    const auto signals = std::make_shared<JobSignals>(PathIn(values.cancelFile));
    // A still takes a moment and shows no progress; a wizard that does not run would be started.
    ProgressReporter reporter(job.mode == JobMode::Image ? nullptr : wizard_,
                              PathIn(values.statusFile), signals, rules_);
    const bool video = job.mode == JobMode::Video || job.mode == JobMode::VideoWithPicture;
    if (video && !ChooseFormat(job, *signals)) return;
    if (job.mode == JobMode::Audio) ChooseSound(job, values, reporter);
    if (signals->Cancelled()) return;
    if (cutter_.Cut(job, *signals).result == CutResult::Done) reporter.Finish();
}

// False when there is to be no job.
bool CutWork::ChooseFormat(CutJob& job, JobSignals& signals) {
    FormatChoice choice = ReadFormatChoice(programFolder_);
    if (choice.ask || choice.format == VideoFormat::Copy) {
        const auto copyBegin = cutter_.CopyBegin(job, signals);
        if (signals.Cancelled()) return false;
        if (choice.ask || !copyBegin) {
            const auto answer = AskForFormat(choice, copyBegin, signals);
            if (!answer) return false;
            choice = *answer;
        }
    }
    job.video = choice.format;
    return true;
}

// Where the remembered format does not fit, the answer is for this job alone, unless the person
// does not want to be asked for it again.
std::optional<FormatChoice> CutWork::AskForFormat(const FormatChoice& remembered,
                                                  std::optional<double> copyBegin,
                                                  JobSignals& signals) {
    const auto answer = question_.Ask({{remembered.format, true}, copyBegin},
                                      [&signals] { return signals.Cancelled(); });
    const bool forThisJob = !remembered.ask && answer && answer->ask;
    // A folder that takes no file: the person is asked again the next time.
    if (answer && !forThisJob) WriteFormatChoice(programFolder_, *answer);
    return answer;
}

void CutWork::ChooseSound(CutJob& job, const JobValues& values, ProgressReporter& reporter) const {
    job.mp3Rate = Mp3RateIn(programFolder_);
    if (!StandsBesideATarget(values.outputFile)) return;
    const auto target = reporter.TargetPath();
    if (target && BecomesMp3(values.outputFile, *target)) job.sound = SoundFormat::Mp3;
}

}  // namespace nqp::companion
