#pragma once

#include <optional>
#include <string>

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

// The system's file dialogs.
class FileDialogs {
public:
    // Modal. The chosen path in UTF-8; nothing when the dialog was cancelled.
    virtual std::optional<std::string> OpenFile(const OpenFileRequest& request) = 0;

    // Modal, for any number of files. What the dialog left in its buffer of 9999 bytes: one full
    // path, or a folder and the names in it, each with its NUL character and one more behind the
    // last. Empty when it was cancelled, or when the chosen files did not fit.
    virtual std::string OpenFiles(const OpenFileRequest& request) = 0;

protected:
    ~FileDialogs() = default;
};

}  // namespace nqp::core
