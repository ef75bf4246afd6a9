#include "dialog/format_dialog.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "base/time_text.h"
#include "forms/dialog_look.h"

namespace nqp::companion {
namespace {

// Twips.
constexpr base::Twips kMargin = 300;
constexpr base::Size kClient{6900, 5310};
constexpr base::Twips kWidth = kClient.width - 2 * kMargin;
constexpr base::Rect kHeadingBounds{kMargin, 240, kWidth, 330};
constexpr base::Twips kFirstRow = 690;
constexpr base::Twips kRowPitch = 690;
constexpr base::Twips kLine = 285;
// The explanations begin under the captions, behind the round marks.
constexpr base::Twips kAboutDrop = 285;
constexpr base::Twips kAboutIndent = 270;
constexpr base::Twips kDoNotAskTop = kFirstRow + 5 * kRowPitch + 75;
constexpr base::Size kButton{1350, forms::look::kButtonHeight};
constexpr base::Twips kButtonTop = kClient.height - 240 - kButton.height;

constexpr int kWatchMilliseconds = 100;

constexpr char kForJob[] = "How should this fragment be saved?";
constexpr char kForSettings[] = "How should video fragments be saved?";
constexpr char kNoCopy[] = "Not possible with this clip and these settings.";
constexpr char kCopyInSettings[] =
    "The clip's own data. Where that is not possible, you are asked.";

constexpr base::Rect Row(int index) {
    return {kMargin, kFirstRow + kRowPitch * static_cast<base::Twips>(index), kWidth, kLine};
}

constexpr base::Rect About(int index) {
    return {kMargin + kAboutIndent, Row(index).top + kAboutDrop, kWidth - kAboutIndent, kLine};
}

// With hundredths, down to the one in which the copy has begun already.
std::string TimeOf(double seconds) {
    constexpr std::int64_t kHundred = 100;
    const auto hundredths = static_cast<std::int64_t>(std::floor(seconds * kHundred + 1e-6));
    return base::TimeText(static_cast<std::int32_t>(hundredths / kHundred)) + "." +
           base::TwoDigits(static_cast<std::int32_t>(hundredths % kHundred));
}

}  // namespace

FormatDialog::FormatDialog()
    : forms::Form({.name = "FormatDialog",
                   .caption = "Framewright",
                   .frame = forms::FrameStyle::Dialog,
                   .bounds = {0, 0, kClient.width, kClient.height},
                   .backColor = forms::look::kPaper,
                   .topmost = true}),
      Heading(*this, "Heading", 101, kHeadingBounds),
      PlaysEverywhere(*this, "PlaysEverywhere", 111, Row(0), "&Plays everywhere", true),
      Smaller(*this, "Smaller", 112, Row(1), "&Smaller file"),
      MotionJpeg(*this, "MotionJpeg", 113, Row(2), "&Motion JPEG"),
      Lossless(*this, "Lossless", 114, Row(3), "&Lossless"),
      Copy(*this, "Copy", 115, Row(4), "&No re-encoding, starts at the key frame before"),
      DoNotAsk(*this, "DoNotAsk", 121, {kMargin, kDoNotAskTop, kWidth, kLine}, "&Do not ask again"),
      OK(*this, "OK", 131,
         {kClient.width - kMargin - 2 * kButton.width - forms::look::kButtonGap, kButtonTop,
          kButton.width, kButton.height},
         "OK", true),
      Cancel(*this, "Cancel", 132,
             {kClient.width - kMargin - kButton.width, kButtonTop, kButton.width, kButton.height},
             "Cancel"),
      AboutPlaysEverywhere(*this, "AboutPlaysEverywhere", 141, About(0),
                           "MPEG-4 version 3 and PCM sound: the system's own codecs."),
      AboutSmaller(*this, "AboutSmaller", 142, About(1),
                   "MPEG-4 part 2 and MP3 sound: the smallest of these files."),
      AboutMotionJpeg(*this, "AboutMotionJpeg", 143, About(2),
                      "Every frame for itself, and PCM sound: large, and easy to edit."),
      AboutLossless(*this, "AboutLossless", 144, About(3),
                    "FFV1 and PCM sound: nothing is lost, and very large."),
      AboutCopy(*this, "AboutCopy", 145, About(4)),
      Watch(*this, "Watch", kWatchMilliseconds) {
    Heading.SetColors(forms::look::kInk, forms::look::kPaper);
    Heading.SetFont(true, 1.0F);
    for (const Choice& choice : Choices())
        choice.button->SetColors(forms::look::kInk, forms::look::kPaper);
    for (forms::Label* about :
         {&AboutPlaysEverywhere, &AboutSmaller, &AboutMotionJpeg, &AboutLossless, &AboutCopy})
        about->SetColors(forms::look::kFaintInk, forms::look::kPaper);
    DoNotAsk.SetColors(forms::look::kInk, forms::look::kPaper);
    OK.Click.calls<&FormatDialog::OK_Click>(this);
    Cancel.Click.calls<&FormatDialog::Cancel_Click>(this);
    Watch.Timer.calls<&FormatDialog::Watch_Timer>(this);
}

std::array<FormatDialog::Choice, 5> FormatDialog::Choices() {
    return {{{VideoFormat::PlaysEverywhere, &PlaysEverywhere},
             {VideoFormat::Smaller, &Smaller},
             {VideoFormat::MotionJpeg, &MotionJpeg},
             {VideoFormat::Lossless, &Lossless},
             {VideoFormat::Copy, &Copy}}};
}

std::optional<FormatChoice> FormatDialog::AskForJob(const FormatOffer& offer,
                                                    const base::Rect& area,
                                                    std::function<bool()> cancelled) {
    Heading.SetCaption(kForJob);
    SetUpCopy(offer.copyBegin.has_value(),
              offer.copyBegin ? "The clip's own data, from " + TimeOf(*offer.copyBegin) + " on."
                              : kNoCopy);
    cancelled_ = std::move(cancelled);
    return Ask(offer.choice, area);
}

std::optional<FormatChoice> FormatDialog::AskForSettings(const FormatChoice& choice,
                                                         const base::Rect& area) {
    Heading.SetCaption(kForSettings);
    SetUpCopy(true, kCopyInSettings);
    cancelled_ = nullptr;
    return Ask(choice, area);
}

void FormatDialog::SetUpCopy(bool possible, const std::string& about) {
    Copy.SetEnabled(possible);
    AboutCopy.SetCaption(about);
}

std::optional<FormatChoice> FormatDialog::Ask(const FormatChoice& choice, const base::Rect& area) {
    const bool possible = choice.format != VideoFormat::Copy || Copy.Enabled();
    first_ = possible ? choice.format : VideoFormat::PlaysEverywhere;
    answer_.reset();
    DoNotAsk.SetChecked(!choice.ask);
    Load();
    CentreOver(area);
    ShowModal();
    Unload();  // where the program ends meanwhile
    return answer_;
}

// The platform chooses an option button that gets the focus, the first one to begin with.
void FormatDialog::Form_Activate() {
    const auto first = std::exchange(first_, std::nullopt);
    for (const Choice& choice : Choices()) {
        if (choice.format != first) continue;
        choice.button->Choose();
        choice.button->SetFocus();
    }
}

bool FormatDialog::Form_KeyDown(const base::KeyEvent& key) {
    if (key.KeyCode != base::kKeyEscape) return false;
    Unload();
    return true;
}

void FormatDialog::OK_Click() {
    for (const Choice& choice : Choices()) {
        if (choice.button->Chosen()) answer_ = {choice.format, !DoNotAsk.Checked()};
    }
    Unload();
}

void FormatDialog::Cancel_Click() {
    Unload();
}

void FormatDialog::Watch_Timer() {
    if (cancelled_ && cancelled_()) Unload();
}

}  // namespace nqp::companion
