#pragma once

#include <memory>

#include "core/tray_icon.h"

namespace nqp::platform {

class ShellWatch;

// Comes back by itself when the shell starts anew and has forgotten all icons.
class NotificationIcon final : public core::TrayIcon {
public:
    NotificationIcon();
    ~NotificationIcon();

    bool SetTrayIcon(core::TrayMessage message, base::NativeWindow window,
                     const std::string& tip) override;

private:
    std::unique_ptr<ShellWatch> watch_;  // while the icon is up
};

}  // namespace nqp::platform
