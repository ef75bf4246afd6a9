#include "remote/time_read_out.h"

#include <utility>

#include "base/geometry.h"
#include "base/time_text.h"

namespace nqp::remote {
std::string TimeReadOut::Read(double position, double duration, bool& loading) {
    const std::string text = base::TimeText(base::RoundHalfEven(show_total ? duration : position));
    return show_total ? text : ReadElapsed(text, loading);
}

std::string TimeReadOut::ReadElapsed(const std::string& text, bool& loading) {
    const std::string previous = std::exchange(previous_text_, text);
    if (previous.empty()) return text;
    if (text != previous) loading = false;
    return loading ? "Loading..." : text;
}

}  // namespace nqp::remote
