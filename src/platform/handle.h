#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

namespace nqp::platform {

struct HandleCloser {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};

// A kernel object's handle; null when there is none.
using Handle = std::unique_ptr<std::remove_pointer_t<HANDLE>, HandleCloser>;

}  // namespace nqp::platform
