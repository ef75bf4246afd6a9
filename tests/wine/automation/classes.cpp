#include "classes.h"

#include "base/file.h"
#include "core/companion.h"
#include "core/wizard.h"
#include "forms/win32/winapi/text.h"
#include "platform/automation/companion_class.h"
#include "platform/automation/wizard_interface.h"
#include "platform/registry.h"

namespace nqp::test {
namespace {

constexpr wchar_t kUserClasses[] = L"Software\\Classes\\";

std::string Text(const std::wstring& key, const std::wstring& name, HKEY root) {
    const auto value = platform::RegistryValueAt(key, name, root);
    return value ? winapi::Utf8(value->Text().value_or(L"no text")) : "none";
}

void RemoveBelow(const std::wstring& folder, HKEY root) {
    const std::wstring keys[] = {
        winapi::Utf16(core::kWizardProgId),
        winapi::Utf16(core::kCompanionProgId),
        std::wstring(L"CLSID\\") + platform::kWizardClass,
        std::wstring(L"CLSID\\") + platform::kCompanionClass,
        std::wstring(L"Interface\\") + platform::kWizardInterface,
        std::wstring(L"TypeLib\\") + platform::kWizardTypeLibrary,
        std::wstring(L"Interface\\") + platform::kCompanionInterface,
        std::wstring(L"TypeLib\\") + platform::kCompanionTypeLibrary,
    };
    for (const std::wstring& key : keys)
        platform::DeleteRegistryTree(folder + key, root);
}

}  // namespace

std::string ClassText(const std::wstring& key, const std::wstring& name) {
    return Text(key, name, HKEY_CLASSES_ROOT);
}

std::string UserClassText(const std::wstring& key, const std::wstring& name) {
    return Text(kUserClasses + key, name, HKEY_CURRENT_USER);
}

void SetClassText(const std::wstring& key, const std::string& text) {
    platform::RegistryKey::Create(key, HKEY_CLASSES_ROOT).SetText(L"", winapi::Utf16(text));
}

void RemoveUserClasses() {
    RemoveBelow(kUserClasses, HKEY_CURRENT_USER);
}

void RemoveClasses() {
    RemoveUserClasses();
    RemoveBelow(L"", HKEY_CLASSES_ROOT);
}

std::string Quoted(const std::filesystem::path& path) {
    std::string quoted = "\"";
    return quoted.append(base::Utf8FromPath(path)).append("\"");
}

}  // namespace nqp::test
