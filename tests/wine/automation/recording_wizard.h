#pragma once

#include <string>

#include "core/wizard.h"
#include "platform/automation/wizard_server.h"

namespace nqp::test {

// Serves a wizard that remembers what it was told, as a process of its own would, until the last
// client has let go. Its answers:
//   Get_frwt_OutFilePath  all that it was told, a line for each call, and the lines of set_filepath
//   Get_frwt_video, _audio, _image  true once after set_form7_status("video"), "audio", "image"
//   set_filepath          "process", "objects": adds a line with that number to what it was told;
//                         "window": shows a window of the wizard's class; "fail TEXT": throws
int ServeRecordingWizard();

class RecordingWizard : public core::Wizard {
public:
    void Connect(const platform::WizardServer& server) { server_ = &server; }

    void init() override { Record("init"); }
    void hide_status() override { Record("hide_status"); }
    void set_filepath(const std::string& fpath) override;
    void set_form7_status(const std::string& stat) override;
    void update_numbers(const std::string& str_n1, const std::string& str_n2) override {
        Record("update_numbers " + str_n1 + " " + str_n2);
    }
    bool Get_frwt_video() override { return Take("video"); }
    bool Get_frwt_audio() override { return Take("audio"); }
    bool Get_frwt_image() override { return Take("image"); }
    bool Get_frwt_unload() override { return Take("unload"); }
    std::string Get_frwt_OutFilePath() override { return told_; }

private:
    void Record(const std::string& line) { told_ += line + "\n"; }
    bool Take(const std::string& flag);

    const platform::WizardServer* server_ = nullptr;
    std::string told_;
    std::string flag_;
};

}  // namespace nqp::test
