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

std::string TimeOf(const fragments::Bound& bound) {
    return bound.hours + ":" + bound.minutes + ":" + bound.seconds;
}

void RemoveFile(const std::string& path) {
    std::error_code ignored;
    std::filesystem::remove(base::PathFromUtf8(path), ignored);
}

// What is there already stays, and so does the clip.
void MoveToTarget(const AudioTarget& target) {
    const std::filesystem::path path = base::PathFromUtf8(target.path);
    std::error_code failed;
    if (!base::IsFile(path)) {
        std::filesystem::rename(base::PathFromUtf8(target.temporaryVideo), path, failed);
        if (!failed) return;
    }
    throw forms::RunTimeError("The sound could not be saved as " + target.path + ". It is in " +
                              target.temporaryVideo + ".");
}

}  // namespace

void Form4::OpenWizard() {
    {
        const core::ArmedAutomationStart armed(context_.programFolder);
        wizard_ = context_.wizards.Create();
    }
    wizard_->init();
    if (!serving_wizard_) ForgetEarlierJobs();
    const fragments::FragmentBounds bounds = MarkedFragment();
    wizard_->update_numbers(TimeOf(bounds.begin) + " -", TimeOf(bounds.end));
    wizard_->set_filepath(file_path_);
}

// The wizard may have been left in the middle of a job, by a player that has crashed since.
void Form4::ForgetEarlierJobs() {
    while (WaitingJob())
        ;
    wizard_->hide_status();
}

void Form4::set_form7_status(const std::string& stat) {
    if (wizard_) wizard_->set_form7_status(stat);
}

// A wizard whose process has ended asks for nothing any more.
void Form4::ServeWizard() {
    if (!wizard_ || serving_wizard_) return;
    const base::ScopedFlag serving(serving_wizard_);
    std::optional<JobKind> kind;
    try {
        kind = WaitingJob();
    } catch (const std::exception&) {
        wizard_.reset();
    }
    if (kind) RunJob(*kind);
}

std::optional<JobKind> Form4::WaitingJob() {
    if (wizard_->Get_frwt_video()) return JobKind::Video;
    if (wizard_->Get_frwt_audio()) return JobKind::Audio;
    if (wizard_->Get_frwt_image()) return JobKind::Image;
    return std::nullopt;
}

// Whatever becomes of the job, the windows come back first. A person had asked for it, so what went
// wrong is told.
void Form4::RunJob(JobKind kind) {
    Hide();
    Form1_.HideWindow();
    std::exception_ptr failure;
    try {
        DoJob(kind);
    } catch (const std::exception&) {
        failure = std::current_exception();
    }
    EndJob();
    if (failure) forms::Guarded(forms::Origin::User, [&] { std::rethrow_exception(failure); });
}

// The program may have been closed from its icon meanwhile.
void Form4::EndJob() {
    waiting_job_.reset();
    if (Loaded()) {
        Show();
        Form1_.ShowWindow();
    }
    core::DeleteFlagFile(context_.programFolder);
    if (!wizard_) return;
    try {
        wizard_->init();
        wizard_->hide_status();
    } catch (const std::exception&) {
        wizard_.reset();
    }
}

void Form4::DoJob(JobKind kind) {
    const std::string output = wizard_->Get_frwt_OutFilePath();
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
    if (mode == core::RunMode::Waiting) waiting_job_->EndProcess();
    if (!Loaded() || watch.Cancelled()) return false;
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
    const core::FragmentJob job = fragments::AudioJob(source, settings_, audio_target_, mode);
    const bool done = RunCompanion(job, JobKind::Audio);
    if (!Loaded()) return;
    const bool waited = mode == core::RunMode::Waiting;
    if (done || (!waited && audio_target_.format == AudioTarget::Format::Unknown)) {
        FinishAudioTarget();
    } else if (waited) {
        RemoveFile(audio_target_.temporaryVideo);  // of a job that was cancelled
    }
}

void Form4::FinishAudioTarget() {
    switch (audio_target_.format) {
        case AudioTarget::Format::Wave:
            save_audio();
            RemoveFile(audio_target_.temporaryVideo);
            break;
        case AudioTarget::Format::Mp3:
            MoveToTarget(audio_target_);
            break;
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
    forms::Guarded(forms::Origin::Program,
                   [&] { set_form7_status(std::to_string(percent) + " % copied"); });
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
