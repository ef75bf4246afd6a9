#pragma once

#include "core/shell.h"

namespace nqp::platform {

class SystemShell final : public core::Shell {
public:
    void Open(const std::filesystem::path& document) override;
};

}  // namespace nqp::platform
