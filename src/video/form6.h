#pragma once

#include "core/media_engine.h"
#include "forms/command_button.h"
#include "forms/control_array.h"
#include "forms/form.h"
#include "forms/label.h"
#include "forms/slider.h"
#include "forms/text_box.h"

namespace nqp::video {

// The play-rate dialog: what is set takes effect at once, and the dialog always shows the rate
// that is in force.
class Form6 final : public forms::Form {
public:
    explicit Form6(core::MediaEngine& engine);

    void CentreOnScreen();

    forms::Label Label1;
    forms::TextBox Text1;
    forms::Slider Slider1;
    static constexpr int kMarkCount = 5;
    forms::ControlArray<forms::Label, kMarkCount> Label2;  // the numbers under the slider
    forms::CommandButton Command1;
    forms::CommandButton Command2;

private:
    void Form_Load() override;
    void Form_Activate() override;
    bool Form_KeyDown(const base::KeyEvent& key) override;

    void Slider1_Change();
    void Text1_LostFocus();
    void Command1_Click();
    void Command2_Click();

    void SetRate(double rate);
    bool ApplyText();
    void ShowRateInForce();

    core::MediaEngine& MediaPlayer1_;
};

}  // namespace nqp::video
