#pragma once

#include <filesystem>

namespace nqp::platform {

// Lets the system start `programFile` as the server of core::kWizardProgId, and the companion in
// the same folder, if there is one, as that of core::kCompanionProgId. Writes for the present user,
// where something is missing or leads elsewhere; otherwise a few values are read. A failure goes to
// the debug output only: the player plays without either.
void RegisterAutomation(const std::filesystem::path& programFile) noexcept;

// The same for the companion alone. False when the system does not know it afterwards. Throws
// RegistryError.
bool RegisterCompanion(const std::filesystem::path& companionFile);
// Takes it back where the class leads to this program file; another one's registration stays.
// Throws RegistryError.
void UnregisterCompanion(const std::filesystem::path& companionFile);

}  // namespace nqp::platform
