#pragma once

#include <windows.h>

#include <optional>

#include "base/input.h"

namespace nqp::winapi {

enum class MouseAction { Down, Move, Up };

struct MouseMessage {
    MouseAction action;
    bool doubled;  // the second press of a double click
    base::MouseEvent event;
};

// A pointer message of the platform; nothing for any other message.
std::optional<MouseMessage> ReadMouse(UINT message, WPARAM wParam, LPARAM lParam, int dpi);
// The sum of the shift keys that are held.
int HeldShiftKeys();

}  // namespace nqp::winapi
