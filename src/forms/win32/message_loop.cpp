#include "forms/win32/message_loop.h"

#include <deque>
#include <memory>
#include <unordered_map>
#include <utility>

#include "forms/win32/control_window.h"
#include "forms/win32/window.h"

namespace nqp::forms {
namespace win32 {
namespace {

std::deque<std::function<void()>>& Tasks() {
    static std::deque<std::function<void()>> tasks;
    return tasks;
}

std::unordered_map<UINT_PTR, std::function<void()>>& Timers() {
    static std::unordered_map<UINT_PTR, std::function<void()>> timers;
    return timers;
}

void CALLBACK Tick(HWND, UINT, UINT_PTR timer, DWORD) noexcept {
    const auto found = Timers().find(timer);
    if (found == Timers().end()) return;
    const std::function<void()> tick = found->second;  // the timer may stop itself
    tick();
}

class Timer final : public TimerPeer {
public:
    Timer(int milliseconds, std::function<void()> tick)
        : id_(SetTimer(nullptr, 0, static_cast<UINT>(milliseconds), Tick)) {
        Timers()[id_] = std::move(tick);
    }
    ~Timer() override {
        KillTimer(nullptr, id_);
        Timers().erase(id_);
    }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

private:
    UINT_PTR id_;
};

bool person_acted_last = false;
int modal_loops = 0;

bool IsButtonDown(const MSG& message) {
    switch (message.message) {
        case WM_LBUTTONDOWN:
        case WM_RBUTTONDOWN:
        case WM_MBUTTONDOWN:
        case WM_NCLBUTTONDOWN:
            return true;
        default:
            return false;
    }
}

bool IsOfMouse(const MSG& message) {
    return message.message >= WM_MOUSEFIRST && message.message <= WM_MOUSELAST;
}

bool IsKeyDown(const MSG& message) {
    return message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
}

// Its keys choose and close it, and mean nothing to the form.
bool IsInOpenList(const MSG& message) {
    const ControlWindow* control = ControlWindow::Of(message.hwnd);
    return control != nullptr && control->State().kind == ControlKind::ComboBox &&
           SendMessageW(message.hwnd, CB_GETDROPPEDSTATE, 0, 0) != 0;
}

}  // namespace

void NotePersonActed() {
    person_acted_last = true;
}

void NoteProgramActed() {
    person_acted_last = false;
}

bool PersonActedLast() {
    return person_acted_last;
}

void Dispatch(MSG& message) {
    if (IsKeyDown(message) || IsButtonDown(message)) NotePersonActed();
    const HWND root = GetAncestor(message.hwnd, GA_ROOT);
    Window* window = Window::Of(root);
    // Without a focus the keys go to the active window, which may be waiting for a dialog.
    const bool key = IsKeyDown(message) && !IsInOpenList(message) && IsWindowEnabled(root) != 0;
    if (window != nullptr && key && window->HandleKey(message.wParam)) return;
    if (window != nullptr && IsOfMouse(message)) window->ShowToolTips(message);
    const bool dialog = (GetWindowLongPtrW(root, GWL_EXSTYLE) & WS_EX_CONTROLPARENT) != 0;
    // Only a dialog's captions mark access keys; on a face an "&" is part of a title.
    const bool letter = message.message == WM_CHAR || message.message == WM_SYSCHAR;
    const bool plain = letter && window != nullptr && !window->IsDialog();
    if (dialog && !plain && IsDialogMessageW(root, &message) != 0) return;
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

void RunPostedTasks() {
    while (!Tasks().empty()) {
        const std::function<void()> task = std::move(Tasks().front());
        Tasks().pop_front();
        task();
    }
}

int RunMessageLoop() {
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        Dispatch(message);
        RunPostedTasks();
    }
    RunPostedTasks();
    return static_cast<int>(message.wParam);
}

void RunModalLoop(const std::function<bool()>& ended) {
    ++modal_loops;
    MSG message{};
    while (!ended()) {
        if (GetMessageW(&message, nullptr, 0, 0) <= 0) {
            PostQuitMessage(static_cast<int>(message.wParam));  // for the loop outside
            break;
        }
        Dispatch(message);
    }
    --modal_loops;
}

int ModalLoops() {
    return modal_loops;
}

void QuitMessageLoop(int exitCode) {
    PostQuitMessage(exitCode);
}

}  // namespace win32

void RunMessagesUntil(const std::function<bool()>& condition) {
    win32::RunModalLoop(condition);
}

void RunWaitingMessages() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));  // for the loop outside
            return;
        }
        win32::Dispatch(message);
    }
}

void Post(std::function<void()> task) {
    win32::Tasks().push_back(std::move(task));
    PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
}

std::unique_ptr<TimerPeer> CreateTimerPeer(int milliseconds, std::function<void()> tick) {
    return std::make_unique<win32::Timer>(milliseconds, std::move(tick));
}

}  // namespace nqp::forms
