#pragma once

#include "core/schedule.h"

namespace nqp::platform {

class SystemClock final : public core::Clock {
public:
    core::LocalTime Now() const override;
    std::chrono::steady_clock::time_point Steady() const override;
};

}  // namespace nqp::platform
