#pragma once

#include "core/file_dialogs.h"

namespace nqp::platform {

class SystemFileDialogs final : public core::FileDialogs {
public:
    std::optional<std::string> OpenFile(const core::OpenFileRequest& request) override;
    std::string OpenFiles(const core::OpenFileRequest& request) override;
};

}  // namespace nqp::platform
