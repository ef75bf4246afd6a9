#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/audio_track.h"
#include "core/companion.h"
#include "core/message_boxes.h"
#include "core/wizard.h"
#include "forms/run_time_error.h"

namespace nqp::test {

// The wizard of another process, with a person in front of it.
class ScriptedWizards final : public core::WizardFactory {
public:
    std::unique_ptr<core::Wizard> Create() override;
    base::NativeWindow Window() const override { return nullptr; }
    void CloseWindow() override { calls.emplace_back("CloseWindow"); }
    bool TakeOver() override {
        ours = true;
        return usedByAnother;
    }
    bool IsOurs() const override { return ours; }

    // A job that the person asks for; `output` is the save dialog's whole buffer.
    void AskForVideo(const std::string& output) { Ask(video_, output); }
    void AskForAudio(const std::string& output) { Ask(audio_, output); }
    void AskForImage(const std::string& output) { Ask(image_, output); }

    std::vector<std::string> calls;  // of all wizards, without the questions for a job
    int questions = 0;
    int alive = 0;
    bool refused = false;  // none can be created
    bool gone = false;     // the process has ended: every call throws
    bool ours = true;
    bool usedByAnother = false;  // another player has left its traces in the window
    std::function<void()> whenCreated;
    std::function<void()> whenAsked;  // for a job
    std::function<void()> whenIdle;   // it has been told that the job has ended

private:
    friend class ScriptedWizard;

    void Ask(bool& request, const std::string& output) {
        request = true;
        output_ = output;
    }

    bool video_ = false;
    bool audio_ = false;
    bool image_ = false;
    std::string output_;
};

// What becomes of a job is the test's to say.
class ScriptedCompanion final : public core::Companion {
public:
    std::unique_ptr<core::CompanionJob> Begin(const core::FragmentJob& job,
                                              core::RunMode mode) override;

    void Finish() { returned = true; }
    void Fail(const std::string& sentence) {
        error = sentence;
        returned = true;
    }

    std::vector<core::FragmentJob> jobs;
    std::vector<core::RunMode> modes;
    bool returned = true;  // the job has ended, or was started
    std::optional<std::string> error;
    bool endsWhenKilled = true;
    bool processEnded = false;
    int killed = 0;
    int alive = 0;
    std::function<void()> whenBegun;
};

class ScriptedAudioWriter final : public core::AudioTrackWriter {
public:
    core::AudioTrackResult Save(const core::AudioTrackRequest& request,
                                const Progress& progress) override {
        requests.push_back(request);
        return act ? act(progress) : core::AudioTrackResult::Saved;
    }

    std::vector<core::AudioTrackRequest> requests;
    std::function<core::AudioTrackResult(const Progress&)> act;
};

class ScriptedBoxes final : public core::MessageBoxes {
public:
    void Inform(const std::string& text) override { shown.push_back(text); }
    bool Accepts(base::NativeWindow, const std::string& question) override {
        shown.push_back(question);
        return answer;
    }

    std::vector<std::string> shown;
    bool answer = true;
};

}  // namespace nqp::test
