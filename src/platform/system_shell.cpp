#include "platform/system_shell.h"

#include <windows.h>

#include <shellapi.h>

#include "base/file.h"

namespace nqp::platform {

void SystemShell::Open(const std::filesystem::path& document) {
    ShellExecuteA(nullptr, "open", base::Utf8FromPath(document).c_str(), nullptr, nullptr,
                  SW_SHOWNORMAL);
}

}  // namespace nqp::platform
