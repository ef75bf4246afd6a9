#pragma once

#include <chrono>

#include "core/settings.h"

namespace nqp::core {

// What the calendar and the clock on the wall show.
struct LocalTime {
    int month = 0;   // 1 to 12
    int day = 0;     // 1 to 31
    int hour = 0;    // 0 to 23
    int minute = 0;  // 0 to 59
};

class Clock {
public:
    virtual LocalTime Now() const = 0;
    // Never set back, and of no use but to tell how much time has passed.
    virtual std::chrono::steady_clock::time_point Steady() const = 0;

protected:
    ~Clock() = default;
};

// Whether the scheduled minute is the present one, in whatever year. One whose month or day is 0
// never is.
constexpr bool IsScheduled(const SharedSettings& settings, const LocalTime& now) {
    return settings.scheduled_month == now.month && settings.scheduled_day == now.day &&
           settings.scheduled_hour == now.hour && settings.scheduled_minute == now.minute;
}

}  // namespace nqp::core
