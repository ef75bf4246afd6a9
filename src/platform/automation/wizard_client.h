#pragma once

#include "core/wizard.h"

namespace nqp::platform {

// The wizard in a process of its own. Used on the window thread, which has entered an apartment.
class AutomationWizards final : public core::WizardFactory {
public:
    std::unique_ptr<core::Wizard> Create() override;
    base::NativeWindow Window() const override;
    void CloseWindow() override;
};

}  // namespace nqp::platform
