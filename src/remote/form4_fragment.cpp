#include "remote/form4.h"

// The two ends of the fragment that the wizard cuts: six fields, and the buttons that mark them.
namespace nqp::remote {

fragments::FragmentBounds Form4::MarkedFragment() const {
    fragments::FragmentBounds bounds;
    bounds.begin = {Text1.Text(), Text2.Text(), Text3.Text()};
    bounds.end = {Text5.Text(), Text4.Text(), Text6.Text()};
    return bounds;
}

void Form4::ShowFragment(const fragments::FragmentBounds& bounds) {
    Text1.SetText(bounds.begin.hours);
    Text2.SetText(bounds.begin.minutes);
    Text3.SetText(bounds.begin.seconds);
    Text5.SetText(bounds.end.hours);
    Text4.SetText(bounds.end.minutes);
    Text6.SetText(bounds.end.seconds);
}

void Form4::LeaveBound(fragments::BoundEnd which, fragments::BoundPart part) {
    fragments::FragmentBounds bounds = MarkedFragment();
    bounds.Leave(which, part, base::RoundHalfEven(Form1_.MediaPlayer1().Duration()));
    ShowFragment(bounds);
}

void Form4::Command1_Click() {
    fragments::FragmentBounds bounds = MarkedFragment();
    bounds.MarkBegin(base::RoundHalfEven(Form1_.MediaPlayer1().CurrentPosition()), !title_.empty());
    ShowFragment(bounds);
}

// The wizard must not lie behind the full-screen picture.
void Form4::Command2_Click() {
    core::MediaEngine& engine = Form1_.MediaPlayer1();
    fragments::FragmentBounds bounds = MarkedFragment();
    bounds.MarkEnd(base::RoundHalfEven(engine.CurrentPosition()), !title_.empty());
    ShowFragment(bounds);
    if (!transport_.bPause) Picture9_Click();
    engine.SetDisplaySize(core::kWindowDisplay);
    OpenWizard();
}

}  // namespace nqp::remote
