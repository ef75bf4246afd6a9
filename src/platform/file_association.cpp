#include "platform/file_association.h"

#include <windows.h>

#include <shlobj.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>

#include "core/program_folder.h"
#include "forms/run_time_error.h"
#include "forms/win32/winapi/text.h"
#include "platform/process.h"
#include "platform/registry.h"

namespace nqp::platform {
namespace {

constexpr wchar_t kOwnKey[] = L"Software\\NuvexQuillonPlayer";
constexpr wchar_t kCapabilities[] = L"Software\\NuvexQuillonPlayer\\Capabilities";
constexpr wchar_t kCapableTypes[] = L"Software\\NuvexQuillonPlayer\\Capabilities\\FileAssociations";
constexpr wchar_t kRegisteredApplications[] = L"Software\\RegisteredApplications";
constexpr wchar_t kRun[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";

// Notes that stand in keys of our own, about what was there before us.
constexpr wchar_t kPreviousHandler[] = L"PreviousHandler";
constexpr wchar_t kMadeExtensionKey[] = L"MadeExtensionKey";
constexpr wchar_t kMadeOpenWithKey[] = L"MadeOpenWithKey";
constexpr wchar_t kMadeRegisteredApplications[] = L"MadeRegisteredApplications";

constexpr wchar_t kDefaultValue[] = L"";

std::wstring Title() {
    return winapi::Utf16(core::kApplicationTitle);
}

std::wstring ProgramIconPlace() {
    return L"\"" + ProgramFile().wstring() + L"\",0";
}

bool SameName(const std::wstring& one, const std::wstring& other) {
    return CompareStringOrdinal(one.c_str(), -1, other.c_str(), -1, TRUE) == CSTR_EQUAL;
}

bool Is(const std::optional<RegistryValue>& value, const std::wstring& name) {
    const auto text = value ? value->Text() : std::nullopt;
    return text && SameName(*text, name);
}

// One name of a file's end: anything else could lead to a key that is not the extension's.
bool IsExtension(const std::wstring& text) {
    constexpr wchar_t kNotInFileNames[] = L"\\/:*?\"<>|";
    return text.size() > 1 && text.front() == L'.' &&
           text.find_first_of(kNotInFileNames) == std::wstring::npos &&
           std::none_of(text.begin(), text.end(), [](wchar_t c) { return c < L' '; });
}

std::wstring LowerCase(std::wstring text) {
    CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
    return text;
}

std::wstring UpperCase(std::wstring text) {
    CharUpperBuffW(text.data(), static_cast<DWORD>(text.size()));
    return text;
}

std::wstring FriendlyTypeName(const std::wstring& extension) {
    static const std::map<std::wstring, std::wstring> kKinds{
        {L".asf", L"video"}, {L".asx", L"playlist"}, {L".au", L"audio"},   {L".avi", L"video"},
        {L".mp3", L"audio"}, {L".wav", L"audio"},    {L".mpeg", L"video"}, {L".wmv", L"video"}};
    const auto kind = kKinds.find(extension);
    return UpperCase(extension.substr(1)) + L" " +
           (kind == kKinds.end() ? L"media file" : kind->second);
}

// Notes in one of our own keys that another key is about to be made. The note outlives a second
// registering, when the key is there because of the first.
void NoteIfMissing(RegistryKey& ownKey, const wchar_t* note, const std::wstring& path) {
    if (!RegistryKeyExists(path)) ownKey.Set(note, {});
}

void DeleteIfMade(const std::wstring& ownPath, const wchar_t* note, const std::wstring& path) {
    if (RegistryValueAt(ownPath, note)) DeleteEmptyRegistryKey(path);
}

// The list of programs and their types in the system's settings.
class Capabilities {
public:
    static void Add(const std::wstring& extension, const std::wstring& progId) {
        RegistryKey key = RegistryKey::Create(kCapabilities);
        key.SetText(L"ApplicationName", Title());
        key.SetText(L"ApplicationDescription",
                    L"Plays video and sound files and keeps a list of them.");
        key.SetText(L"ApplicationIcon", ProgramIconPlace());
        RegistryKey::Create(kCapableTypes).SetText(extension, progId);
        NoteIfMissing(key, kMadeRegisteredApplications, kRegisteredApplications);
        RegistryKey::Create(kRegisteredApplications).SetText(Title(), kCapabilities);
    }

    static bool Have(const std::wstring& extension) {
        return RegistryValueAt(kCapableTypes, extension).has_value();
    }

    static void Remove(const std::wstring& extension) {
        DeleteRegistryValue(kCapableTypes, extension);
        const auto types = RegistryKey::OpenToRead(kCapableTypes);
        if (!types || !types->HasValues()) RemoveAll();
    }

private:
    static void RemoveAll() {
        DeleteRegistryValue(kRegisteredApplications, Title());
        DeleteIfMade(kCapabilities, kMadeRegisteredApplications, kRegisteredApplications);
        DeleteRegistryTree(kCapabilities);
        DeleteEmptyRegistryKey(kOwnKey);
    }
};

// One extension in the table of types. After each step a file of it still opens: our entry is
// complete before the extension leads to it, and goes when the extension leads elsewhere again.
class FileType {
public:
    explicit FileType(const std::wstring& extension)
        : extension_(extension),
          progId_(L"NuvexQuillonPlayer" + extension),
          progIdKey_(L"Software\\Classes\\" + progId_),
          extensionKey_(L"Software\\Classes\\" + extension),
          openWithKey_(extensionKey_ + L"\\OpenWithProgids") {}

    bool HasProgId() const { return RegistryKeyExists(progIdKey_); }

    bool LeavesTraces() const {
        return HasProgId() || IsOurs() || RegistryValueAt(openWithKey_, progId_) ||
               Capabilities::Have(extension_);
    }

    void Add(const std::wstring& command) const {
        WriteProgId(command);
        NoteWhatWasThere();
        Capabilities::Add(extension_, progId_);
        RegistryKey::Create(openWithKey_).Set(progId_, {});
        RegistryKey::Create(extensionKey_).SetText(kDefaultValue, progId_);
    }

    void Remove() const {
        if (IsOurs()) GiveBack();
        DeleteRegistryValue(openWithKey_, progId_);
        DeleteIfMade(progIdKey_, kMadeOpenWithKey, openWithKey_);
        DeleteIfMade(progIdKey_, kMadeExtensionKey, extensionKey_);
        Capabilities::Remove(extension_);
        DeleteRegistryTree(progIdKey_);
    }

private:
    bool IsOurs() const { return Is(RegistryValueAt(extensionKey_, kDefaultValue), progId_); }

    void WriteProgId(const std::wstring& command) const {
        const std::wstring name = FriendlyTypeName(extension_);
        RegistryKey key = RegistryKey::Create(progIdKey_);
        key.SetText(kDefaultValue, name);
        key.SetText(L"FriendlyTypeName", name);
        RegistryKey::Create(progIdKey_ + L"\\DefaultIcon")
            .SetText(kDefaultValue, ProgramIconPlace());
        RegistryKey::Create(progIdKey_ + L"\\shell\\open").SetText(L"FriendlyAppName", Title());
        RegistryKey::Create(progIdKey_ + L"\\shell\\open\\command").SetText(kDefaultValue, command);
    }

    void NoteWhatWasThere() const {
        RegistryKey notes = RegistryKey::Create(progIdKey_);
        NoteIfMissing(notes, kMadeExtensionKey, extensionKey_);
        NoteIfMissing(notes, kMadeOpenWithKey, openWithKey_);
        if (IsOurs()) return;  // the note about the handler before us stands already
        const auto handler = RegistryValueAt(extensionKey_, kDefaultValue);
        if (handler) {
            notes.Set(kPreviousHandler, *handler);
        } else {
            notes.Delete(kPreviousHandler);
        }
    }

    void GiveBack() const {
        auto key = RegistryKey::OpenToWrite(extensionKey_);
        if (!key) return;
        const auto handler = RegistryValueAt(progIdKey_, kPreviousHandler);
        if (handler) {
            key->Set(kDefaultValue, *handler);
        } else {
            key->Delete(kDefaultValue);
        }
    }

    std::wstring extension_;
    std::wstring progId_;
    std::wstring progIdKey_;
    std::wstring extensionKey_;
    std::wstring openWithKey_;
};

void TellShell() {
    SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_IDLIST, nullptr, nullptr);
}

// Runs the steps; their failure becomes a sentence for the user.
template <class Steps>
void OrSay(const std::string& failure, Steps&& steps) {
    try {
        steps();
    } catch (const RegistryError& error) {
        throw forms::RunTimeError(failure + " (Windows error " + std::to_string(error.Code()) +
                                  ").");
    }
}

void AddOrUndo(const FileType& type, const std::wstring& command) {
    const bool first = !type.HasProgId();
    try {
        type.Add(command);
    } catch (const RegistryError&) {
        if (first) {
            try {
                type.Remove();
            } catch (const RegistryError&) {  // the first error is the one to be told
            }
        }
        throw;
    }
}

void RequireExtension(const std::wstring& extension) {
    if (extension.empty()) throw forms::RunTimeError("No file type is chosen.");
}

}  // namespace

void SystemFileAssociation::SetExtension(const std::string& extension) {
    extension_.clear();
    const std::wstring text = winapi::Utf16(extension);
    if (!IsExtension(text)) {
        throw forms::RunTimeError("This is not a file type such as .avi: \"" + extension + "\".");
    }
    extension_ = LowerCase(text);
}

void SystemFileAssociation::SetCommand(const std::string& commandLine) {
    command_ = winapi::Utf16(commandLine);
}

void SystemFileAssociation::Register() {
    RequireExtension(extension_);
    const std::string name = winapi::Utf8(extension_);
    if (command_.empty()) {
        throw forms::RunTimeError("No program is named that opens files of the type " + name + ".");
    }
    OrSay("Files of the type " + name + " could not be set to open with " + core::kApplicationTitle,
          [&] { AddOrUndo(FileType(extension_), command_); });
    TellShell();
}

void SystemFileAssociation::UnRegister() {
    RequireExtension(extension_);
    OrSay("Files of the type " + winapi::Utf8(extension_) +
              " could not be given back to the program that opened them before",
          [&] {
              const FileType type(extension_);
              if (!type.LeavesTraces()) return;
              type.Remove();
              TellShell();
          });
}

void SystemFileAssociation::RegisterStart(const std::string& commandLine) {
    OrSay(std::string(core::kApplicationTitle) + " could not be set to start with Windows",
          [&] { RegistryKey::Create(kRun).SetText(Title(), winapi::Utf16(commandLine)); });
}

void SystemFileAssociation::UnRegisterStart() {
    OrSay(std::string(core::kApplicationTitle) + " could not be taken from the start of Windows",
          [&] { DeleteRegistryValue(kRun, Title()); });
}

std::unique_ptr<core::FileAssociation> SystemFileAssociations::Create() {
    return std::make_unique<SystemFileAssociation>();
}

}  // namespace nqp::platform
