#pragma once

#include <filesystem>

namespace nqp::platform {

// Lets the system start `programFile` as the server of core::kWizardProgId, and the companion in
// the same folder, if there is one, as that of core::kCompanionProgId. Writes for the present user,
// where something is missing or leads elsewhere; otherwise a few values are read. A failure goes to
// the debug output only: the player plays without either.
void RegisterAutomation(const std::filesystem::path& programFile) noexcept;

}  // namespace nqp::platform
