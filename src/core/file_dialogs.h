#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/input.h"

namespace nqp::core {

// One entry of a file dialog's type list.
struct FileFilter {
    std::string name;
    std::string pattern;
};

struct OpenFileRequest {
    base::NativeWindow owner = nullptr;
    std::string title;
    FileFilter filter;
};

struct SaveFileRequest {
    base::NativeWindow owner = nullptr;
    std::string title;
    std::vector<FileFilter> filters;
    std::string defaultExtension;
};

// What a save dialog's buffer holds, bytes; the path in it is shorter by one at least.
inline constexpr std::size_t kSaveBufferBytes = 257;

// The system's file dialogs.
class FileDialogs {
public:
    // Modal. The chosen path in UTF-8; nothing when the dialog was cancelled.
    virtual std::optional<std::string> OpenFile(const OpenFileRequest& request) = 0;

    // Modal, for any number of files. What the dialog left in its buffer of 9999 bytes: one full
    // path, or a folder and the names in it, each with its NUL character and one more behind the
    // last. Empty when it was cancelled, or when the chosen files did not fit.
    virtual std::string OpenFiles(const OpenFileRequest& request) = 0;

    // Modal. The dialog's whole buffer of kSaveBufferBytes: the chosen path in UTF-8 and the NUL
    // characters behind it. Nothing when the dialog was cancelled; throws std::runtime_error when
    // the path did not fit.
    virtual std::optional<std::string> SaveFile(const SaveFileRequest& request) = 0;

protected:
    ~FileDialogs() = default;
};

}  // namespace nqp::core
