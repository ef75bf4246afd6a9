#pragma once

#include <cstdint>
#include <string>

namespace nqp::base {

struct TimeParts {
    std::int32_t hours = 0;
    std::int32_t minutes = 0;
    std::int32_t seconds = 0;
};

TimeParts SplitSeconds(std::int32_t seconds);

// Two digits at least.
std::string TwoDigits(std::int32_t value);

// Whole seconds as "hh:mm:ss".
std::string TimeText(std::int32_t seconds);

}  // namespace nqp::base
