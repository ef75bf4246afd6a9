#pragma once

#include <cstdint>

#include "base/geometry.h"

namespace nqp::remote {

// A knob in the hand: from the press on it to the release.
class KnobDrag {
public:
    bool Active() const { return active_; }

    // Where inside the knob it was taken, twips.
    void Press(base::Twips where) {
        grab_offset_ = base::RoundHalfEven(where);
        active_ = true;
    }
    void Release() { active_ = false; }
    // Where the knob's edge goes when the pointer is there inside the knob.
    base::Twips EdgeFor(base::Twips edge, base::Twips pointer) const {
        return edge + pointer - static_cast<base::Twips>(grab_offset_);
    }

private:
    std::int32_t grab_offset_ = 0;
    bool active_ = false;
};

}  // namespace nqp::remote
