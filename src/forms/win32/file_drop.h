#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace nqp::forms::win32 {

// Makes a window take files that a person drags from elsewhere and lets go over it; they come as
// full paths in the order of the drag. Ends with EndFileDrop, before the window goes.
void BeginFileDrop(HWND window, std::function<void(const std::vector<std::string>&)> dropped);
void EndFileDrop(HWND window);

}  // namespace nqp::forms::win32
