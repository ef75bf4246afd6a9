#include "platform/notification_icon.h"

#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <functional>
#include <utility>

#include "forms/win32/winapi/gdi.h"
#include "platform/message_window.h"

namespace nqp::platform {
namespace {

constexpr UINT kCallbackMessage = WM_MOUSEMOVE;  // 512
constexpr UINT kMessageIconAndTip = NIF_MESSAGE | NIF_ICON | NIF_TIP;

HICON ProgramIcon() {
    return static_cast<HICON>(
        LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(winapi::kProgramIcon), IMAGE_ICON,
                   GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON), LR_SHARED));
}

bool Notify(core::TrayMessage message, base::NativeWindow window, const std::string& tip) {
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

}  // namespace

// The shell tells the top-level windows of every program when it has started; a window that only
// receives messages would not be told.
class ShellWatch final : public MessageWindow {
public:
    explicit ShellWatch(std::function<void()> restarted)
        : restarted_(std::move(restarted)),
          started_message_(RegisterWindowMessageW(L"TaskbarCreated")) {
        Description description;
        description.className = L"nqp.ShellWatch";
        description.style = WS_POPUP;
        Create(description);
    }
    ~ShellWatch() override { Destroy(); }

private:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == started_message_) restarted_();
        return MessageWindow::OnMessage(message, wParam, lParam);
    }

    std::function<void()> restarted_;
    UINT started_message_;
};

NotificationIcon::NotificationIcon() = default;
NotificationIcon::~NotificationIcon() = default;

bool NotificationIcon::SetTrayIcon(core::TrayMessage message, base::NativeWindow window,
                                   const std::string& tip) {
    watch_.reset();
    if (message == core::TrayMessage::Add) {
        watch_ = std::make_unique<ShellWatch>([=] { Notify(message, window, tip); });
    }
    return Notify(message, window, tip);
}

}  // namespace nqp::platform
