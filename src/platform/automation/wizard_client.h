#pragma once

#include <filesystem>
#include <utility>

#include "core/wizard.h"

namespace nqp::platform {

// The wizard in a process of its own. Used on the window thread, which has entered an apartment.
class AutomationWizards final : public core::WizardFactory {
public:
    // The program that the system is to start.
    explicit AutomationWizards(std::filesystem::path programFile)
        : program_file_(std::move(programFile)) {}

    std::unique_ptr<core::Wizard> Create() override;
    base::NativeWindow Window() const override;
    void CloseWindow() override;
    bool TakeOver() override;
    bool IsOurs() const override;

private:
    base::NativeWindow taken_ = nullptr;  // may be closed since
    std::filesystem::path program_file_;
};

}  // namespace nqp::platform
