#pragma once

#include <filesystem>

namespace nqp::core {

// The system's shell.
class Shell {
public:
    // Opens a document with the program that is registered for it; one that is missing, or that no
    // program opens, is left alone.
    virtual void Open(const std::filesystem::path& document) = 0;

protected:
    ~Shell() = default;
};

}  // namespace nqp::core
