#pragma once

#include "base/geometry.h"

// Where everything stands on the remote's face at its smallest width, in pixels of the design
// resolution that are then counted in twips. Skins are drawn to these places.
namespace nqp::remote::face {

inline constexpr base::Twips kPixel = 15;

constexpr base::Rect At(int left, int top, int width, int height) {
    return {static_cast<base::Twips>(left) * kPixel, static_cast<base::Twips>(top) * kPixel,
            static_cast<base::Twips>(width) * kPixel, static_cast<base::Twips>(height) * kPixel};
}

constexpr base::Point PointAt(int x, int y) {
    return {static_cast<base::Twips>(x) * kPixel, static_cast<base::Twips>(y) * kPixel};
}

inline constexpr base::Twips kCompactHeight = 890;
inline constexpr base::Twips kSmallestWidth = 560 * kPixel;
// With the list.
inline constexpr base::Twips kSmallestHeight = 160 * kPixel;
inline constexpr base::Twips kFirstExpandedHeight = 320 * kPixel;

// The background picture shows the face at this size; a larger remote repeats the column and the
// row through this point.
inline constexpr base::Size kBackdropSize{kSmallestWidth, kSmallestHeight};
inline constexpr base::Point kBackdropStretch = PointAt(348, 120);

inline constexpr base::Rect kPlay = At(10, 12, 34, 34);
inline constexpr base::Rect kPause = At(46, 12, 34, 34);
inline constexpr base::Rect kStop = At(82, 12, 34, 34);
inline constexpr base::Rect kOpen = At(118, 12, 34, 34);

inline constexpr base::Rect kTitle = At(166, 6, 180, 18);
inline constexpr base::Rect kTime = At(350, 6, 78, 18);

// The knob is as tall as it looks good; its width counts in the seek.
inline constexpr base::Rect kPositionKnob = At(166, 26, 17, 14);
inline constexpr base::Point kPositionStart = PointAt(166, 32);
inline constexpr base::Point kPositionEnd = PointAt(428, 32);

inline constexpr base::Rect kBeginHours = At(166, 40, 22, 16);
inline constexpr base::Rect kBeginColon1 = At(188, 40, 6, 16);
inline constexpr base::Rect kBeginMinutes = At(194, 40, 22, 16);
inline constexpr base::Rect kBeginColon2 = At(216, 40, 6, 16);
inline constexpr base::Rect kBeginSeconds = At(222, 40, 22, 16);
inline constexpr base::Rect kMarkBegin = At(248, 40, 46, 16);
inline constexpr base::Rect kMarkEnd = At(300, 40, 46, 16);
inline constexpr base::Rect kEndHours = At(350, 40, 22, 16);
inline constexpr base::Rect kEndColon1 = At(372, 40, 6, 16);
inline constexpr base::Rect kEndMinutes = At(378, 40, 22, 16);
inline constexpr base::Rect kEndColon2 = At(400, 40, 6, 16);
inline constexpr base::Rect kEndSeconds = At(406, 40, 22, 16);

inline constexpr base::Rect kVolumeKnob = At(442, 8, 18, 10);
inline constexpr base::Point kVolumeTop = PointAt(450, 8);
inline constexpr base::Point kVolumeBottom = PointAt(450, 51);

inline constexpr base::Rect kOptions = At(468, 8, 20, 20);
inline constexpr base::Rect kHelp = At(492, 8, 20, 20);
inline constexpr base::Rect kPlaylist = At(516, 8, 20, 20);
inline constexpr base::Rect kHideRemote = At(468, 31, 20, 20);
inline constexpr base::Rect kHideAll = At(492, 31, 20, 20);
inline constexpr base::Rect kExit = At(516, 31, 20, 20);

// The grip of the bar sets the width, the one below the list both sides.
inline constexpr base::Rect kWidthGrip = At(544, 44, 12, 12);
inline constexpr base::Rect kSizeGrip = At(544, 308, 12, 12);

inline constexpr base::Twips kListLeft = 10 * kPixel;  // and as much blank space at the right
inline constexpr base::Twips kListTop = 875;
// The list ends this far above the grip below it, which reaches out of the window by as much.
inline constexpr base::Twips kGripOverlap = 20;

}  // namespace nqp::remote::face
