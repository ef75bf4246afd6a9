#include "core/main_app.h"

#include <array>
#include <vector>

#include "base/file.h"
#include "core/command_line.h"

namespace nqp::core {
namespace {

LaunchMode Decide(const std::filesystem::path& programFolder, const std::string& commandLine) {
    const std::filesystem::path marker = programFolder / kStartUpMarkerName;
    const std::vector<char> content = base::ReadFile(marker);
    if (content.empty() || content.front() != kOrdinaryStart) {
        base::PutFileInPlace(marker, std::array{kOrdinaryStart});
        return LaunchMode::Automation;
    }
    return commandLine == kHiddenSwitch ? LaunchMode::Hidden : LaunchMode::Ordinary;
}

}  // namespace

MainApp::MainApp(const std::filesystem::path& programFolder, const std::string& commandLine,
                 StartWindows& windows)
    : mode_(Decide(programFolder, commandLine)) {
    if (mode_ == LaunchMode::Hidden) windows.Load();
    if (mode_ == LaunchMode::Ordinary) windows.Show();
}

}  // namespace nqp::core
