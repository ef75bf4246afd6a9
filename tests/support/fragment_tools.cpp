#include "fragment_tools.h"

#include <utility>

namespace nqp::test {

class ScriptedWizard final : public core::Wizard {
public:
    explicit ScriptedWizard(ScriptedWizards& all) : all_(all) { ++all_.alive; }
    ~ScriptedWizard() override { --all_.alive; }
    ScriptedWizard(const ScriptedWizard&) = delete;
    ScriptedWizard& operator=(const ScriptedWizard&) = delete;

    void init() override { Note("init"); }
    void hide_status() override {
        Note("hide_status");
        if (all_.whenIdle) all_.whenIdle();
    }
    void set_filepath(const std::string& fpath) override { Note("set_filepath " + fpath); }
    void set_form7_status(const std::string& stat) override { Note("set_form7_status " + stat); }
    void update_numbers(const std::string& str_n1, const std::string& str_n2) override {
        Note("update_numbers " + str_n1 + " | " + str_n2);
    }
    bool Get_frwt_video() override { return Fetch(all_.video_); }
    bool Get_frwt_audio() override { return Fetch(all_.audio_); }
    bool Get_frwt_image() override { return Fetch(all_.image_); }
    bool Get_frwt_unload() override { return false; }
    std::string Get_frwt_OutFilePath() override {
        Reach();
        return all_.output_;
    }

private:
    void Reach() const {
        if (all_.gone) throw forms::RunTimeError("The Quillon Wizard is gone.");
    }
    void Note(const std::string& call) {
        Reach();
        all_.calls.push_back(call);
    }
    bool Fetch(bool& request) {
        Reach();
        ++all_.questions;
        if (all_.whenAsked) all_.whenAsked();
        return std::exchange(request, false);
    }

    ScriptedWizards& all_;
};

std::unique_ptr<core::Wizard> ScriptedWizards::Create() {
    if (whenCreated) whenCreated();
    if (refused) throw forms::RunTimeError("The Quillon Wizard could not be started.");
    return std::make_unique<ScriptedWizard>(*this);
}

namespace {

class ScriptedJob final : public core::CompanionJob {
public:
    explicit ScriptedJob(ScriptedCompanion& companion) : companion_(companion) {
        ++companion_.alive;
    }
    ~ScriptedJob() override { --companion_.alive; }
    ScriptedJob(const ScriptedJob&) = delete;
    ScriptedJob& operator=(const ScriptedJob&) = delete;

    bool Returned() const override { return companion_.returned; }
    std::optional<std::string> Error() const override { return companion_.error; }
    void EndProcess() override {
        ++companion_.killed;
        if (companion_.endsWhenKilled) companion_.returned = true;
    }
    bool ProcessEnded() const override { return companion_.processEnded; }

private:
    ScriptedCompanion& companion_;
};

}  // namespace

std::unique_ptr<core::CompanionJob> ScriptedCompanion::Begin(const core::FragmentJob& job,
                                                             core::RunMode mode) {
    jobs.push_back(job);
    modes.push_back(mode);
    if (whenBegun) whenBegun();
    return std::make_unique<ScriptedJob>(*this);
}

}  // namespace nqp::test
