#include "server/progress_reporter.h"

#include <condition_variable>
#include <fstream>
#include <mutex>
#include <thread>
#include <utility>

#include "base/file.h"

namespace nqp::companion {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kDone = 100;
constexpr std::chrono::milliseconds kLookForCancel{50};

std::string TextOf(int percent) {
    return std::to_string(percent) + " % copied";
}

}  // namespace

// What the reporter shares with its thread. Either may go first.
class ProgressReporter::Line {
public:
    Line(WizardFinder find, std::filesystem::path statusFile, std::shared_ptr<JobSignals> signals,
         const Rules& rules)
        : find_(std::move(find)),
          statusFile_(std::move(statusFile)),
          signals_(std::move(signals)),
          rules_(rules) {}

    // For the reporter.

    std::optional<std::string> Target() {
        std::unique_lock lock(mutex_);
        wanted_ = true;
        changed_.notify_all();
        const auto deadline = Clock::now() + rules_.target;
        while (!answered_ && Clock::now() < deadline && !signals_->Cancelled())
            changed_.wait_for(lock, kLookForCancel);
        return target_;
    }
    void End(bool done) {
        std::unique_lock lock(mutex_);
        if (ending_) return;
        ending_ = true;
        done_ = done;
        changed_.notify_all();
        changed_.wait_for(lock, rules_.lastReport, [this] { return gone_; });
    }

    // For the thread.

    void Report() noexcept {
        try {
            ReportUntilEnd();
        } catch (const std::exception&) {
            wizard_.reset();  // nobody can be told
        }
        const std::lock_guard lock(mutex_);
        answered_ = gone_ = true;
        changed_.notify_all();
    }

private:
    void ReportUntilEnd() {
        Write(TextOf(signals_->Percent()));
        if (find_) wizard_ = find_();
        for (bool ending = IsEnding(); !ending; ending = WaitForEnd()) {
            Show(TextOf(signals_->Percent()));
            AnswerQuestion();
        }
        if (done_) Show(TextOf(kDone));
        wizard_.reset();
    }

    void AnswerQuestion() {
        {
            const std::lock_guard lock(mutex_);
            if (!wanted_ || answered_) return;
        }
        auto target = wizard_ ? wizard_->OutputPath() : std::nullopt;
        const std::lock_guard lock(mutex_);
        target_ = std::move(target);
        answered_ = true;
        changed_.notify_all();
    }

    bool IsEnding() {
        const std::lock_guard lock(mutex_);
        return ending_;
    }
    bool WaitForEnd() {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, rules_.between,
                          [this] { return ending_ || (wanted_ && !answered_); });
        return ending_;
    }

    void Show(const std::string& text) {
        Write(text);
        if (wizard_ && !wizard_->ShowStatus(text)) wizard_.reset();
    }

    void Write(const std::string& text) {
        if (statusFile_.empty() || written_ == text) return;
        std::ofstream file(statusFile_, std::ios::binary | std::ios::trunc);
        file << text;
        file.close();
        if (file) written_ = text;
    }

    const WizardFinder find_;
    const std::filesystem::path statusFile_;
    const std::shared_ptr<JobSignals> signals_;
    const Rules rules_;
    std::unique_ptr<WizardContact> wizard_;  // these two are the thread's
    std::string written_;

    std::mutex mutex_;
    std::condition_variable changed_;
    bool wanted_ = false;  // the target is
    bool answered_ = false;
    std::optional<std::string> target_;
    bool ending_ = false;
    bool done_ = false;
    bool gone_ = false;
};

ProgressReporter::ProgressReporter(WizardFinder wizard, std::filesystem::path statusFile,
                                   std::shared_ptr<JobSignals> signals, Rules rules)
    : line_(std::make_shared<Line>(std::move(wizard), std::move(statusFile), std::move(signals),
                                   rules)) {
    // Never joined: it may hang in a call.
    std::thread([line = line_] { line->Report(); }).detach();
}

ProgressReporter::~ProgressReporter() {
    line_->End(false);
}

std::optional<std::string> ProgressReporter::TargetPath() {
    return line_->Target();
}

void ProgressReporter::Finish() {
    line_->End(true);
}

}  // namespace nqp::companion
