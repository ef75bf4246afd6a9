#pragma once

#include "base/geometry.h"
#include "forms/backend.h"

namespace nqp::video {

// The part of the video window under the pointer, named by what a press there drags: the lower
// right corner, the right edge, the bottom edge, or the body, which moves the window. The corner
// reaches further (200 twips) than the edges (150), so that it is easy to hit.
forms::HitCode ZoneAt(base::Point pointer, base::Size window);

}  // namespace nqp::video
