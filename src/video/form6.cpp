#include "video/form6.h"

#include <array>

#include "video/play_rate.h"

namespace nqp::video {
namespace {

// Twips.
constexpr base::Size kClient{5400, 2130};
constexpr base::Twips kMargin = 240;
constexpr base::Rect kCaptionBounds{kMargin, 240, 1500, 345};
constexpr base::Rect kTextBounds{4260, 240, 900, 345};
constexpr base::Rect kSliderBounds{kMargin, 690, kClient.width - 2 * kMargin, 450};
constexpr base::Rect kNormalBounds{kMargin, 1590, 1800, 375};
constexpr base::Rect kCloseBounds{3960, 1590, 1200, 375};
constexpr base::Twips kMarkWidth = 600;
constexpr base::Twips kMarkTop = 1140;
constexpr base::Twips kMarkHeight = 270;
// The middle of the slider's thumb at either end of its way, from the slider's edges.
constexpr base::Twips kSliderInset = 195;

constexpr forms::Color kPaper = forms::Rgb(249, 249, 250);
constexpr forms::Color kInk = forms::Rgb(28, 28, 32);
constexpr forms::Color kFaintInk = forms::Rgb(92, 94, 102);

constexpr std::array<const char*, Form6::kMarkCount> kMarks = {"0.25", "0.5", "1", "2", "4"};

base::Rect MarkBounds(int index) {
    const base::Twips way = kSliderBounds.width - 2 * kSliderInset;
    const base::Twips centre = kSliderBounds.left + kSliderInset +
                               way * static_cast<base::Twips>(index) / (Form6::kMarkCount - 1);
    return {centre - kMarkWidth / 2, kMarkTop, kMarkWidth, kMarkHeight};
}

}  // namespace

Form6::Form6(core::MediaEngine& engine)
    : forms::Form({.name = "Form6",
                   .caption = "Playrate",
                   .frame = forms::FrameStyle::Dialog,
                   .bounds = {0, 0, kClient.width, kClient.height},
                   .backColor = kPaper,
                   .topmost = true}),
      Label1(*this, "Label1", 101, kCaptionBounds, "Play rate"),
      Text1(*this, "Text1", 102, kTextBounds),
      Slider1(*this, "Slider1", 103, kSliderBounds, kSlowestStep, kFastestStep),
      Label2(*this, "Label2", 104, MarkBounds),
      Command1(*this, "Command1", 110, kNormalBounds, "&Normal speed"),
      Command2(*this, "Command2", 111, kCloseBounds, "Close"),
      MediaPlayer1_(engine) {
    Label1.SetColors(kInk, kPaper);
    Text1.SetAlignment(forms::Align::Right);
    Slider1.SetColors(kInk, kPaper);
    for (int index = 0; index < kMarkCount; ++index) {
        Label2[index].SetCaption(kMarks[static_cast<std::size_t>(index)]);
        Label2[index].SetAlignment(forms::Align::Center);
        Label2[index].SetColors(kFaintInk, kPaper);
    }
    Slider1.Change.calls<&Form6::Slider1_Change>(this);
    Text1.LostFocus.calls<&Form6::Text1_LostFocus>(this);
    Command1.Click.calls<&Form6::Command1_Click>(this);
    Command2.Click.calls<&Form6::Command2_Click>(this);
}

void Form6::CentreOnScreen() {
    const base::Size screen = forms::ScreenSize();
    CentreOver({0, 0, screen.width, screen.height});
}

void Form6::Form_Load() {
    ShowRateInForce();
}

void Form6::Form_Activate() {
    ShowRateInForce();
    Slider1.SetFocus();
}

bool Form6::Form_KeyDown(const base::KeyEvent& key) {
    if (key.KeyCode == base::kKeyEscape) {
        Unload();
        return true;
    }
    return key.KeyCode == base::kKeyEnter && ApplyText();
}

void Form6::Slider1_Change() {
    SetRate(RateOfStep(Slider1.Value()));
}

void Form6::Text1_LostFocus() {
    ApplyText();
}

void Form6::Command1_Click() {
    SetRate(1.0);
}

void Form6::Command2_Click() {
    Unload();
}

void Form6::SetRate(double rate) {
    MediaPlayer1_.SetRate(rate);
    ShowRateInForce();
}

// False when the text is the rate in force already, so that Enter is free for the button that has
// the focus. A text that is no rate gives way to the one in force.
bool Form6::ApplyText() {
    if (Text1.Text() == TextOfRate(MediaPlayer1_.Rate())) return false;
    SetRate(RateOfText(Text1.Text()).value_or(MediaPlayer1_.Rate()));
    return true;
}

void Form6::ShowRateInForce() {
    Text1.SetText(TextOfRate(MediaPlayer1_.Rate()));
    Slider1.SetValue(StepOfRate(MediaPlayer1_.Rate()));
}

}  // namespace nqp::video
