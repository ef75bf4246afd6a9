#include "base/time_text.h"

namespace nqp::base {
namespace {

constexpr std::int32_t kSecondsPerMinute = 60;
constexpr std::int32_t kSecondsPerHour = 3600;
constexpr std::int32_t kMinutesPerHour = 60;

}  // namespace

TimeParts SplitSeconds(std::int32_t seconds) {
    const std::int32_t hours = seconds / kSecondsPerHour;
    const std::int32_t minutes = seconds / kSecondsPerMinute - kMinutesPerHour * hours;
    return {hours, minutes, seconds % kSecondsPerMinute};
}

std::string TwoDigits(std::int32_t value) {
    const std::string digits = std::to_string(value);
    return digits.size() < 2 ? "0" + digits : digits;
}

std::string TimeText(std::int32_t seconds) {
    const TimeParts parts = SplitSeconds(seconds);
    return TwoDigits(parts.hours) + ":" + TwoDigits(parts.minutes) + ":" + TwoDigits(parts.seconds);
}

}  // namespace nqp::base
