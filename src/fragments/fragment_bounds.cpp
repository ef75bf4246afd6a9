#include "fragments/fragment_bounds.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "base/text.h"
#include "base/time_text.h"

namespace nqp::fragments {
namespace {

// 24 hours are allowed, with any minutes and seconds.
constexpr std::int32_t kMostHours = 24;
constexpr std::int32_t kMostMinutes = 59;
constexpr std::int32_t kMostSeconds = 59;
constexpr std::int64_t kSecondsPerHour = 3600;
constexpr std::int64_t kSecondsPerMinute = 60;

struct PartRule {
    std::string Bound::*field;
    std::int32_t most;
    std::int64_t weight;  // seconds
};

PartRule RuleOf(BoundPart part) {
    switch (part) {
        case BoundPart::Hours:
            return {&Bound::hours, kMostHours, kSecondsPerHour};
        case BoundPart::Minutes:
            return {&Bound::minutes, kMostMinutes, kSecondsPerMinute};
        default:
            return {&Bound::seconds, kMostSeconds, 1};
    }
}

std::int32_t Number(const std::string& field) {
    if (field.empty()) return 0;
    const auto number = base::ParseWholeNumber(field);
    if (!number) throw std::runtime_error("\"" + field + "\" is not a whole number.");
    return *number;
}

std::int32_t Total(const Bound& bound) {
    const std::int64_t total = Number(bound.hours) * kSecondsPerHour +
                               Number(bound.minutes) * kSecondsPerMinute + Number(bound.seconds);
    using Limits = std::numeric_limits<std::int32_t>;
    if (total < Limits::min() || total > Limits::max()) {
        throw std::runtime_error("A time of the fragment is too large.");
    }
    return static_cast<std::int32_t>(total);
}

Bound BoundAt(std::int32_t position) {
    const base::TimeParts parts = base::SplitSeconds(std::max(0, position));
    return {base::TwoDigits(parts.hours), base::TwoDigits(parts.minutes),
            base::TwoDigits(parts.seconds)};
}

// Of a bound behind the clip's end only the field that was left stays, when the clip is that long.
void SetBack(Bound& bound, const PartRule& rule, std::int32_t clipSeconds) {
    const std::string own = bound.*rule.field;
    const std::int32_t value = Number(own);
    const std::int32_t total = Total(bound);
    if (value > rule.most || value < 0) {
        bound = {};
    } else if (total > clipSeconds) {
        bound = {};
        if (value * rule.weight <= clipSeconds) bound.*rule.field = own;
    }
}

}  // namespace

void FragmentBounds::Leave(BoundEnd which, BoundPart part, std::int32_t clipSeconds) {
    FragmentBounds repaired = *this;
    Bound& own = which == BoundEnd::Begin ? repaired.begin : repaired.end;
    const PartRule rule = RuleOf(part);
    SetBack(own, rule, clipSeconds);
    own.*rule.field = base::TwoDigits(Number(own.*rule.field));
    if (repaired.BeginSeconds() > repaired.EndSeconds()) repaired.end = repaired.begin;
    *this = repaired;
}

// The end is measured against the position, also where the begin does not take it.
void FragmentBounds::MarkBegin(std::int32_t position, bool clipHasTitle) {
    const bool behindEnd = position > EndSeconds();
    if (clipHasTitle) begin = BoundAt(position);
    if (behindEnd) end = begin;
}

void FragmentBounds::MarkEnd(std::int32_t position, bool clipHasTitle) {
    FragmentBounds marked = *this;
    if (clipHasTitle) marked.end = BoundAt(position);
    if (marked.EndSeconds() < marked.BeginSeconds()) marked.begin = marked.end;
    *this = marked;
}

std::int32_t FragmentBounds::BeginSeconds() const {
    return Total(begin);
}

std::int32_t FragmentBounds::EndSeconds() const {
    return Total(end);
}

}  // namespace nqp::fragments
