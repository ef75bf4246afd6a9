#include "server/win32/error_box.h"

#include <windows.h>

#include "forms/win32/winapi/text.h"

namespace nqp::companion {

// MB_TOPMOST alone does not put it above the topmost windows on every system.
void ShowErrorBox(const std::string& sentence) {
    MessageBoxW(nullptr, winapi::Utf16(sentence).c_str(), L"Framewright",
                MB_OK | MB_ICONERROR | MB_SETFOREGROUND | MB_SYSTEMMODAL | MB_TOPMOST);
}

}  // namespace nqp::companion
