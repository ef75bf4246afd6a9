#include "video/resize_zones.h"

namespace nqp::video {
namespace {

constexpr base::Twips kCornerReach = 200;
constexpr base::Twips kEdgeReach = 150;

}  // namespace

forms::HitCode ZoneAt(base::Point pointer, base::Size window) {
    if (pointer.x > window.width - kCornerReach && pointer.y > window.height - kCornerReach) {
        return forms::HitCode::BottomRight;
    }
    if (pointer.x > window.width - kEdgeReach) return forms::HitCode::Right;
    if (pointer.y > window.height - kEdgeReach) return forms::HitCode::Bottom;
    return forms::HitCode::Caption;
}

}  // namespace nqp::video
