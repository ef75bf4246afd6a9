#pragma once

#include <filesystem>
#include <string>

namespace nqp::core {

inline constexpr char kStartUpMarkerName[] = "startup.cfg";
inline constexpr char kOrdinaryStart = '0';  // the marker's byte: windows are shown

enum class LaunchMode {
    Ordinary,    // both windows are shown
    Hidden,      // both are loaded; only the icon in the notification area is seen
    Automation,  // no window
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
// start and is set back, so that the next start is an ordinary one.
class MainApp {
public:
    MainApp(const std::filesystem::path& programFolder, const std::string& commandLine,
            StartWindows& windows);

    LaunchMode Mode() const { return mode_; }

private:
    LaunchMode mode_;
};

}  // namespace nqp::core
