#pragma once

#include <deque>
#include <functional>
#include <mutex>

#include "platform/message_window.h"

namespace nqp::companion {

// The way for other threads to the one that made the object. Tasks are done from whatever message
// loop runs there, one inside a call or a dialog too.
class WindowThread final : private platform::MessageWindow {
public:
    WindowThread();
    ~WindowThread() override { Destroy(); }

    // From any thread; returns at once. The task throws nothing.
    void Post(std::function<void()> task);

private:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void DoTasks();

    std::mutex mutex_;
    std::deque<std::function<void()>> tasks_;
};

}  // namespace nqp::companion
