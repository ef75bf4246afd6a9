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
    std::vector<std::wstring> keys;  // that belong to the class alone
};

std::wstring Quoted(const std::filesystem::path& program) {
    return L"\"" + program.wstring() + L"\"";
}

ClassEntries ServerOf(const char* progId, const wchar_t* classId, const wchar_t* description,
                      const std::filesystem::path& program) {
    ClassEntries made{winapi::Utf16(progId), classId, {}, {}};
    const std::wstring classKey = L"CLSID\\" + made.classId;
    made.keys = {made.progId, classKey};
    made.entries = {
        {classKey, L"", description},
        {classKey + L"\\LocalServer32", L"", Quoted(program)},
        {classKey + L"\\ProgID", L"", made.progId},
        {made.progId, L"", description},
        {made.progId + L"\\CLSID", L"", made.classId},
    };
    return made;
}

// The one interface of a class, and the type library that the program holds.
struct Types {
    const wchar_t* interfaceId;
    const wchar_t* interfaceName;
    const wchar_t* typeLibrary;
    const wchar_t* version;
    const wchar_t* typeLibraryName;
};

void AddTypes(const Types& types, const std::filesystem::path& program, ClassEntries& made) {
    const std::wstring interfaceKey = std::wstring(L"Interface\\") + types.interfaceId;
    const std::wstring library = std::wstring(L"TypeLib\\") + types.typeLibrary;
    const std::wstring libraryKey = library + L"\\" + types.version;
    const std::vector<Entry> entries = {
        {L"CLSID\\" + made.classId + L"\\TypeLib", L"", types.typeLibrary},
        {interfaceKey, L"", types.interfaceName},
        {interfaceKey + L"\\ProxyStubClsid32", L"", kTypeLibraryMarshaler},
        {interfaceKey + L"\\TypeLib", L"", types.typeLibrary},
        {interfaceKey + L"\\TypeLib", L"Version", types.version},
        {libraryKey, L"", types.typeLibraryName},
        {libraryKey + L"\\FLAGS", L"", L"0"},
        {libraryKey + L"\\HELPDIR", L"", program.parent_path().wstring()},
        {libraryKey + L"\\0\\" + kMachine, L"", program.wstring()},
    };
    made.entries.insert(made.entries.end(), entries.begin(), entries.end());
    made.keys.insert(made.keys.end(), {interfaceKey, library});
}

ClassEntries WizardEntries(const std::filesystem::path& program) {
    ClassEntries wizard =
        ServerOf(core::kWizardProgId, kWizardClass, L"The Quillon Wizard", program);
    AddTypes({kWizardInterface, L"IWizard", kWizardTypeLibrary, kWizardTypeLibraryVersion,
              L"Nuvex Quillon Player"},
             program, wizard);
    return wizard;
}

ClassEntries CompanionEntries(const std::filesystem::path& program) {
    ClassEntries companion =
        ServerOf(core::kCompanionProgId, kCompanionClass, L"Framewright", program);
    AddTypes({kCompanionInterface, L"IFragmentJob", kCompanionTypeLibrary,
              kCompanionTypeLibraryVersion, L"Framewright"},
             program, companion);
    return companion;
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

bool Register(const ClassEntries& wanted) {
    if (IsVisible(wanted)) return true;
    Write(wanted, kUserClasses, HKEY_CURRENT_USER);
    if (IsVisible(wanted)) return true;
    // Not every system shows the user's own classes among all classes, and none does to a program
    // that runs as administrator.
    Write(wanted, kUserClasses, HKEY_LOCAL_MACHINE);
    return IsVisible(wanted);
}

void RegisterOrTell(const ClassEntries& wanted) {
    if (Register(wanted)) return;
    WriteDebugLine(winapi::Utf8(wanted.progId) + " cannot be found after its registration");
}

void RemoveBelow(const std::wstring& folder, HKEY root, const ClassEntries& known,
                 const std::filesystem::path& program) {
    const std::wstring server = folder + L"CLSID\\" + known.classId + L"\\LocalServer32";
    const auto value = RegistryValueAt(server, L"", root);
    if (!value || value->Text() != Quoted(program)) return;
    for (const std::wstring& key : known.keys)
        DeleteRegistryTree(folder + key, root);
}

}  // namespace

void RegisterAutomation(const std::filesystem::path& programFile) noexcept {
    try {
        RegisterOrTell(WizardEntries(programFile));
        const auto companion = programFile.parent_path() / core::kCompanionFileName;
        if (base::IsFile(companion)) RegisterOrTell(CompanionEntries(companion));
    } catch (const std::exception& error) {
        WriteDebugLine(error.what());
    }
}

bool RegisterCompanion(const std::filesystem::path& companionFile) {
    return Register(CompanionEntries(companionFile));
}

void UnregisterCompanion(const std::filesystem::path& companionFile) {
    const ClassEntries known = CompanionEntries(companionFile);
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE})
        RemoveBelow(kUserClasses, root, known, companionFile);
}

}  // namespace nqp::platform
