#include "video/form5.h"

#include <algorithm>
#include <array>

#include "video/form6.h"

namespace nqp::video {
namespace {

enum MenuIndex : int {
    kPlay,
    kPause,
    kOpen,
    kFullScreen,
    kSeparator,
    kShowControl,
    kOptions,
    kStandardSettings,
    kStatistics,
    kPlayRate,
    kMute,
    kExit,
};

constexpr std::array<const char*, Form5::kLabelCount> kCaptions = {
    "Play",       "Pause",        "Open ...", "Fullscreen",
    "",           "Show control", "Options",  "Standard settings",
    "Statistics", "Playrate",     "Mute",     "Exit"};

// Twips.
constexpr base::Twips kMenuWidth = 2700;
constexpr base::Twips kMargin = 75;
constexpr base::Twips kRowHeight = 390;
constexpr base::Twips kSeparatorHeight = 150;
constexpr base::Twips kTextIndent = 270;
constexpr base::Twips kMenuHeight =
    2 * kMargin + (Form5::kLabelCount - 1) * kRowHeight + kSeparatorHeight;

constexpr forms::Color kPaper = forms::Rgb(36, 38, 43);
constexpr forms::Color kInk = forms::Rgb(236, 238, 242);
constexpr forms::Color kHighlightPaper = forms::Rgb(47, 101, 196);
constexpr forms::Color kHighlightInk = forms::Rgb(255, 255, 255);
constexpr forms::Color kRule = forms::Rgb(78, 82, 92);

constexpr int kFirstLabelId = 101;

base::Rect RowBounds(int index) {
    const int rowsAbove = index <= kSeparator ? index : index - 1;
    const base::Twips top = kMargin + static_cast<base::Twips>(rowsAbove) * kRowHeight +
                            (index > kSeparator ? kSeparatorHeight : 0);
    return {kMargin, top, kMenuWidth - 2 * kMargin,
            index == kSeparator ? kSeparatorHeight : kRowHeight};
}

base::Point SeparatorEnd(base::Twips x) {
    const base::Rect row = RowBounds(kSeparator);
    return {x, row.top + row.height / 2};
}

}  // namespace

Form5::Form5()
    : forms::Form({.name = "Form5",
                   .caption = "Nuvex Quillon Player",
                   .frame = forms::FrameStyle::Popup,
                   .bounds = {0, 0, kMenuWidth, kMenuHeight},
                   .backColor = kPaper,
                   .topmost = true}),
      Label1(*this, "Label1", kFirstLabelId, RowBounds),
      Line1(*this, "Line1", SeparatorEnd(kMargin + kTextIndent),
            SeparatorEnd(kMenuWidth - kMargin - kTextIndent)) {
    for (int index = 0; index < kLabelCount; ++index) {
        Label1[index].SetCaption(kCaptions[static_cast<std::size_t>(index)]);
        Label1[index].SetIndent(kTextIndent);
        Label1[index].SetColors(kInk, kPaper);
    }
    Label1[kSeparator].SetVisible(false);
    Line1.SetBorderColor(kRule);
    Label1.Click.calls<&Form5::Label1_Click>(this);
    Label1.MouseMove.calls<&Form5::Label1_MouseMove>(this);
}

void Form5::Connect(forms::Form& videoForm, core::VideoWindow& video, core::RemoteWindow& remote,
                    Form6& playRate) {
    SetOpener(videoForm);
    Form1_ = &video;
    Form4_ = &remote;
    Form6_ = &playRate;
}

void Form5::PlaceAt(base::Point topLeft) {
    const base::Rect area = forms::WorkAreaAt(topLeft);
    const base::Size menu = ExtentOnScreen();
    const base::Twips left = std::max(area.left, std::min(topLeft.x, area.right() - menu.width));
    const base::Twips top = std::max(area.top, std::min(topLeft.y, area.bottom() - menu.height));
    Move({left, top, Width(), Height()});
}

void Form5::CloseAll() {
    Unload();
    Form6_->Unload();
}

void Form5::Form_Load() {
    Highlight(0);
}

void Form5::Form_Unload() {
    Form1_->menu_showing = false;
}

void Form5::Form_Deactivate() {
    Unload();
}

void Form5::Form_MouseMove(const base::MouseEvent&) {
    Highlight(0);
}

void Form5::Label1_MouseMove(int Index, const base::MouseEvent&) {
    Highlight(Index + 1);
}

bool Form5::Form_KeyDown(const base::KeyEvent& key) {
    switch (key.KeyCode) {
        case base::kKeyDown:
            HighlightNeighbour(+1);
            return true;
        case base::kKeyUp:
            HighlightNeighbour(-1);
            return true;
        case base::kKeyHome:
            Highlight(kPlay + 1);
            return true;
        case base::kKeyEnd:
            Highlight(kExit + 1);
            return true;
        case base::kKeyEnter:
        case base::kKeySpace:
            if (highlighted_item != 0) Label1_Click(highlighted_item - 1);
            return true;
        case base::kKeyEscape:
            Unload();
            return true;
        default:
            return false;
    }
}

void Form5::Highlight(int item) {
    if (item == highlighted_item) return;
    if (highlighted_item != 0) Label1[highlighted_item - 1].SetColors(kInk, kPaper);
    highlighted_item = item;
    if (item != 0) Label1[item - 1].SetColors(kHighlightInk, kHighlightPaper);
}

// Goes round at the ends and passes over the separator.
void Form5::HighlightNeighbour(int step) {
    int item = highlighted_item;
    if (item == 0) item = step > 0 ? kLabelCount : 1;
    do {
        item = (item - 1 + step + kLabelCount) % kLabelCount + 1;
    } while (item == kSeparator + 1);
    Highlight(item);
}

void Form5::Label1_Click(int Index) {
    Form1_->menu_showing = false;
    Unload();
    RunCommand(Index);
}

void Form5::RunCommand(int index) {
    switch (index) {
        case kPlay:
            return Form4_->Picture7_Click();
        case kPause:
            return Form4_->Picture9_Click();
        case kOpen:
            return Form4_->Picture11_Click();
        case kFullScreen:
            return ShowFullScreen();
        case kShowControl:
            return Form4_->ShowRemote();
        case kOptions:
            return Form4_->Picture10_Click();
        case kStandardSettings:
            return Form1_->MediaPlayer1().ShowDialog(core::kPropertiesDialog);
        case kStatistics:
            return Form1_->MediaPlayer1().ShowDialog(core::kStatisticsDialog);
        case kPlayRate:
            return ShowPlayRate();
        case kMute:
            return ToggleMute();
        case kExit:
            return Form4_->Picture1_Click();
        default:
            return;
    }
}

void Form5::ShowFullScreen() {
    Form1_->MediaPlayer1().SetDisplaySize(core::kFullScreenDisplay);
    if (Form4_->Settings().control_at_fullscreen) Form4_->ShowRemoteOnTop();
}

void Form5::ShowPlayRate() {
    Form6_->Load();
    Form6_->CentreOnScreen();
    Form6_->SetTopmost(true);
    Form6_->Show();
}

// A volume that was changed since the mute, by the slider say, counts as not muted.
void Form5::ToggleMute() {
    core::MediaEngine& engine = Form1_->MediaPlayer1();
    if (Form4_->muted && engine.Volume() == core::kSilent) {
        engine.SetVolume(Form4_->CurrentVolume);
        Form4_->muted = false;
        return;
    }
    Form4_->CurrentVolume = engine.Volume();
    engine.SetVolume(core::kSilent);
    Form4_->muted = true;
}

}  // namespace nqp::video
