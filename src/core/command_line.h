#pragma once

#include <string>
#include <string_view>

namespace nqp::core {

inline constexpr char kHiddenSwitch[] = "/START";  // the whole command line, upper case

// The arguments of a process' whole command line as one text: all behind the program's own name and
// the blanks that follow it. Quotes and blanks inside are kept.
std::wstring_view ArgumentsOf(std::wstring_view wholeLine);

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
