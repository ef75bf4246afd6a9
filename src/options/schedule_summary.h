#pragma once

#include <array>
#include <string>

namespace nqp::options {

inline constexpr std::array<const char*, 12> kMonthNames = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

// What the dialog shows of a scheduled play.
struct ScheduleChoice {
    int month = 0;  // 1 to 12; 0: none is chosen
    int day = 0;    // 1 to 31; 0: none is chosen
    std::string hour;
    std::string minute;  // digits; an empty text is a 0
    std::string file;
};

struct ScheduleSummary {
    bool halfSet = false;  // something is set, and yet nothing will ever play
    std::string sentence;
};

// Says in words what will be played when, or what is missing.
ScheduleSummary Summarize(const ScheduleChoice& choice);

}  // namespace nqp::options
