#include "platform/system_boxes.h"

#include <windows.h>

#include "core/program_folder.h"
#include "forms/win32/winapi/text.h"

namespace nqp::platform {
namespace {

int Show(HWND owner, const std::string& text, UINT kind) {
    return MessageBoxW(owner, winapi::Utf16(text).c_str(),
                       winapi::Utf16(core::kApplicationTitle).c_str(),
                       MB_ICONINFORMATION | MB_SETFOREGROUND | MB_TOPMOST | kind);
}

}  // namespace

// The windows of the program may be hidden meanwhile, so it has no owner among them.
void SystemMessageBoxes::Inform(const std::string& text) {
    Show(nullptr, text, MB_OK | MB_TASKMODAL);
}

bool SystemMessageBoxes::Accepts(base::NativeWindow owner, const std::string& question) {
    return Show(static_cast<HWND>(owner), question, MB_YESNO) == IDYES;
}

}  // namespace nqp::platform
