#pragma once

#include <filesystem>
#include <string>

namespace nqp::core {

inline constexpr char kStartUpMarkerName[] = "startup.cfg";
inline constexpr char kOrdinaryStart = '0';        // the marker's byte: windows are shown
inline constexpr char kHiddenSwitch[] = "/START";  // the whole command line, upper case

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

// The command line as one text without what the automation layer adds for itself (a switch
// "-Embedding" or "/Automation", in any case), and whether it did.
struct CommandLine {
    std::string text;
    bool startedByAutomation = false;
};
CommandLine WithoutAutomationSwitch(const std::string& arguments);

// True for a text that names a media file: all but none at all and kHiddenSwitch.
bool NamesMediaFile(const std::string& commandLine);

}  // namespace nqp::core
