#pragma once

#include "core/file_dialogs.h"

namespace nqp::platform {

class SystemFileDialogs final : public core::FileDialogs {
public:
    std::optional<std::string> OpenFile(const core::OpenFileRequest& request) override;
    std::string OpenFiles(const core::OpenFileRequest& request) override;
    std::optional<std::string> SaveFile(const core::SaveFileRequest& request) override;
};

}  // namespace nqp::platform
