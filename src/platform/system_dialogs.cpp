#include "platform/system_dialogs.h"

#include <windows.h>

#include <commdlg.h>

#include <vector>

namespace nqp::platform {
namespace {

// Bytes, which may be three or four for a character.
constexpr std::size_t kPathBytes = 32768;

}  // namespace

std::optional<std::string> SystemFileDialogs::OpenFile(const core::OpenFileRequest& request) {
    std::vector<char> path(kPathBytes, '\0');
    // Name and pattern, each with its end, and one more end for the list.
    const std::string filter = request.filter.name + '\0' + request.filter.pattern + '\0';
    OPENFILENAMEA dialog{};
    dialog.lStructSize = OPENFILENAME_SIZE_VERSION_400A;
    dialog.hwndOwner = static_cast<HWND>(request.owner);
    dialog.lpstrFilter = filter.c_str();
    dialog.lpstrFile = path.data();
    dialog.nMaxFile = static_cast<DWORD>(path.size());
    dialog.lpstrTitle = request.title.c_str();
    // The program works with full paths; where the dialog was last is no business of the process.
    dialog.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    if (GetOpenFileNameA(&dialog) == 0) return std::nullopt;
    return std::string(path.data());
}

}  // namespace nqp::platform
