#pragma once

#include <string>
#include <vector>

namespace nqp::companion {

class CommandConsole {
public:
    virtual void Out(const std::string&) = 0;
    virtual void Err(const std::string&) = 0;
    virtual bool Interrupted() const = 0;
    virtual bool Interactive() const = 0;

protected:
    ~CommandConsole() = default;
};
int RunCommandLine(const std::vector<std::string>& arguments, CommandConsole& console);

}  // namespace nqp::companion
