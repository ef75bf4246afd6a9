#pragma once

#include "base/geometry.h"

namespace nqp::base {

inline constexpr int kLeftButton = 1;
inline constexpr int kRightButton = 2;
inline constexpr int kMiddleButton = 4;

inline constexpr int kShiftKey = 1;
inline constexpr int kControlKey = 2;
inline constexpr int kAltKey = 4;

struct MouseEvent {
    int Button = 0;  // press and release: the button; move: the sum of the buttons held
    int Shift = 0;   // sum of kShiftKey, kControlKey and kAltKey
    Twips X = 0;     // relative to the control or window that raises the event
    Twips Y = 0;
};

struct KeyEvent {
    int KeyCode = 0;  // the platform's virtual key number
    int Shift = 0;
};

inline constexpr int kKeyTab = 9;
inline constexpr int kKeyEnter = 13;
inline constexpr int kKeyEscape = 27;
inline constexpr int kKeySpace = 32;
inline constexpr int kKeyPageUp = 33;
inline constexpr int kKeyPageDown = 34;
inline constexpr int kKeyEnd = 35;
inline constexpr int kKeyHome = 36;
inline constexpr int kKeyLeft = 37;
inline constexpr int kKeyUp = 38;
inline constexpr int kKeyRight = 39;
inline constexpr int kKeyDown = 40;
inline constexpr int kKeyDelete = 46;
inline constexpr int kKeyMenu = 93;  // the context-menu key
inline constexpr int kKeyO = 79;
inline constexpr int kKeyF4 = 115;
inline constexpr int kKeyF10 = 121;
inline constexpr int kKeyF11 = 122;

// A window of the platform (an HWND); null when there is none.
using NativeWindow = void*;

}  // namespace nqp::base
