#pragma once

#include <cstdint>
#include <optional>

namespace nqp::companion {

// Turns frames that come at their own times into frames at a fixed rate: each place of a grid shows
// the frame that is nearest to it, and of every hundred places as many are kept as the percentage
// says. Times are seconds.
class FramePicker {
public:
    // Frames a second of the grid, above 0; 1 to 100 percent.
    FramePicker(double rate, int percentage) : rate_(rate), percentage_(percentage) {}

    // Where the grid begins; the frame shown there is the first one.
    void Begin(double origin) { origin_ = origin; }

    // The next frame comes at `time`. How many times the one before it is to be written.
    std::int64_t Next(double time);
    // No frame comes any more, and the last one is shown until `end`. How many times it is to be
    // written; a fragment has one frame at least.
    std::int64_t Finish(double end);

    // Places of the grid so far, and the frames kept of them.
    std::int64_t Places() const { return place_; }
    std::int64_t Written() const { return written_; }

private:
    std::int64_t PlaceOf(double time) const;
    std::int64_t AdvanceTo(std::int64_t place);

    double rate_;
    int percentage_;
    double origin_ = 0;
    std::int64_t place_ = 0;  // of the frame that is held
    std::int64_t written_ = 0;
};

}  // namespace nqp::companion
