#include "platform/notification_icon.h"

#include <windows.h>

#include <shellapi.h>

#include <algorithm>

#include "forms/win32/winapi/gdi.h"

namespace nqp::platform {
namespace {

constexpr UINT kCallbackMessage = WM_MOUSEMOVE;  // 512
constexpr UINT kMessageIconAndTip = NIF_MESSAGE | NIF_ICON | NIF_TIP;

HICON ProgramIcon() {
    return static_cast<HICON>(
        LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(winapi::kProgramIcon), IMAGE_ICON,
                   GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON), LR_SHARED));
}

}  // namespace

bool NotificationIcon::SetTrayIcon(core::TrayMessage message, base::NativeWindow window,
                                   const std::string& tip) {
    constexpr std::size_t kTipBytes = 64;  // of the first version of the record
    NOTIFYICONDATAA icon{};
    icon.cbSize = NOTIFYICONDATAA_V1_SIZE;
    icon.hWnd = static_cast<HWND>(window);
    icon.uFlags = kMessageIconAndTip;
    icon.uCallbackMessage = kCallbackMessage;
    icon.hIcon = message == core::TrayMessage::Add ? ProgramIcon() : nullptr;
    // The text and its end, then blanks.
    std::fill_n(icon.szTip, kTipBytes, ' ');
    const std::size_t length = std::min(tip.size(), kTipBytes - 1);
    std::copy_n(tip.data(), length, icon.szTip);
    icon.szTip[length] = '\0';
    return Shell_NotifyIconA(static_cast<DWORD>(message), &icon) != FALSE;
}

}  // namespace nqp::platform
