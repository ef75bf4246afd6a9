#pragma once

#include "core/tray_icon.h"

namespace nqp::platform {

class NotificationIcon final : public core::TrayIcon {
public:
    bool SetTrayIcon(core::TrayMessage message, base::NativeWindow window,
                     const std::string& tip) override;
};

}  // namespace nqp::platform
