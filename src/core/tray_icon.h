#pragma once

#include <string>

#include "base/input.h"

namespace nqp::core {

enum class TrayMessage : int { Add = 0, Delete = 2 };

// The icon in the notification area.
class TrayIcon {
public:
    // The window gets the icon's mouse events as the platform's mouse-move message, with the
    // event's own message number in place of the pointer's horizontal position. The icon shown is
    // the program's own. False when the platform refused.
    virtual bool SetTrayIcon(TrayMessage message, base::NativeWindow window,
                             const std::string& tip) = 0;

protected:
    ~TrayIcon() = default;
};

}  // namespace nqp::core
