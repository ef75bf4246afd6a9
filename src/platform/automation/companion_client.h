#pragma once

#include "core/companion.h"

namespace nqp::platform {

// The program that cuts fragments, as the system knows it. `Begin` is called on the window thread.
class AutomationCompanion final : public core::Companion {
public:
    std::unique_ptr<core::CompanionJob> Begin(const core::FragmentJob& job,
                                              core::RunMode mode) override;
};

}  // namespace nqp::platform
