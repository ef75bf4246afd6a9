#pragma once

#include <windows.h>

#include <cstddef>

namespace nqp::test {

// Kernel handles that a process holds, from the system's table of all of them: its own count is
// always 0 under Wine.
std::size_t CountHandles(DWORD process = GetCurrentProcessId());

}  // namespace nqp::test
