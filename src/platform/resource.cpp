#include "platform/resource.h"

#include <windows.h>

namespace nqp::platform {

std::span<const char> ResourceBytes(int number) {
    const HRSRC found = FindResourceW(nullptr, MAKEINTRESOURCEW(number), RT_RCDATA);
    if (found == nullptr) return {};
    const auto* bytes = static_cast<const char*>(LockResource(LoadResource(nullptr, found)));
    return {bytes, bytes != nullptr ? SizeofResource(nullptr, found) : 0};
}

}  // namespace nqp::platform
