#pragma once

#include <string>
#include <vector>

namespace nqp::companion {

// Where the command line writes to and what it hears of its user. Texts are UTF-8, line ends are
// part of them.
class CommandConsole {
public:
    virtual void Out(const std::string& text) = 0;
    virtual void Err(const std::string& text) = 0;
    // The user has pressed Ctrl+C.
    virtual bool Interrupted() const = 0;
    // Errors go to a person's screen, not into a file.
    virtual bool Interactive() const = 0;

protected:
    ~CommandConsole() = default;
};

enum ExitCode : int {
    kExitDone = 0,
    kExitFailed = 1,  // a sentence tells why
    kExitBadUsage = 2,
    kExitCancelled = 3,
};

// Runs the program for somebody who writes scripts. `arguments` are without the program's name.
int RunCommandLine(const std::vector<std::string>& arguments, CommandConsole& console);

}  // namespace nqp::companion
