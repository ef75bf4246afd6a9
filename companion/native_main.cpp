// The cutter without windows, on the machine that it is built on: for tests under sanitizers.
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

#include "command/command_line.h"

namespace {

volatile std::sig_atomic_t interrupted = 0;

class StandardConsole final : public nqp::companion::CommandConsole {
public:
    void Out(const std::string& text) override { std::fputs(text.c_str(), stdout); }
    void Err(const std::string& text) override { std::fputs(text.c_str(), stderr); }
    bool Interrupted() const override { return interrupted != 0; }
    bool Interactive() const override { return isatty(STDERR_FILENO) != 0; }
};

}  // namespace

int main(int count, char** arguments) {
    std::signal(SIGINT, [](int) { interrupted = 1; });
    std::signal(SIGXFSZ, SIG_IGN);  // a full disk is told by the write that fails
    StandardConsole console;
    return nqp::companion::RunCommandLine({arguments + 1, arguments + count}, console);
}
