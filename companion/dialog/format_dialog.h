#pragma once

#include <array>
#include <functional>
#include <optional>

#include "dialog/format_choice.h"
#include "forms/check_box.h"
#include "forms/command_button.h"
#include "forms/form.h"
#include "forms/label.h"
#include "forms/option_button.h"
#include "forms/timer_control.h"

namespace nqp::companion {

// What the dialog opens with.
struct FormatOffer {
    FormatChoice choice;
    // Where a copy without encoding would begin, in seconds. Nothing: there can be none.
    std::optional<double> copyBegin;
};

// Asks how video fragments are to be written: for one job, or from now on.
class FormatDialog final : public forms::Form {
public:
    FormatDialog();

    // In the middle of an area of the screen, in front of all windows. Nothing when the person
    // cancels, or when the job is cancelled meanwhile.
    std::optional<FormatChoice> AskForJob(const FormatOffer& offer, const base::Rect& area,
                                          std::function<bool()> cancelled);
    // The same as settings, where no clip decides what is possible.
    std::optional<FormatChoice> AskForSettings(const FormatChoice& choice, const base::Rect& area);

    forms::Label Heading;
    forms::OptionButton PlaysEverywhere;
    forms::OptionButton Smaller;
    forms::OptionButton MotionJpeg;
    forms::OptionButton Lossless;
    forms::OptionButton Copy;
    forms::CheckBox DoNotAsk;
    forms::CommandButton OK;
    forms::CommandButton Cancel;
    forms::Label AboutPlaysEverywhere;
    forms::Label AboutSmaller;
    forms::Label AboutMotionJpeg;
    forms::Label AboutLossless;
    forms::Label AboutCopy;
    forms::TimerControl Watch;

private:
    struct Choice {
        VideoFormat format;
        forms::OptionButton* button;
    };

    void Form_Activate() override;
    bool Form_KeyDown(const base::KeyEvent& key) override;
    void OK_Click();
    void Cancel_Click();
    void Watch_Timer();

    std::array<Choice, 5> Choices();
    void SetUpCopy(bool possible, const std::string& about);
    std::optional<FormatChoice> Ask(const FormatChoice& choice, const base::Rect& area);

    std::function<bool()> cancelled_;
    std::optional<VideoFormat> first_;  // that is chosen when the dialog opens
    std::optional<FormatChoice> answer_;
};

}  // namespace nqp::companion
