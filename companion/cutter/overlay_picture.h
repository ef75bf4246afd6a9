#pragma once

#include "base/bitmap.h"
#include "base/geometry.h"
#include "core/companion.h"

namespace nqp::companion {

// A picture and the pixel of a frame that its upper left corner lies on.
struct OverlayPicture {
    base::Bitmap bitmap;
    int x = 0;
    int y = 0;
};

// Reads the picture and places it in a frame of this many pixels: a larger one is scaled down until
// it fits. Throws CutError when there is no picture that can be read.
OverlayPicture PlacePicture(const core::PicturePlacement& placement, int width, int height);

// The same pixels of the frame under an upper left corner with even numbers: the colours of a frame
// may be stored for two pixels at once, which cannot be parted. What is added is transparent.
OverlayPicture AtEvenPlace(OverlayPicture picture);

}  // namespace nqp::companion
