#include "platform/system_clock.h"

#include <windows.h>

namespace nqp::platform {

core::LocalTime SystemClock::Now() const {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return {.month = now.wMonth, .day = now.wDay, .hour = now.wHour, .minute = now.wMinute};
}

std::chrono::steady_clock::time_point SystemClock::Steady() const {
    return std::chrono::steady_clock::now();
}

}  // namespace nqp::platform
