#pragma once

#include <memory>
#include <string>

#include "base/event.h"
#include "forms/backend.h"

namespace nqp::forms {

class Form;

// Ticks from its form's load to its unload, hidden or not.
class TimerControl {
public:
    TimerControl(Form& form, const std::string& name, int milliseconds);
    TimerControl(const TimerControl&) = delete;
    TimerControl& operator=(const TimerControl&) = delete;

    base::Event<> Timer;

    const std::string& Name() const { return name_; }
    int Interval() const { return milliseconds_; }

private:
    friend class Form;
    void Start();
    void Stop() { peer_.reset(); }

    std::string name_;
    int milliseconds_;
    std::unique_ptr<TimerPeer> peer_;
};

}  // namespace nqp::forms
