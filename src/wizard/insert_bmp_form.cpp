#include "wizard/insert_bmp_form.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "base/bmp_reader.h"
#include "base/file.h"
#include "forms/run_time_error.h"

namespace nqp::wizard {
namespace {

constexpr base::Size kDesignSize{9600, 7200};       // twips; the window covers the screen
constexpr base::Rect kNoPicture{0, 0, 1500, 1500};  // until one is loaded
constexpr forms::Color kFrameColor = forms::Rgb(58, 61, 68);
constexpr std::int32_t kWhole = 1000;

std::string CaptionOf(const core::PicturePosition& position) {
    return "Position of image in a video fragment - Drag and Drop - X: " +
           std::to_string(position.x) + "   Y: " + std::to_string(position.y);
}

// A picture that leaves no room has no position.
std::int32_t Thousandths(base::Twips place, base::Twips room) {
    if (room == 0) throw forms::RunTimeError("The picture is as large as the video.");
    return std::clamp(base::RoundHalfEven(double{place} / double{room} * kWhole), 0, kWhole);
}

}  // namespace

InsertBMPForm::InsertBMPForm(core::MessageBoxes& boxes)
    : forms::Form({.name = "InsertBMPForm",
                   .caption = CaptionOf({}),
                   .frame = forms::FrameStyle::Dialog,
                   .bounds = {0, 0, kDesignSize.width, kDesignSize.height},
                   .backColor = kFrameColor,
                   .maximized = true}),
      Picture1(*this, "Picture1", 121, kNoPicture),
      boxes_(boxes) {
    Picture1.SetColors(forms::Rgb(28, 28, 32), forms::Rgb(200, 200, 200));
    Picture1.SetAccessibleName("Picture");
    Picture1.MouseDown.calls<&InsertBMPForm::Picture1_MouseDown>(this);
    Picture1.MouseMove.calls<&InsertBMPForm::Picture1_MouseMove>(this);
    Picture1.MouseUp.calls<&InsertBMPForm::Picture1_MouseUp>(this);
}

std::optional<core::PicturePosition> InsertBMPForm::Place(const std::string& picturePath) {
    picture_path_ = picturePath;
    accepted_ = false;
    ShowModal();
    Unload();
    if (!accepted_) return std::nullopt;
    return position_;
}

void InsertBMPForm::Form_Activate() {
    dragging_ = false;
    auto picture = base::ReadBmp(base::ReadFile(base::PathFromUtf8(picture_path_)));
    if (!picture) {
        Hide();
        throw forms::RunTimeError("The picture " + picture_path_ + " cannot be read.");
    }
    const base::Size size{base::PixelsToTwips(picture->Width(), base::kDesignDpi),
                          base::PixelsToTwips(picture->Height(), base::kDesignDpi)};
    Picture1.SetPicture(std::make_shared<const base::Bitmap>(*std::move(picture)));
    Picture1.Move({Picture1.Left(), Picture1.Top(), size.width, size.height});
}

// It stands for the whole video, whatever the system makes of it.
void InsertBMPForm::Form_Resize() {
    if (!Maximized()) Maximize();
}

bool InsertBMPForm::Form_KeyDown(const base::KeyEvent& key) {
    if (key.KeyCode != base::kKeyEscape) return false;
    Hide();
    return true;
}

void InsertBMPForm::Picture1_MouseDown(const base::MouseEvent& mouse) {
    dragging_ = true;
    grab_x_ = base::RoundHalfEven(mouse.X);
    grab_y_ = base::RoundHalfEven(mouse.Y);
}

void InsertBMPForm::Picture1_MouseMove(const base::MouseEvent& mouse) {
    if (!dragging_) return;
    MovePicture(Picture1.Left() + mouse.X - static_cast<base::Twips>(grab_x_),
                Picture1.Top() + mouse.Y - static_cast<base::Twips>(grab_y_));
    // A picture without a position ends the drag: it is told once, and cannot be accepted.
    dragging_ = false;
    forms::Guarded(forms::Origin::User, [this] {
        ReadPosition();
        dragging_ = true;
    });
}

void InsertBMPForm::MovePicture(base::Twips left, base::Twips top) {
    Picture1.Move({left, top, Picture1.Width(), Picture1.Height()});
}

void InsertBMPForm::ReadPosition() {
    const base::Size area = ClientSize();
    position_ = {Thousandths(Picture1.Left(), area.width - Picture1.Width()),
                 Thousandths(Picture1.Top(), area.height - Picture1.Height())};
    SetCaption(CaptionOf(position_));
}

// The position stays that of the last move: it was within the frame already.
void InsertBMPForm::Picture1_MouseUp(const base::MouseEvent&) {
    if (!dragging_) return;
    dragging_ = false;
    SnapInside();
    if (!boxes_.Accepts(Handle(), "Accept current position?")) return;
    accepted_ = true;
    Hide();
}

void InsertBMPForm::SnapInside() {
    const base::Size area = ClientSize();
    base::Twips left = std::max(0.0F, Picture1.Left());
    base::Twips top = std::max(0.0F, Picture1.Top());
    if (area.width < left + Picture1.Width()) left = area.width - Picture1.Width();
    if (area.height < top + Picture1.Height()) top = area.height - Picture1.Height();
    MovePicture(left, top);
}

}  // namespace nqp::wizard
