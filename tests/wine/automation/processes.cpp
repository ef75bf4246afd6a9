#include "processes.h"

#include <tlhelp32.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "platform/handle.h"
#include "server_ready.h"
#include "win32/handle_count.h"

namespace nqp::test {
namespace {

using platform::Handle;

constexpr DWORD kDeadlineMilliseconds = 10000;
constexpr DWORD kPollMilliseconds = 5;

// Servers that tests have met. As long as a handle is open the process' number is not given to
// another: Wine's clients take a new server for a killed one of the same number.
std::map<DWORD, Handle>& MetServers() {
    static std::map<DWORD, Handle> servers;
    return servers;
}

std::wstring ProgramOf(HANDLE process) {
    std::wstring path(32768, L'\0');
    DWORD length = static_cast<DWORD>(path.size());
    if (!QueryFullProcessImageNameW(process, 0, path.data(), &length)) return {};
    path.resize(length);
    return path;
}

Handle Start(const std::filesystem::path& program, const std::wstring& arguments) {
    std::wstring line = L"\"" + program.wstring() + L"\" " + arguments;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &started)) {
        return nullptr;
    }
    CloseHandle(started.hThread);
    return Handle(started.hProcess);
}

void HandleMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

}  // namespace

std::vector<DWORD> ProcessesOf(const std::filesystem::path& program) {
    const Handle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    std::vector<DWORD> found;
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot.get(), &entry); more;
         more = Process32NextW(snapshot.get(), &entry)) {
        if (entry.th32ProcessID == GetCurrentProcessId()) continue;
        Handle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, entry.th32ProcessID));
        if (!process || lstrcmpiW(ProgramOf(process.get()).c_str(), program.c_str()) != 0) continue;
        found.push_back(entry.th32ProcessID);
        MetServers().emplace(entry.th32ProcessID, std::move(process));
    }
    return found;
}

void EndProcessesOf(const std::filesystem::path& program) {
    for (const DWORD process : ProcessesOf(program)) {
        const Handle handle(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, process));
        if (!handle) continue;
        TerminateProcess(handle.get(), 1);
        WaitForSingleObject(handle.get(), kDeadlineMilliseconds);
    }
}

bool StartServer(const std::filesystem::path& program) {
    const Handle ready(CreateEventW(nullptr, FALSE, FALSE, kServerReady));
    Handle process = Start(program, L"-Embedding");
    if (!process) return false;
    const HANDLE ends[] = {ready.get(), process.get()};
    const DWORD number = GetProcessId(process.get());
    MetServers().emplace(number, std::move(process));
    return WaitForMultipleObjects(2, ends, FALSE, kDeadlineMilliseconds) == WAIT_OBJECT_0;
}

DWORD ExitCodeOf(const std::filesystem::path& program, const std::wstring& arguments) {
    const Handle process = Start(program, arguments);
    if (!process) return GetLastError();
    WaitForSingleObject(process.get(), kDeadlineMilliseconds);
    DWORD code = STILL_ACTIVE;
    GetExitCodeProcess(process.get(), &code);
    return code;
}

bool WaitUntil(const std::function<bool()>& condition) {
    const ULONGLONG deadline = GetTickCount64() + kDeadlineMilliseconds;
    for (;;) {
        HandleMessages();
        if (condition()) return true;
        if (GetTickCount64() >= deadline) return false;
        MsgWaitForMultipleObjectsEx(0, nullptr, kPollMilliseconds, QS_ALLINPUT,
                                    MWMO_INPUTAVAILABLE);
    }
}

std::size_t CountOwnHandles() {
    return CountHandles() - MetServers().size();
}

}  // namespace nqp::test
