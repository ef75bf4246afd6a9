#pragma once

#include <windows.h>

namespace nqp::forms::win32 {

// The answer to an assistive tool that asks for the object behind a control's window: what the
// platform makes of the window, with the control's own name, role, value and press.
LRESULT AccessibleObjectOf(HWND control, WPARAM request);

}  // namespace nqp::forms::win32
