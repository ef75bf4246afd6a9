#pragma once

#include <windows.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace nqp::test {

// Processes that run this program file, without the asking one.
std::vector<DWORD> ProcessesOf(const std::filesystem::path& program);
void EndProcessesOf(const std::filesystem::path& program);
// Starts a server as the system would, and waits until its class can be reached. False when it does
// not come to that.
bool StartServer(const std::filesystem::path& program);
// Starts the program and waits until it ends; its exit code, or STILL_ACTIVE when it does not.
DWORD ExitCodeOf(const std::filesystem::path& program, const std::wstring& arguments);

// Handles messages, so that calls from other apartments arrive, until the condition holds; false
// when it does not within ten seconds.
bool WaitUntil(const std::function<bool()>& condition);

// What the process holds open, whatever the system's own count says, without what these functions
// keep of the servers that they have met.
std::size_t CountOwnHandles();

}  // namespace nqp::test
