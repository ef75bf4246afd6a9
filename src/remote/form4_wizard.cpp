#include <exception>
#include <system_error>
#include <utility>

#include "base/file.h"
#include "base/scoped_flag.h"
#include "core/main_app.h"
#include "core/program_folder.h"
#include "forms/run_time_error.h"
#include "remote/form4.h"

// The wizard, in a process of its own, and the jobs that a person asks for in it. The companion
// does the work; the remote tells it what to do, and waits for it or not.
namespace nqp::remote {
namespace {

using fragments::AudioTarget;
using fragments::JobKind;
using fragments::JobWatch;

void RemoveFile(const std::string& path) {
    std::error_code ignored;
    std::filesystem::remove(base::PathFromUtf8(path), ignored);
}

// Nobody was asked whether the file may be replaced.
void RefuseToReplace(const AudioTarget& target) {
    if (!base::IsFile(base::PathFromUtf8(target.path))) return;
    throw forms::RunTimeError("There is already a file " + target.path +
                              ". Please choose another name.");
}

}  // namespace

// It takes a moment, in which the program may be closed.
void Form4::OpenWizard() {
    wizard_.Create(context_.programFolder);
    if (!Loaded()) return wizard_.Close();
    wizard_.Show({MarkedFragment(), file_path_}, !serving_wizard_);
}

void Form4::set_form7_status(const std::string& stat) {
    wizard_.SetStatus(stat);
}

// What went wrong is told when all is as it was before: the person may go on at once.
void Form4::ServeWizard() {
    std::erase_if(jobs_beside_, [](const auto& job) { return job->ProcessEnded(); });
    if (serving_wizard_ || !wizard_.Open()) return;
    std::exception_ptr failure;
    {
        const base::ScopedFlag serving(serving_wizard_);
        wizard_.Update({MarkedFragment(), file_path_});
        const auto kind = wizard_.WaitingJob();
        if (kind && Loaded()) failure = RunJob(*kind);
    }
    if (failure) forms::Guarded(forms::Origin::User, [&] { std::rethrow_exception(failure); });
}

// Whatever becomes of the job, the windows come back.
std::exception_ptr Form4::RunJob(JobKind kind) {
    Hide();
    Form1_.HideWindow();
    std::exception_ptr failure;
    try {
        DoJob(kind);
    } catch (const std::exception&) {
        failure = std::current_exception();
    }
    EndJob();
    return failure;
}

// The program may have been closed from its icon meanwhile. The wizard can be cancelled until it is
// idle again, and what it left then must not cancel the next job.
void Form4::EndJob() {
    waiting_job_.reset();
    if (Loaded()) {
        Show();
        Form1_.ShowWindow();
    }
    core::DeleteFlagFile(context_.programFolder);
    wizard_.ComeBackIdle();
    core::DeleteFlagFile(context_.programFolder);
}

void Form4::DoJob(JobKind kind) {
    const std::string output = wizard_.OutputPath();
    const fragments::JobSource source{.programFolder = context_.programFolder,
                                      .file = file_path_,
                                      .beginSeconds = glob_PosBegin(),
                                      .endSeconds = glob_PosEnd()};
    switch (kind) {
        case JobKind::Video:
            RunCompanion(fragments::VideoJob(source, settings_, output), kind);
            break;
        case JobKind::Audio:
            DoAudioJob(source, output);
            break;
        case JobKind::Image:
            RunCompanion(fragments::ImageJob(source, settings_, output), kind);
            break;
    }
}

// True when the companion came to the end of a job that was waited for.
bool Form4::RunCompanion(const core::FragmentJob& job, JobKind kind) {
    const core::RunMode mode = fragments::RunModeOf(settings_);
    waiting_job_ = context_.companion.Begin(job, mode);
    JobWatch watch(context_.programFolder, kind, context_.clock.Steady());
    WaitFor(*waiting_job_, watch);
    const bool returned = waiting_job_->Returned();
    const auto error = returned ? waiting_job_->Error() : std::nullopt;
    const bool cancelled = watch.Cancelled();
    if (mode == core::RunMode::Waiting || cancelled) waiting_job_->EndProcess();
    if (!Loaded() || cancelled) return false;
    if (watch.TookTooLong()) {
        throw forms::RunTimeError(std::string(core::kCompanionFileName) +
                                  " did not come to the end of its job.");
    }
    if (error) throw forms::RunTimeError(*error);
    if (mode == core::RunMode::Waiting) return true;
    jobs_beside_.push_back(std::move(waiting_job_));
    return false;
}

// The windows take part meanwhile: the icon answers, and the wizard's process is served.
void Form4::WaitFor(core::CompanionJob& job, JobWatch& watch) const {
    bool givenUp = false;
    forms::RunMessagesUntil([&] {
        const JobWatch::Verdict verdict = watch.Look(context_.clock.Steady());
        if (verdict == JobWatch::Verdict::EndProcess) job.EndProcess();
        givenUp = verdict == JobWatch::Verdict::GiveUp;
        return givenUp || !Loaded() || job.Returned();
    });
}

void Form4::DoAudioJob(const fragments::JobSource& source, const std::string& output) {
    audio_target_ = fragments::AudioTargetOf(output);
    const core::RunMode mode = fragments::RunModeOf(settings_);
    const bool waited = mode == core::RunMode::Waiting;
    const AudioTarget target = audio_target_;
    if (waited && target.format == AudioTarget::Format::Mp3) RefuseToReplace(target);
    const core::FragmentJob job = fragments::AudioJob(source, settings_, target, mode);
    const bool done = RunCompanion(job, JobKind::Audio);
    if (waited && !done) RemoveFile(target.temporaryVideo);  // of a job that was cancelled
    const bool unknown = target.format == AudioTarget::Format::Unknown;
    if (done || (Loaded() && !waited && unknown)) FinishAudioTarget();
}

void Form4::FinishAudioTarget() {
    const AudioTarget target = audio_target_;
    switch (target.format) {
        case AudioTarget::Format::Wave:
            save_audio();
            RemoveFile(target.temporaryVideo);
            break;
        case AudioTarget::Format::Mp3:
            if (base::MoveToNewName(base::PathFromUtf8(target.temporaryVideo),
                                    base::PathFromUtf8(target.path))) {
                break;
            }
            throw forms::RunTimeError("The sound could not be saved as " + target.path +
                                      ". It is in " + target.temporaryVideo + ".");
        case AudioTarget::Format::Unknown:
            context_.boxes.Inform("Invalid extension! Use *.wav or *.mp3");
            break;
    }
}

void Form4::save_audio() {
    const AudioTarget target = audio_target_;
    const auto result =
        context_.audio.Save({.owner = context_.wizards.Window(),
                             .source = target.temporaryVideo,
                             .target = target.path},
                            [this](int percent) { return ReportAudioProgress(percent); });
    if (result == core::AudioTrackResult::Failed) {
        context_.boxes.Inform("There was an error working with the file:\r\n" +
                              target.temporaryVideo);
    }
}

// The wizard's Cancel is a marker in the program folder.
bool Form4::ReportAudioProgress(int percent) {
    set_form7_status(std::to_string(percent) + " % copied");
    forms::RunWaitingMessages();
    return !Loaded() || base::IsFile(context_.programFolder / core::kFlagFileName);
}

void Form4::EndCompanions() {
    if (waiting_job_) waiting_job_->EndProcess();
    for (const auto& job : jobs_beside_)
        job->EndProcess();
    jobs_beside_.clear();
}

}  // namespace nqp::remote
