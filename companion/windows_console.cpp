#include "windows_console.h"

#include <atomic>

#include "forms/win32/winapi/text.h"

namespace nqp::companion {
namespace {

std::atomic<bool> interrupted = false;

// The system ends the process when the handler of a closed console returns, so that one gets some
// moments for what a job must take back.
BOOL WINAPI Interrupt(DWORD event) noexcept {
    constexpr DWORD kMomentsToEnd = 4000;
    interrupted = true;
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(kMomentsToEnd);
    return TRUE;
}

}  // namespace

WindowsConsole::WindowsConsole()
    : out_(StandardStream(STD_OUTPUT_HANDLE)), err_(StandardStream(STD_ERROR_HANDLE)) {
    if (out_.handle == nullptr || err_.handle == nullptr) {
        attached_ = AttachConsole(ATTACH_PARENT_PROCESS) != 0;
        if (attached_) {
            const HANDLE screen =
                CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE,
                            FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
            if (screen != INVALID_HANDLE_VALUE) screen_.reset(screen);
        }
        out_ = StreamOr(out_);
        err_ = StreamOr(err_);
    }
    SetConsoleCtrlHandler(Interrupt, TRUE);
}

WindowsConsole::~WindowsConsole() {
    SetConsoleCtrlHandler(Interrupt, FALSE);
    screen_.reset();
    if (attached_) FreeConsole();
}

bool WindowsConsole::Interrupted() const {
    return interrupted;
}

WindowsConsole::Stream WindowsConsole::StandardStream(DWORD which) {
    const HANDLE handle = GetStdHandle(which);
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE) return {};
    if (GetFileType(handle) == FILE_TYPE_UNKNOWN) return {};
    DWORD mode = 0;
    return {handle, GetConsoleMode(handle, &mode) != 0};
}

WindowsConsole::Stream WindowsConsole::StreamOr(const Stream& standard) {
    return standard.handle != nullptr ? standard : Stream{screen_.get(), screen_ != nullptr};
}

void WindowsConsole::Write(const Stream& stream, const std::string& text) {
    if (stream.handle == nullptr) return;
    DWORD written = 0;
    if (stream.console) {
        const std::wstring wide = winapi::Utf16(text);
        WriteConsoleW(stream.handle, wide.data(), static_cast<DWORD>(wide.size()), &written,
                      nullptr);
        return;
    }
    WriteFile(stream.handle, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

}  // namespace nqp::companion
