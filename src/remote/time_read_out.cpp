#include "remote/time_read_out.h"

#include <utility>

#include "base/geometry.h"

namespace nqp::remote {
namespace {

constexpr std::int32_t kSecondsPerMinute = 60;
constexpr std::int32_t kSecondsPerHour = 3600;
constexpr std::int32_t kMinutesPerHour = 60;

std::string TwoDigits(std::int32_t value) {
    const std::string digits = std::to_string(value);
    return digits.size() < 2 ? "0" + digits : digits;
}

}  // namespace

std::string TimeText(std::int32_t seconds) {
    const std::int32_t hours = seconds / kSecondsPerHour;
    const std::int32_t minutes = seconds / kSecondsPerMinute - kMinutesPerHour * hours;
    const std::int32_t rest = seconds % kSecondsPerMinute;
    return TwoDigits(hours) + ":" + TwoDigits(minutes) + ":" + TwoDigits(rest);
}

std::string TimeReadOut::Read(double position, double duration, bool& loading) {
    const std::string text = TimeText(base::RoundHalfEven(show_total ? duration : position));
    return show_total ? text : ReadElapsed(text, loading);
}

std::string TimeReadOut::ReadElapsed(const std::string& text, bool& loading) {
    const std::string previous = std::exchange(previous_text_, text);
    if (previous.empty()) return text;
    if (text != previous) loading = false;
    return loading ? "Loading..." : text;
}

}  // namespace nqp::remote
