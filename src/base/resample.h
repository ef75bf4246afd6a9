#pragma once

#include "base/bitmap.h"

namespace nqp::base {

// The picture at another size. A side that shrinks takes the exact mean of the area each pixel
// covers; a side that grows is interpolated (Catmull-Rom). A plain colour stays exactly as it is.
// An empty source, or a size no bitmap can have, gives an empty picture.
Bitmap Resample(const Bitmap& source, int width, int height);

// The picture made larger without scaling: column x is repeated until it is `width` wide and row y
// until it is `height` high, so that what lies right of x or below y keeps its distance to that
// edge. Where the size is smaller, the right or lower part is cut off. A column or row outside of
// the picture stands for the nearest one inside. Empty as with Resample.
Bitmap ExtendAt(const Bitmap& source, int x, int y, int width, int height);

}  // namespace nqp::base
