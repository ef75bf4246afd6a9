#include "core/command_line.h"

#include <array>

#include "base/text.h"

namespace nqp::core {

// A program name in quotes ends with the closing one, a plain one at the first blank.
std::wstring_view ArgumentsOf(std::wstring_view wholeLine) {
    constexpr std::wstring_view kBlanks = L" \t";
    const bool quoted = wholeLine.starts_with(L'"');
    const auto end = quoted ? wholeLine.find(L'"', 1) : wholeLine.find_first_of(kBlanks);
    if (end == std::wstring_view::npos) return {};
    wholeLine.remove_prefix(end + (quoted ? 1 : 0));
    const auto first = wholeLine.find_first_not_of(kBlanks);
    return first == std::wstring_view::npos ? std::wstring_view{} : wholeLine.substr(first);
}

CommandLine WithoutAutomationSwitch(const std::string& arguments) {
    constexpr std::array<std::string_view, 4> kSwitches = {"-embedding", "/embedding",
                                                           "-automation", "/automation"};
    const std::string lower = base::LowerCase(arguments);
    for (const std::string_view name : kSwitches) {
        if (lower == name) return {{}, true};
    }
    return {arguments, false};
}

bool NamesMediaFile(const std::string& commandLine) {
    return !commandLine.empty() && commandLine != kHiddenSwitch;
}

}  // namespace nqp::core
