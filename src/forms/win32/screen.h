#pragma once

#include <windows.h>

#include "base/geometry.h"

namespace nqp::forms::win32 {

// Positions on the screen are measured at one resolution for all monitors, that of the system, so
// that distances between windows keep their meaning from one monitor to the next.
int ScreenDpi();
base::Rect ScreenRectangle(const RECT& pixels);

}  // namespace nqp::forms::win32
