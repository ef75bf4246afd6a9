#pragma once

#include <windows.h>

namespace nqp::test {

// A second run of this program that shows one window above all others. It ends with the object.
class OwnerProcess {
public:
    OwnerProcess();
    ~OwnerProcess();
    OwnerProcess(const OwnerProcess&) = delete;
    OwnerProcess& operator=(const OwnerProcess&) = delete;

    HWND Window() const { return window_; }

private:
    HANDLE process_ = nullptr;
    HWND window_ = nullptr;
};

// What such a run is started with, and what it does.
inline constexpr char kShowOwnerWindow[] = "--show-owner-window";
int ShowOwnerWindow();

}  // namespace nqp::test
