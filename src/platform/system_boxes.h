#pragma once

#include "core/message_boxes.h"

namespace nqp::platform {

class SystemMessageBoxes final : public core::MessageBoxes {
public:
    void Inform(const std::string& text) override;
    bool Accepts(base::NativeWindow owner, const std::string& question) override;
};

}  // namespace nqp::platform
