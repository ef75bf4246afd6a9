#include "options/schedule_summary.h"

#include <optional>
#include <vector>

#include "base/text.h"

namespace nqp::options {
namespace {

constexpr int kFebruary = 2;
constexpr int kLeapDay = 29;
constexpr std::array kDaysOfMonths = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

std::string MonthName(int month) {
    return kMonthNames[static_cast<std::size_t>(month) - 1];
}

bool IsADate(const ScheduleChoice& choice) {
    return choice.day <= kDaysOfMonths[static_cast<std::size_t>(choice.month) - 1];
}

std::optional<int> NumberUpTo(int most, const std::string& digits) {
    const auto number = base::ParseWholeNumber(digits.empty() ? "0" : digits);
    return number && *number >= 0 && *number <= most ? std::optional<int>(*number) : std::nullopt;
}

std::string TwoDigits(int number) {
    const std::string digits = std::to_string(number);
    return digits.size() < 2 ? std::string("0").append(digits) : digits;
}

std::string JoinedWithAnd(const std::vector<std::string>& parts) {
    std::string joined;
    for (std::size_t index = 0; index < parts.size(); ++index) {
        if (index > 0) joined += index + 1 == parts.size() ? " and " : ", ";
        joined += parts[index];
    }
    return joined;
}

std::vector<std::string> MissingParts(const ScheduleChoice& choice) {
    std::vector<std::string> missing;
    if (choice.month == 0) missing.emplace_back("a month");
    if (choice.day == 0) missing.emplace_back("a day");
    if (choice.file.empty()) missing.emplace_back("a file");
    return missing;
}

bool NothingIsSet(const ScheduleChoice& choice) {
    const bool noTime = NumberUpTo(0, choice.hour) && NumberUpTo(0, choice.minute);
    return choice.month == 0 && choice.day == 0 && choice.file.empty() && noTime;
}

std::string WhatWillPlay(const ScheduleChoice& choice, int hour, int minute) {
    const bool leapDay = choice.month == kFebruary && choice.day == kLeapDay;
    return "Plays " + base::FileNameOf(choice.file) + " on " + std::to_string(choice.day) + " " +
           MonthName(choice.month) + " at " + std::to_string(hour) + ":" + TwoDigits(minute) +
           (leapDay ? ", in leap years." : ", every year.");
}

}  // namespace

ScheduleSummary Summarize(const ScheduleChoice& choice) {
    if (NothingIsSet(choice)) return {false, "Nothing is scheduled."};
    const std::vector<std::string> missing = MissingParts(choice);
    if (!missing.empty())
        return {true, "Nothing will play: choose " + JoinedWithAnd(missing) + "."};
    if (!IsADate(choice)) {
        return {true, "Nothing will play: " + MonthName(choice.month) + " has no day " +
                          std::to_string(choice.day) + "."};
    }
    const auto hour = NumberUpTo(23, choice.hour);
    const auto minute = NumberUpTo(59, choice.minute);
    if (!hour || !minute) return {true, "Nothing will play: the time goes from 0:00 to 23:59."};
    return {false, WhatWillPlay(choice, *hour, *minute)};
}

}  // namespace nqp::options
