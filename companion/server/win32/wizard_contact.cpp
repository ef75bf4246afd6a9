#include "server/win32/wizard_contact.h"

#include "core/wizard.h"
#include "forms/win32/winapi/com.h"
#include "platform/automation/late_bound.h"
#include "platform/process.h"

namespace nqp::companion {
namespace {

using platform::AutomationError;

class AutomationContact final : public WizardContact {
public:
    bool ShowStatus(const std::string& text) override {
        try {
            const core::MemberValue argument = text;
            wizard_.Call("set_form7_status", {&argument, 1});
            return true;
        } catch (const AutomationError& error) {
            return error.IsForNow();
        }
    }

    std::optional<std::string> OutputPath() override {
        try {
            const auto answer = wizard_.Call("Get_frwt_OutFilePath");
            const auto* path = std::get_if<std::string>(&answer);
            return path != nullptr ? std::optional(*path) : std::nullopt;
        } catch (const AutomationError& error) {
            platform::WriteDebugLine(error.what());
            return std::nullopt;
        }
    }

private:
    winapi::ComApartment apartment_;
    platform::LateBound wizard_{core::kWizardProgId};
};

}  // namespace

std::unique_ptr<WizardContact> FindWizard() {
    try {
        return std::make_unique<AutomationContact>();
    } catch (const AutomationError& error) {
        platform::WriteDebugLine(error.what());
        return nullptr;
    }
}

}  // namespace nqp::companion
