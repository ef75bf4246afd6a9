#pragma once

#include <filesystem>
#include <utility>

#include "core/wizard.h"
#include "platform/handle.h"

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

// The other side of TakeOver, in the wizard's process: which player it serves.
class WizardOwner {
public:
    // To be called again and again while the window is there.
    void Look(base::NativeWindow wizardWindow);
    // A player has taken the window over, and the last one that did has ended.
    bool Gone() const;

private:
    unsigned long process_ = 0;
    Handle player_;
};

}  // namespace nqp::platform
