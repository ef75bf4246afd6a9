#include "platform/process.h"

#include <windows.h>

#include <ole2.h>

#include "base/file.h"
#include "core/command_line.h"
#include "core/program_folder.h"
#include "forms/win32/winapi/text.h"

namespace nqp::platform {

OleSession::OleSession() : open_(SUCCEEDED(OleInitialize(nullptr))) {}

OleSession::~OleSession() {
    if (open_) OleUninitialize();
}

std::filesystem::path ProgramFile() {
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

std::filesystem::path ProgramFolder() {
    return ProgramFile().parent_path();
}

std::string ProgramName() {
    return base::Utf8FromPath(ProgramFile().stem());
}

std::string ArgumentText() {
    return winapi::Utf8(core::ArgumentsOf(GetCommandLineW()));
}

void ShowErrorBox(const std::string& sentence) {
    MessageBoxW(nullptr, winapi::Utf16(sentence).c_str(),
                winapi::Utf16(core::kApplicationTitle).c_str(),
                MB_OK | MB_ICONERROR | MB_SETFOREGROUND | MB_TASKMODAL | MB_TOPMOST);
}

void WriteDebugLine(const std::string& text) {
    OutputDebugStringW(winapi::Utf16(text + "\n").c_str());
}

}  // namespace nqp::platform
