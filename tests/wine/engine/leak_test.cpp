#include <windows.h>

#include <gtest/gtest.h>

#include <psapi.h>
#include <tlhelp32.h>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <utility>
#include <vector>

#include "engine_window.h"
#include "win32/gdi_objects.h"
#include "win32/kernel_handles.h"

namespace nqp::test {
namespace {

struct Resources {
    double kernelHandles = 0;
    double gdiObjects = 0;
    double windows = 0;
    double threads = 0;
    double committedBytes = 0;
};

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

// What may be more in the end than after the warm-up: five per cent, and for each clip what Wine
// 8's own media stack keeps for good. A plain graph that is built, cued and released without a line
// of the engine loses about a hundred handles; the engine avoids all of them but one.
struct Growth {
    const char* what;
    double Resources::*count;
    double platformLossPerClip;
};

constexpr Growth kCounted[] = {{"kernel handles", &Resources::kernelHandles, 1.5},
                               {"GDI objects", &Resources::gdiObjects, 0},
                               {"windows", &Resources::windows, 0},
                               {"threads", &Resources::threads, 0},
                               {"committed bytes", &Resources::committedBytes, 800e3}};

TEST(Leak, OpenPlaySeekCloseTwoHundredTimesLeavesNothingBehindButThePlatformsOwnLosses) {
    constexpr int kRounds = 200;
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
    for (const Growth& counted : kCounted) {
        const double first = before.*counted.count;
        const double last = after.*counted.count;
        std::cout << counted.what << ": " << first << " -> " << last << std::endl;
        const double allowed =
            std::max(1.0, first * kShare) + counted.platformLossPerClip * (kRounds - kWarmUp);
        EXPECT_LE(last - first, allowed) << counted.what;
    }
}

}  // namespace
}  // namespace nqp::test
