#pragma once

#include "core/wizard.h"
#include "wizard/form3.h"

namespace nqp::wizard {

// What the automation class does, on the one wizard window of this process.
class CWizard final : public core::Wizard {
public:
    explicit CWizard(Form3& window) : Form3_(window) {}

    void init() override { Form3_.ShowOnTopOfAll(); }
    void hide_status() override { Form3_.hide_status(); }
    void set_filepath(const std::string& fpath) override { Form3_.wiz_FilePath = fpath; }
    void set_form7_status(const std::string& stat) override { Form3_.set_status(stat); }
    void update_numbers(const std::string& str_n1, const std::string& str_n2) override;
    bool Get_frwt_video() override { return Fetch(Form3_.wiz_video); }
    bool Get_frwt_audio() override { return Fetch(Form3_.wiz_audio); }
    bool Get_frwt_image() override { return Fetch(Form3_.wiz_image); }
    bool Get_frwt_unload() override { return false; }
    std::string Get_frwt_OutFilePath() override { return Form3_.wiz_OutFilePath; }

private:
    // A request is delivered once.
    static bool Fetch(bool& request);

    Form3& Form3_;
};

}  // namespace nqp::wizard
