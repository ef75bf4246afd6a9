#include <algorithm>

#include "base/time_text.h"
#include "remote/face.h"
#include "remote/form4.h"

// The two sliders, and the timer that moves the position knob and writes the time.
namespace nqp::remote {
namespace {

// What a key moves the position by, seconds.
constexpr double kSmallSeek = 5;
constexpr double kLargeSeek = 60;
// Keys that move the volume knob take it down its track in so many steps.
constexpr base::Twips kVolumeSteps = 20;
constexpr base::Twips kVolumePage = 4;  // steps

}  // namespace

PositionTrack Form4::SeekTrack() const {
    return {Line12.X1(), Line12.X2(), Line11.X1(), Line11.X2(), Picture12.Width()};
}

VolumeTrack Form4::LoudnessTrack() const {
    return {Line13.Y1(), Line13.Y2(), Picture13.Height()};
}

void Form4::RewindPositionKnob() {
    Picture12.SetLeft(Line11.X1());
}

void Form4::Picture12_MouseDown(const base::MouseEvent& mouse) {
    position_drag_.Press(mouse.X);
    ShowDraggedTime();
}

void Form4::Picture12_MouseMove(const base::MouseEvent& mouse) {
    hover_.Reset();
    if (!position_drag_.Active()) return;
    const base::Twips left = position_drag_.EdgeFor(Picture12.Left(), mouse.X);
    Picture12.Move(
        {SeekTrack().Clamped(left), Picture12.Top(), Picture12.Width(), Picture12.Height()});
    ShowDraggedTime();
}

void Form4::ShowDraggedTime() {
    const double duration = Form1_.MediaPlayer1().Duration();
    if (!SeekTrack().HasRoom()) return;
    drag_time_ = SeekTrack().SecondAt(Picture12.Left(), duration);
    Picture12.SetAccessibleValue(base::TimeText(drag_time_));
}

void Form4::Picture12_MouseUp(const base::MouseEvent&) {
    // A release that belongs to a press elsewhere is none of this knob.
    if (!position_drag_.Active()) return;
    position_drag_.Release();
    core::MediaEngine& engine = Form1_.MediaPlayer1();
    const PositionTrack track = SeekTrack();
    last_seek_target_ = track.SecondAt(Picture12.Left(), engine.Duration());
    engine.SetCurrentPosition(track.SecondAt(Picture12.Left(), engine.Duration()));
}

void Form4::Picture12_KeyDown(const base::KeyEvent& key) {
    const core::MediaEngine& engine = Form1_.MediaPlayer1();
    const double position = engine.CurrentPosition();
    switch (key.KeyCode) {
        case base::kKeyLeft:
        case base::kKeyDown:
            return SeekTo(position - kSmallSeek);
        case base::kKeyRight:
        case base::kKeyUp:
            return SeekTo(position + kSmallSeek);
        case base::kKeyPageDown:
            return SeekTo(position - kLargeSeek);
        case base::kKeyPageUp:
            return SeekTo(position + kLargeSeek);
        case base::kKeyHome:
            return SeekTo(0);
        case base::kKeyEnd:
            return SeekTo(engine.Duration());
        default:
            return;
    }
}

void Form4::SeekTo(double seconds) {
    core::MediaEngine& engine = Form1_.MediaPlayer1();
    if (engine.CurrentPosition() == core::kNothingLoaded || engine.Duration() <= 0) return;
    const std::int32_t last = base::Floor(engine.Duration());
    const std::int32_t target = std::clamp(base::Floor(seconds), 0, last);
    engine.SetCurrentPosition(target);
    Picture12.SetAccessibleValue(base::TimeText(target));
}

// The seek is measured with the knob's width.
void Form4::Picture12_Resize() {
    Picture12.Move(
        {Picture12.Left(), Picture12.Top(), face::kPositionKnob.width, Picture12.Height()});
}

void Form4::Picture13_MouseDown(const base::MouseEvent& mouse) {
    volume_drag_.Press(mouse.Y);
}

void Form4::Picture13_MouseMove(const base::MouseEvent& mouse) {
    if (volume_drag_.Active()) MoveVolumeKnob(volume_drag_.EdgeFor(Picture13.Top(), mouse.Y));
}

void Form4::Picture13_MouseUp(const base::MouseEvent&) {
    volume_drag_.Release();
}

void Form4::MoveVolumeKnob(base::Twips top) {
    Picture13.Move(
        {Picture13.Left(), LoudnessTrack().Clamped(top), Picture13.Width(), Picture13.Height()});
    ApplyVolume(Form1_.MediaPlayer1(), LoudnessTrack().VolumeAt(Picture13.Top()));
    SayVolume();
}

void Form4::SayVolume() {
    const double loudness = 100 * (1 - LoudnessTrack().FractionAt(Picture13.Top()));
    Picture13.SetAccessibleValue(std::to_string(base::RoundHalfEven(loudness)) + " %");
}

void Form4::Picture13_KeyDown(const base::KeyEvent& key) {
    const base::Twips step = (Line13.Y2() - Line13.Y1() - Picture13.Height()) / kVolumeSteps;
    switch (key.KeyCode) {
        case base::kKeyUp:
        case base::kKeyRight:
            return MoveVolumeKnob(Picture13.Top() - step);
        case base::kKeyDown:
        case base::kKeyLeft:
            return MoveVolumeKnob(Picture13.Top() + step);
        case base::kKeyPageUp:
            return MoveVolumeKnob(Picture13.Top() - kVolumePage * step);
        case base::kKeyPageDown:
            return MoveVolumeKnob(Picture13.Top() + kVolumePage * step);
        case base::kKeyHome:
            return MoveVolumeKnob(Line13.Y1());
        case base::kKeyEnd:
            return MoveVolumeKnob(Line13.Y2());
        default:
            return;
    }
}

void Form4::Label2_Click() {
    time_.show_total = !time_.show_total;
}

void Form4::Label2_MouseDown(const base::MouseEvent&) {
    hover_.Reset();
}

void Form4::Timer1_Timer() {
    ServeWizard();
    if (!Loaded()) return;
    const core::MediaEngine& engine = Form1_.MediaPlayer1();
    const double position = engine.CurrentPosition();
    if (position == core::kNothingLoaded) return;
    if (position_drag_.Active()) {
        Label2.SetCaption(base::TimeText(drag_time_));
        return;
    }
    const double duration = engine.Duration();
    MovePositionKnob(position, duration);
    Label2.SetCaption(time_.Read(position, duration, transport_.loading));
    Picture12.SetAccessibleValue(base::TimeText(base::RoundHalfEven(position)));
}

// A clip that tells no duration leaves the knob where it is.
void Form4::MovePositionKnob(double position, double duration) {
    if (duration > 0) Picture12.SetLeft(SeekTrack().LeftAt(position, duration));
}

}  // namespace nqp::remote
