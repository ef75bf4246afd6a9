#include "platform/process.h"

#include <windows.h>

#include <string_view>

#include "base/file.h"
#include "core/program_folder.h"
#include "winapi/text.h"

namespace nqp::platform {
namespace {

std::wstring ProgramFile() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

// A program name in quotes ends with the closing one, a plain one at the first blank.
std::wstring_view WithoutProgramName(std::wstring_view line) {
    constexpr std::wstring_view kBlanks = L" \t";
    const bool quoted = line.starts_with(L'"');
    const auto end = quoted ? line.find(L'"', 1) : line.find_first_of(kBlanks);
    if (end == std::wstring_view::npos) return {};
    line.remove_prefix(end + (quoted ? 1 : 0));
    const auto first = line.find_first_not_of(kBlanks);
    return first == std::wstring_view::npos ? std::wstring_view{} : line.substr(first);
}

}  // namespace

std::filesystem::path ProgramFolder() {
    return std::filesystem::path(ProgramFile()).parent_path();
}

std::string ArgumentText() {
    return winapi::Utf8(WithoutProgramName(GetCommandLineW()));
}

void ShowErrorBox(const std::string& sentence) {
    MessageBoxW(nullptr, winapi::Utf16(sentence).c_str(),
                winapi::Utf16(core::kApplicationTitle).c_str(),
                MB_OK | MB_ICONERROR | MB_SETFOREGROUND | MB_TASKMODAL);
}

void WriteDebugLine(const std::string& text) {
    OutputDebugStringW(winapi::Utf16(text + "\n").c_str());
}

}  // namespace nqp::platform
