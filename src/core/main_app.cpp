#include "core/main_app.h"

#include <array>
#include <vector>

#include "base/file.h"

namespace nqp::core {
namespace {

bool ArmsOrdinaryStart(const std::filesystem::path& marker) {
    const std::vector<char> content = base::ReadFile(marker);
    return !content.empty() && content.front() == kOrdinaryStart;
}

// True when it was an automation start that was armed.
bool TakeMarker(const std::filesystem::path& marker) {
    if (ArmsOrdinaryStart(marker)) return false;
    base::PutFileInPlace(marker, std::array{kOrdinaryStart});
    return true;
}

LaunchMode Decide(const std::filesystem::path& programFolder, const CommandLine& commandLine) {
    const bool armed = TakeMarker(programFolder / kStartUpMarkerName);
    if (armed || commandLine.startedByAutomation) return LaunchMode::Automation;
    return commandLine.text == kHiddenSwitch ? LaunchMode::Hidden : LaunchMode::Ordinary;
}

}  // namespace

ArmedAutomationStart::ArmedAutomationStart(const std::filesystem::path& programFolder)
    : marker_(programFolder / kStartUpMarkerName) {
    base::PutFileInPlace(marker_, std::array{kAutomationStart});
}

// Left over when no process had to be started: the next one is a person's.
ArmedAutomationStart::~ArmedAutomationStart() {
    TakeMarker(marker_);
}

MainApp::MainApp(const std::filesystem::path& programFolder, const CommandLine& commandLine,
                 StartWindows& windows)
    : mode_(Decide(programFolder, commandLine)) {
    if (mode_ == LaunchMode::Hidden) windows.Load();
    if (mode_ == LaunchMode::Ordinary) windows.Show();
}

}  // namespace nqp::core
