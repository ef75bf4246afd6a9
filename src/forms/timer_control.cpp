#include "forms/timer_control.h"

#include "forms/form.h"
#include "forms/run_time_error.h"

namespace nqp::forms {

TimerControl::TimerControl(Form& form, const std::string& name, int milliseconds)
    : name_(name), milliseconds_(milliseconds) {
    form.timers_.push_back(this);
}

void TimerControl::Start() {
    peer_ =
        CreateTimerPeer(milliseconds_, [this] { Guarded(Origin::Program, [this] { Timer(); }); });
}

}  // namespace nqp::forms
