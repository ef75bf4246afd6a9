#pragma once

#include <span>

namespace nqp::platform {

// The bytes of a raw resource in the program file, valid as long as the program runs; none when
// there is no such resource.
std::span<const char> ResourceBytes(int number);

}  // namespace nqp::platform
