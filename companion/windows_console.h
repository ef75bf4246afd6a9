#pragma once

#include <windows.h>

#include "command/command_line.h"
#include "platform/handle.h"

namespace nqp::companion {

// Where the program's texts go: to the files or pipes that it was started with, else to the console
// of whoever started it, else nowhere. One of them exists at a time, because it hears of Ctrl+C.
class WindowsConsole final : public CommandConsole {
public:
    WindowsConsole();
    ~WindowsConsole();
    WindowsConsole(const WindowsConsole&) = delete;
    WindowsConsole& operator=(const WindowsConsole&) = delete;

    void Out(const std::string& text) override { Write(out_, text); }
    void Err(const std::string& text) override { Write(err_, text); }
    bool Interrupted() const override;
    bool Interactive() const override { return err_.console; }

private:
    struct Stream {
        HANDLE handle = nullptr;
        bool console = false;  // takes UTF-16; anything else gets bytes
    };

    static Stream StandardStream(DWORD which);
    Stream StreamOr(const Stream& standard);
    static void Write(const Stream& stream, const std::string& text);

    bool attached_ = false;
    platform::Handle screen_;  // of the console that the program attached itself to
    Stream out_;
    Stream err_;
};

}  // namespace nqp::companion
