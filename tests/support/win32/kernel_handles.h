#pragma once

#include <windows.h>

#include <cstddef>
#include <vector>

namespace nqp::test {

// The table of all handles of the system, as class 64 of the query lays it out.
struct ExtendedHandleEntry {
    void* object;
    ULONG_PTR processId;
    ULONG_PTR handle;
    ULONG access;
    USHORT creatorIndex;
    USHORT objectType;
    ULONG attributes;
    ULONG reserved;
};

struct ExtendedHandleTable {
    ULONG_PTR count;
    ULONG_PTR reserved;
    ExtendedHandleEntry entries[1];
};

// Of this process; zero where the system does not tell.
inline double CountKernelHandles() {
    using QuerySystemInformation = LONG(WINAPI*)(ULONG, void*, ULONG, ULONG*);
    constexpr ULONG kExtendedHandleInformation = 64;
    const auto query = reinterpret_cast<QuerySystemInformation>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
    std::vector<char> buffer(std::size_t{1} << 20);
    ULONG needed = 0;
    while (query(kExtendedHandleInformation, buffer.data(), static_cast<ULONG>(buffer.size()),
                 &needed) != 0) {
        if (buffer.size() > (std::size_t{1} << 28)) return 0;
        buffer.resize(buffer.size() * 2);
    }
    const auto* table = reinterpret_cast<const ExtendedHandleTable*>(buffer.data());
    double count = 0;
    for (ULONG_PTR i = 0; i < table->count; ++i) {
        if (table->entries[i].processId == GetCurrentProcessId()) ++count;
    }
    return count;
}

}  // namespace nqp::test
