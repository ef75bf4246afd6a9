#include "platform/system_dialogs.h"

#include <windows.h>

#include <cderr.h>
#include <commdlg.h>

#include <span>
#include <vector>

#include "forms/run_time_error.h"

namespace nqp::platform {
namespace {

// Bytes, which may be three or four for a character.
constexpr std::size_t kPathBytes = 32768;

constexpr std::size_t kSeveralBytes = 10000;
// One less than the buffer holds, so that it always ends with a NUL character.
constexpr DWORD kSeveralLimit = 9999;
constexpr DWORD kSaveLimit = core::kSaveBufferBytes - 1;

// Name and pattern, each with its end; the text's own end is the one of the list.
std::string FilterText(std::span<const core::FileFilter> filters) {
    std::string text;
    for (const core::FileFilter& filter : filters)
        text += filter.name + '\0' + filter.pattern + '\0';
    return text;
}

std::string FilterOf(const core::OpenFileRequest& request) {
    return FilterText({&request.filter, 1});
}

OPENFILENAMEA DialogOf(base::NativeWindow owner, const std::string& title,
                       const std::string& filter) {
    OPENFILENAMEA dialog{};
    dialog.lStructSize = OPENFILENAME_SIZE_VERSION_400A;
    dialog.hwndOwner = static_cast<HWND>(owner);
    dialog.lpstrFilter = filter.c_str();
    dialog.lpstrTitle = title.c_str();
    return dialog;
}

}  // namespace

std::optional<std::string> SystemFileDialogs::OpenFile(const core::OpenFileRequest& request) {
    std::vector<char> path(kPathBytes, '\0');
    const std::string filter = FilterOf(request);
    OPENFILENAMEA dialog = DialogOf(request.owner, request.title, filter);
    dialog.lpstrFile = path.data();
    dialog.nMaxFile = static_cast<DWORD>(path.size());
    // The program works with full paths; where the dialog was last is no business of the process.
    dialog.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    if (GetOpenFileNameA(&dialog) == 0) return std::nullopt;
    return std::string(path.data());
}

std::string SystemFileDialogs::OpenFiles(const core::OpenFileRequest& request) {
    std::string files(kSeveralBytes, '\0');
    std::string title(kSeveralBytes, '\0');
    const std::string filter = FilterOf(request);
    OPENFILENAMEA dialog = DialogOf(request.owner, request.title, filter);
    dialog.hInstance = GetModuleHandleW(nullptr);
    dialog.lpstrFile = files.data();
    dialog.nMaxFile = kSeveralLimit;
    dialog.lpstrFileTitle = title.data();
    dialog.nMaxFileTitle = kSeveralLimit;
    dialog.Flags = OFN_EXPLORER | OFN_ALLOWMULTISELECT;
    if (GetOpenFileNameA(&dialog) == 0) return {};
    return files;
}

std::optional<std::string> SystemFileDialogs::SaveFile(const core::SaveFileRequest& request) {
    std::string path(core::kSaveBufferBytes, '\0');
    std::string title(core::kSaveBufferBytes, '\0');
    const std::string filter = FilterText(request.filters);
    OPENFILENAMEA dialog = DialogOf(request.owner, request.title, filter);
    dialog.hInstance = GetModuleHandleW(nullptr);
    dialog.nFilterIndex = 1;
    dialog.lpstrFile = path.data();
    dialog.nMaxFile = kSaveLimit;
    dialog.lpstrFileTitle = title.data();
    dialog.nMaxFileTitle = kSaveLimit;
    dialog.lpstrDefExt = request.defaultExtension.c_str();
    if (GetSaveFileNameA(&dialog) != 0) return path;
    if (CommDlgExtendedError() == FNERR_BUFFERTOOSMALL) {
        throw forms::RunTimeError("The path of that file is too long.");
    }
    return std::nullopt;
}

}  // namespace nqp::platform
