#include "platform/engine/file_spellings.h"

#include <windows.h>

#include "forms/win32/winapi/text.h"

namespace nqp::platform {

namespace {

// Reads what one of the path functions answers, which say how long it is when asked with no room.
template <class Function>
std::wstring Read(Function function) {
    std::wstring text(function(nullptr, 0), L'\0');
    text.resize(function(text.data(), static_cast<DWORD>(text.size())));
    return text;
}

std::wstring FullPath(const std::wstring& path) {
    return Read([&](wchar_t* buffer, DWORD size) {
        return GetFullPathNameW(path.c_str(), size, buffer, nullptr);
    });
}

std::wstring ShortPath(const std::wstring& path) {
    return Read(
        [&](wchar_t* buffer, DWORD size) { return GetShortPathNameW(path.c_str(), buffer, size); });
}

// The form that is taken as it is, without a limit of its length.
std::wstring Verbatim(const std::wstring& fullPath) {
    if (fullPath.starts_with(L"\\\\?\\")) return fullPath;
    if (fullPath.starts_with(L"\\\\")) return L"\\\\?\\UNC" + fullPath.substr(1);
    return L"\\\\?\\" + fullPath;
}

bool IsFile(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

}  // namespace

std::vector<std::wstring> SpellingsOfFile(const std::string& path) {
    if (path.empty()) return {};
    const std::wstring full = FullPath(winapi::Utf16(path));
    if (full.size() < MAX_PATH) {
        return IsFile(full) ? std::vector{full} : std::vector<std::wstring>{};
    }
    const std::wstring verbatim = Verbatim(full);
    if (!IsFile(verbatim)) return {};
    std::vector<std::wstring> spellings{full, verbatim};
    const std::wstring shortened = ShortPath(verbatim);
    if (!shortened.empty() && shortened != verbatim) spellings.push_back(shortened);
    return spellings;
}

}  // namespace nqp::platform
