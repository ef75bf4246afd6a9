#include "core/main_app.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>
#include <vector>

#include "base/file.h"

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

bool EqualIgnoringCase(std::string_view text, std::string_view other) {
    return std::equal(text.begin(), text.end(), other.begin(), other.end(), [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) ==
               std::tolower(static_cast<unsigned char>(b));
    });
}

}  // namespace

MainApp::MainApp(const std::filesystem::path& programFolder, const std::string& commandLine,
                 StartWindows& windows)
    : mode_(Decide(programFolder, commandLine)) {
    if (mode_ == LaunchMode::Hidden) windows.Load();
    if (mode_ == LaunchMode::Ordinary) windows.Show();
}

CommandLine WithoutAutomationSwitch(const std::string& arguments) {
    constexpr std::array<std::string_view, 4> kSwitches = {"-Embedding", "/Embedding",
                                                           "-Automation", "/Automation"};
    for (const std::string_view name : kSwitches) {
        if (EqualIgnoringCase(arguments, name)) return {{}, true};
    }
    return {arguments, false};
}

bool NamesMediaFile(const std::string& commandLine) {
    return !commandLine.empty() && commandLine != kHiddenSwitch;
}

}  // namespace nqp::core
