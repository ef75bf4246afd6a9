#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string>

#include "fragments/fragment_bounds.h"
#include "fragments/hand_off.h"

namespace {

using namespace nqp::fragments;

constexpr std::int32_t kClip = 3700;  // seconds

bool IsInOrder(const FragmentBounds& bounds) {
    return bounds.BeginSeconds() <= bounds.EndSeconds();
}

// Leaves every field once. One that holds no number stops at it and changes nothing.
void LeaveFields(FragmentBounds bounds) {
    for (const BoundEnd end : {BoundEnd::Begin, BoundEnd::End}) {
        for (const BoundPart part : {BoundPart::Hours, BoundPart::Minutes, BoundPart::Seconds}) {
            const FragmentBounds before = bounds;
            try {
                bounds.Leave(end, part, kClip);
            } catch (const std::runtime_error&) {
                if (!(bounds == before)) std::abort();
                return;
            }
            const std::int32_t left =
                end == BoundEnd::Begin ? bounds.BeginSeconds() : bounds.EndSeconds();
            if (left > kClip || !IsInOrder(bounds)) std::abort();
        }
    }
}

void Mark(FragmentBounds bounds, std::int32_t position) {
    try {
        bounds.MarkBegin(position, true);
        if (!IsInOrder(bounds)) std::abort();
        bounds.MarkEnd(position / 2, true);
        if (!IsInOrder(bounds)) std::abort();
    } catch (const std::runtime_error&) {
        return;
    }
}

void ReadTarget(const std::string& output) {
    try {
        const AudioTarget target = AudioTargetOf(output);
        if (target.path.find('\0') != std::string::npos) std::abort();
        if (target.temporaryVideo.size() != target.path.size() + 1) std::abort();
    } catch (const std::runtime_error&) {
        return;
    }
}

}  // namespace

// Six lines are the fields of a fragment; all of it is what a save dialog left.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::istringstream lines(text);
    FragmentBounds bounds;
    for (std::string* field : {&bounds.begin.hours, &bounds.begin.minutes, &bounds.begin.seconds,
                               &bounds.end.hours, &bounds.end.minutes, &bounds.end.seconds}) {
        std::getline(lines, *field);
    }
    LeaveFields(bounds);
    Mark(bounds, static_cast<std::int32_t>(size));
    ReadTarget(text);
    return 0;
}
