#pragma once

#include <string>

#include "base/input.h"

namespace nqp::core {

// The system's message boxes, with the application's title and the information icon.
class MessageBoxes {
public:
    virtual void Inform(const std::string& text) = 0;
    // Yes or No; modal to the owner.
    virtual bool Accepts(base::NativeWindow owner, const std::string& question) = 0;

protected:
    ~MessageBoxes() = default;
};

}  // namespace nqp::core
