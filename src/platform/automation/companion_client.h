#pragma once

#include <filesystem>
#include <utility>

#include "core/companion.h"

namespace nqp::platform {

// The program that cuts fragments, as the system knows it. `Begin` is called on the window thread.
class AutomationCompanion final : public core::Companion {
public:
    // Without the program file at its place no job is begun: another installation's companion may
    // be the one that the system knows.
    explicit AutomationCompanion(std::filesystem::path programFile)
        : program_file_(std::move(programFile)) {}

    std::unique_ptr<core::CompanionJob> Begin(const core::FragmentJob& job,
                                              core::RunMode mode) override;

private:
    std::filesystem::path program_file_;
};

}  // namespace nqp::platform
