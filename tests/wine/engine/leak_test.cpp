#include <windows.h>

#include <gtest/gtest.h>

#include <psapi.h>
#include <tlhelp32.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <utility>
#include <vector>

#include <dshow.h>

#include "engine_window.h"
#include "platform/com.h"

namespace nqp::test {
namespace {

struct Resources {
    double kernelHandles = 0;
    double gdiObjects = 0;
    double windows = 0;
    double threads = 0;
    double committedBytes = 0;
};

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

double CountKernelHandles() {
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

double CountThreads() {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    double count = 0;
    for (BOOL more = Thread32First(snapshot, &entry); more; more = Thread32Next(snapshot, &entry)) {
        if (entry.th32OwnerProcessID == GetCurrentProcessId()) ++count;
    }
    CloseHandle(snapshot);
    return count;
}

BOOL CALLBACK CountOwnWindow(HWND window, LPARAM counter) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId()) ++*reinterpret_cast<double*>(counter);
    return TRUE;
}

double CountWindows() {
    double count = 0;
    EnumWindows(CountOwnWindow, reinterpret_cast<LPARAM>(&count));
    return count;
}

// Where the system does not say how many GDI objects there are, the ones that can still be made
// tell: the more are in use, the fewer are left.
double CountGdiObjects() {
    const DWORD known = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    if (known != 0) return known;
    constexpr double kTableSize = 65536;
    std::vector<HBRUSH> brushes;
    while (const HBRUSH brush = CreateSolidBrush(RGB(1, 2, 3)))
        brushes.push_back(brush);
    for (const HBRUSH brush : brushes)
        DeleteObject(brush);
    return kTableSize - static_cast<double>(brushes.size());
}

double CommittedBytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof(counters);
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters));
    return static_cast<double>(counters.PagefileUsage);
}

Resources Measure() {
    PumpFor(300ms);
    return {.kernelHandles = CountKernelHandles(),
            .gdiObjects = CountGdiObjects(),
            .windows = CountWindows(),
            .threads = CountThreads(),
            .committedBytes = CommittedBytes()};
}

// What building and releasing a plain graph of the same clip costs the process for good: the media
// stack's own losses, which no user of it can prevent.
void BuildPlainGraph(const std::string& clip) {
    const platform::ComApartment apartment;
    const auto graph = platform::ComPtr<IGraphBuilder>::Create(CLSID_FilterGraph);
    const auto control = graph.As<IMediaControl>();
    const std::wstring path = std::filesystem::path(clip).wstring();
    if (!graph || !control || FAILED(graph->RenderFile(path.c_str(), nullptr))) return;
    const auto window = graph.As<IVideoWindow>(IID_IVideoWindow);
    window->put_AutoShow(OAFALSE);
    OAFilterState reached = State_Stopped;
    control->Pause();
    control->GetState(5000, &reached);
    control->Stop();
}

constexpr int kWarmUp = 10;
const char* const kClips[] = {"mpeg4-mp3.avi", "tone.wav", "mpeg1.mpg",     "silent.avi",
                              "h264-aac.mp4",  "wmv2.wmv", "mjpeg-pcm.avi", "mpeg2.mpg",
                              "odd-size.avi",  "tone.mp3", "missing.avi",   "truncated.avi"};

std::string ClipOfRound(int round) {
    return Clip(kClips[static_cast<std::size_t>(round) % std::size(kClips)]);
}

template <class Round>
std::pair<Resources, Resources> MeasureRounds(int rounds, Round round) {
    Resources before;
    for (int i = 0; i < rounds; ++i) {
        if (i == kWarmUp) before = Measure();
        round(i);
    }
    return {before, Measure()};
}

struct Growth {
    const char* what;
    double Resources::*count;
};

constexpr Growth kCounted[] = {{"kernel handles", &Resources::kernelHandles},
                               {"GDI objects", &Resources::gdiObjects},
                               {"windows", &Resources::windows},
                               {"threads", &Resources::threads},
                               {"committed bytes", &Resources::committedBytes}};

TEST(Leak, OpenPlaySeekCloseTwoHundredTimesLeavesNothingBehindButThePlatformsOwnLosses) {
    constexpr int kRounds = 200;
    constexpr int kPlainRounds = 60;
    constexpr double kShare = 0.05;
    EngineWindow window;
    window.engine().SetAutoStart(true);
    const auto [before, after] = MeasureRounds(kRounds, [&](int round) {
        window.engine().Open(ClipOfRound(round));
        PumpFor(30ms);
        window.engine().SetCurrentPosition(window.engine().Duration() / 2);
        if (round % 5 == 0) window.engine().Pause();
        if (round % 7 == 0) window.engine().SetRate(round % 2 == 0 ? 2.0 : 1.0);
        PumpFor(20ms);
        window.engine().Open("");
        window.raised.clear();
    });
    const auto [plainBefore, plainAfter] =
        MeasureRounds(kPlainRounds, [](int round) { BuildPlainGraph(ClipOfRound(round)); });
    for (const Growth& counted : kCounted) {
        const double lossPerRound =
            std::max(0.0, (plainAfter.*counted.count - plainBefore.*counted.count) /
                              (kPlainRounds - kWarmUp));
        const double own =
            after.*counted.count - before.*counted.count - lossPerRound * (kRounds - kWarmUp);
        std::cout << counted.what << ": " << before.*counted.count << " -> " << after.*counted.count
                  << ", the platform's own loss per graph " << lossPerRound << std::endl;
        EXPECT_LE(own, std::max(1.0, before.*counted.count * kShare)) << counted.what;
    }
}

}  // namespace
}  // namespace nqp::test
