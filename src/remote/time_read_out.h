#pragma once

#include <string>

namespace nqp::remote {

// What the remote's clock shows from tick to tick.
class TimeReadOut {
public:
    bool show_total = false;  // the clip's whole time in place of the elapsed one

    // Another clip was opened: its first reading has none before it to differ from.
    void StartClip() { previous_text_.clear(); }

    // `loading` is true from the start of playing; the first reading of the elapsed time that
    // differs from the one before clears it. Until then "Loading..." is shown.
    std::string Read(double position, double duration, bool& loading);

private:
    std::string ReadElapsed(const std::string& text, bool& loading);

    std::string previous_text_;
};

}  // namespace nqp::remote
