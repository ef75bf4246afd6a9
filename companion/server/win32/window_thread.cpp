#include "server/win32/window_thread.h"

#include <utility>

#include "forms/run_time_error.h"

namespace nqp::companion {
namespace {

constexpr UINT kTasksWait = WM_APP;

}  // namespace

WindowThread::WindowThread() {
    const bool made =
        Create({.className = L"nqp.WindowThread", .place = {}, .parentOrOwner = HWND_MESSAGE});
    if (!made) throw forms::RunTimeError("The program has no window to work with.");
}

void WindowThread::Post(std::function<void()> task) {
    {
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
    }
    PostMessageW(Handle(), kTasksWait, 0, 0);
}

LRESULT WindowThread::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != kTasksWait) return MessageWindow::OnMessage(message, wParam, lParam);
    DoTasks();
    return 0;
}

// A task may run a message loop of its own, in which others are done.
void WindowThread::DoTasks() {
    std::unique_lock lock(mutex_);
    while (!tasks_.empty()) {
        const auto task = std::move(tasks_.front());
        tasks_.pop_front();
        lock.unlock();
        task();
        lock.lock();
    }
}

}  // namespace nqp::companion
