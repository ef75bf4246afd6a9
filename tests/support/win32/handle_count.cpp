#include "win32/handle_count.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace nqp::test {
namespace {

// As class 64 of the query lays it out.
struct Entry {
    void* object;
    ULONG_PTR process;
    ULONG_PTR handle;
    ULONG access;
    USHORT trace;
    USHORT type;
    ULONG attributes;
    ULONG reserved;
};

struct Table {
    ULONG_PTR count;
    ULONG_PTR reserved;
};

// The headers do not know this question.
constexpr ULONG kAllHandles = 64;
constexpr LONG kTooSmall = static_cast<LONG>(0xC0000004);
using Query = LONG(WINAPI*)(ULONG, void*, ULONG, ULONG*);

std::vector<std::uint64_t> ReadTable() {
    const auto query = reinterpret_cast<Query>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
    std::vector<std::uint64_t> bytes(8192);
    for (;;) {
        const auto size = static_cast<ULONG>(bytes.size() * sizeof bytes[0]);
        if (query(kAllHandles, bytes.data(), size, nullptr) != kTooSmall) return bytes;
        bytes.resize(bytes.size() * 2);
    }
}

}  // namespace

std::size_t CountHandles(DWORD process) {
    const std::vector<std::uint64_t> bytes = ReadTable();
    const auto* table = reinterpret_cast<const Table*>(bytes.data());
    const auto* entries = reinterpret_cast<const Entry*>(table + 1);
    return static_cast<std::size_t>(
        std::count_if(entries, entries + table->count,
                      [process](const Entry& entry) { return entry.process == process; }));
}

}  // namespace nqp::test
