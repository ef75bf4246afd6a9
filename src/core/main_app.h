#pragma once

#include <filesystem>
#include <string>

#include "core/command_line.h"

namespace nqp::core {

inline constexpr char kStartUpMarkerName[] = "startup.cfg";
inline constexpr char kOrdinaryStart = '0';  // the marker's byte: windows are shown
inline constexpr char kAutomationStart = '1';

enum class LaunchMode {
    Ordinary,    // both windows are shown
    Hidden,      // both are loaded; only the icon in the notification area is seen
    Automation,  // no window
};

// The next start of the program, by whom it may be, is an automation start as long as the object
// lives and the marker was not taken.
class ArmedAutomationStart {
public:
    explicit ArmedAutomationStart(const std::filesystem::path& programFolder);
    ~ArmedAutomationStart();
    ArmedAutomationStart(const ArmedAutomationStart&) = delete;
    ArmedAutomationStart& operator=(const ArmedAutomationStart&) = delete;

private:
    std::filesystem::path marker_;
};

// The two windows that a start by the user brings up, the video window first.
class StartWindows {
public:
    virtual void Load() = 0;
    virtual void Show() = 0;

protected:
    ~StartWindows() = default;
};

// The application object: its creation decides how this process was started and brings up what
// that takes. A marker that does not hold kOrdinaryStart, or is missing, makes it an automation
// start and is set back, so that the next start is an ordinary one. A process that the automation
// layer says it has started is one whatever the marker holds: a client that knows nothing of the
// marker gets no windows it did not ask for.
class MainApp {
public:
    MainApp(const std::filesystem::path& programFolder, const CommandLine& commandLine,
            StartWindows& windows);

    LaunchMode Mode() const { return mode_; }

private:
    LaunchMode mode_;
};

}  // namespace nqp::core
