#include "core/command_line.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace nqp::core {
namespace {

bool EqualIgnoringCase(std::string_view text, std::string_view other) {
    return std::equal(text.begin(), text.end(), other.begin(), other.end(), [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) ==
               std::tolower(static_cast<unsigned char>(b));
    });
}

}  // namespace

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
