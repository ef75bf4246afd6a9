#include "platform/automation/registration.h"

#include <windows.h>

#include <objbase.h>

#include <algorithm>
#include <exception>
#include <string>
#include <vector>

#include "base/file.h"
#include "core/companion.h"
#include "core/wizard.h"
#include "forms/win32/winapi/text.h"
#include "platform/automation/companion_class.h"
#include "platform/automation/wizard_interface.h"
#include "platform/process.h"
#include "platform/registry.h"

namespace nqp::platform {
namespace {

constexpr wchar_t kUserClasses[] = L"Software\\Classes\\";
// The platform's own class that carries calls by what a type library says.
constexpr wchar_t kTypeLibraryMarshaler[] = L"{00020424-0000-0000-C000-000000000046}";
#ifdef _WIN64
constexpr wchar_t kMachine[] = L"win64";
#else
constexpr wchar_t kMachine[] = L"win32";
#endif

struct Entry {
    std::wstring key;  // below the classes
    std::wstring name;
    std::wstring text;
};

// One class and all that the registry holds about it.
struct ClassEntries {
    std::wstring progId;
    std::wstring classId;
    std::vector<Entry> entries;
};

ClassEntries ServerOf(const char* progId, const wchar_t* classId, const wchar_t* description,
                      const std::filesystem::path& program) {
    ClassEntries made{winapi::Utf16(progId), classId, {}};
    const std::wstring classKey = L"CLSID\\" + made.classId;
    made.entries = {
        {classKey, L"", description},
        {classKey + L"\\LocalServer32", L"", L"\"" + program.wstring() + L"\""},
        {classKey + L"\\ProgID", L"", made.progId},
        {made.progId, L"", description},
        {made.progId + L"\\CLSID", L"", made.classId},
    };
    return made;
}

ClassEntries WizardEntries(const std::filesystem::path& program) {
    ClassEntries wizard =
        ServerOf(core::kWizardProgId, kWizardClass, L"The Quillon Wizard", program);
    const std::wstring interfaceKey = std::wstring(L"Interface\\") + kWizardInterface;
    const std::wstring libraryKey =
        std::wstring(L"TypeLib\\") + kWizardTypeLibrary + L"\\" + kWizardTypeLibraryVersion;
    const std::vector<Entry> types = {
        {L"CLSID\\" + wizard.classId + L"\\TypeLib", L"", kWizardTypeLibrary},
        {interfaceKey, L"", L"IWizard"},
        {interfaceKey + L"\\ProxyStubClsid32", L"", kTypeLibraryMarshaler},
        {interfaceKey + L"\\TypeLib", L"", kWizardTypeLibrary},
        {interfaceKey + L"\\TypeLib", L"Version", kWizardTypeLibraryVersion},
        {libraryKey, L"", L"Nuvex Quillon Player"},
        {libraryKey + L"\\FLAGS", L"", L"0"},
        {libraryKey + L"\\HELPDIR", L"", program.parent_path().wstring()},
        {libraryKey + L"\\0\\" + kMachine, L"", program.wstring()},
    };
    wizard.entries.insert(wizard.entries.end(), types.begin(), types.end());
    return wizard;
}

bool Stands(const Entry& entry) {
    const auto value = RegistryValueAt(entry.key, entry.name, HKEY_CLASSES_ROOT);
    return value && value->Text() == entry.text;
}

// As clients look it up.
bool IsVisible(const ClassEntries& wanted) {
    CLSID classId{};
    CLSID wantedId{};
    return SUCCEEDED(CLSIDFromProgID(wanted.progId.c_str(), &classId)) &&
           SUCCEEDED(CLSIDFromString(wanted.classId.c_str(), &wantedId)) &&
           IsEqualCLSID(classId, wantedId) && std::ranges::all_of(wanted.entries, Stands);
}

void Write(const ClassEntries& wanted, const std::wstring& folder, HKEY root) {
    for (const Entry& entry : wanted.entries)
        RegistryKey::Create(folder + entry.key, root).SetText(entry.name, entry.text);
}

void Register(const ClassEntries& wanted) {
    if (IsVisible(wanted)) return;
    Write(wanted, kUserClasses, HKEY_CURRENT_USER);
    if (IsVisible(wanted)) return;
    // Not every system shows the user's own classes among all classes, and none does to a program
    // that runs as administrator.
    Write(wanted, kUserClasses, HKEY_LOCAL_MACHINE);
    if (!IsVisible(wanted)) {
        WriteDebugLine(winapi::Utf8(wanted.progId) + " cannot be found after its registration");
    }
}

}  // namespace

void RegisterAutomation(const std::filesystem::path& programFile) noexcept {
    try {
        Register(WizardEntries(programFile));
        const auto companion = programFile.parent_path() / core::kCompanionFileName;
        if (!base::IsFile(companion)) return;
        Register(ServerOf(core::kCompanionProgId, kCompanionClass, L"Framewright", companion));
    } catch (const std::exception& error) {
        WriteDebugLine(error.what());
    }
}

}  // namespace nqp::platform
