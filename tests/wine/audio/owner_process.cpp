#include "owner_process.h"

#include <string>

#include "platform/message_window.h"
#include "platform/process.h"

namespace nqp::test {
namespace {

constexpr wchar_t kClassName[] = L"nqp.AudioTestOwner";
constexpr DWORD kDeadline = 20000;  // milliseconds
constexpr UINT_PTR kDeadlineTimer = 1;

class OwnerWindow final : public platform::MessageWindow {
public:
    OwnerWindow() {
        Description description;
        description.className = kClassName;
        description.style = WS_POPUP | WS_CAPTION | WS_VISIBLE;
        description.extendedStyle = WS_EX_TOPMOST;
        description.place = {60, 40, 500, 400};
        Create(description);
        // A test that was ended must not leave the window behind.
        SetTimer(Handle(), kDeadlineTimer, 2 * kDeadline, nullptr);
    }
    ~OwnerWindow() override { Destroy(); }

private:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_CLOSE || message == WM_TIMER) PostQuitMessage(0);
        return message == WM_CLOSE ? 0 : MessageWindow::OnMessage(message, wParam, lParam);
    }
};

HANDLE StartAgain() {
    std::wstring command = L"\"" + platform::ProgramFile().wstring() + L"\" ";
    command.append(kShowOwnerWindow, kShowOwnerWindow + sizeof kShowOwnerWindow - 1);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION made{};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &start, &made)) {
        return nullptr;
    }
    CloseHandle(made.hThread);
    return made.hProcess;
}

}  // namespace

OwnerProcess::OwnerProcess() : process_(StartAgain()) {
    const DWORD begin = GetTickCount();
    while (process_ != nullptr && window_ == nullptr && GetTickCount() - begin < kDeadline) {
        if (WaitForSingleObject(process_, 10) != WAIT_TIMEOUT) break;
        window_ = FindWindowW(kClassName, nullptr);
    }
}

OwnerProcess::~OwnerProcess() {
    PostMessageW(window_, WM_CLOSE, 0, 0);
    if (WaitForSingleObject(process_, kDeadline) != WAIT_OBJECT_0) TerminateProcess(process_, 1);
    CloseHandle(process_);
}

int ShowOwnerWindow() {
    const OwnerWindow window;
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
    return 0;
}

}  // namespace nqp::test
