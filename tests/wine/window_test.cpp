#include <gtest/gtest.h>
#include <windows.h>

#include <shellapi.h>

#include <algorithm>

#include "platform/notification_icon.h"
#include "player.h"

// What only windows of the platform can show.
namespace nqp::test {
namespace {

HWND HandleOf(const forms::Form& form) {
    return static_cast<HWND>(form.Handle());
}

bool Called(const ScriptedEngine& engine, const std::string& call) {
    return std::find(engine.calls.begin(), engine.calls.end(), call) != engine.calls.end();
}

TEST(Resolution, ThatChangesKeepsTheTwipsAndSizesThePictureAnew) {
    Player player;
    player.Start();
    player.engine.ForgetCalls();
    constexpr int kDpi = 192;
    RECT suggested{100, 100, 100 + 688, 100 + 514};  // the same twips in twice as many pixels
    SendMessageW(HandleOf(player.form1), WM_DPICHANGED, MAKEWPARAM(kDpi, kDpi),
                 reinterpret_cast<LPARAM>(&suggested));
    RECT window{};
    GetWindowRect(HandleOf(player.form1), &window);
    EXPECT_EQ(window.right - window.left, 688);
    EXPECT_EQ(player.form1.Width(), 5160);
    EXPECT_TRUE(Called(player.engine, "Width = 5160"));
}

TEST(Resolution, OfAnotherMonitorScalesPositionsInsideTheWindow) {
    Player player;
    player.Start();
    constexpr int kTwice = 192;
    RECT suggested{100, 100, 100 + 688, 100 + 514};
    SendMessageW(HandleOf(player.form1), WM_DPICHANGED, MAKEWPARAM(kTwice, kTwice),
                 reinterpret_cast<LPARAM>(&suggested));
    EXPECT_EQ(player.form1.PointOnScreen({300, 600}),
              (base::Point{player.form1.Left() + 600, player.form1.Top() + 1200}));
}

TEST(Minimised, WindowKeepsItsPlace) {
    Player player;
    player.Start();
    const base::Rect before = player.form4.Bounds();
    ShowWindow(HandleOf(player.form4), SW_SHOWMINNOACTIVE);
    RunMessages();
    EXPECT_NE(IsIconic(HandleOf(player.form4)), 0);
    EXPECT_EQ(player.form4.Bounds(), before);
}

// The full-screen picture and the engine's dialogs are windows of the program, but no forms.
TEST(Activation, DoesNotFollowAReturnFromAnyWindowThatTheFormOwns) {
    Player player;
    player.Start();
    player.engine.Open("clip.avi");
    player.engine.SetVisible(true);
    const HWND owned = CreateWindowExW(0, L"STATIC", L"owned", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50,
                                       HandleOf(player.form1), nullptr, nullptr, nullptr);
    GoTo(player.form4);
    SetActiveWindow(owned);
    RunMessages();
    GoTo(player.form1);
    EXPECT_TRUE(player.engine.Visible());
    DestroyWindow(owned);
}

TEST(NotificationIcon, IsTakenByThePlatform) {
    Player player;
    player.Start();
    platform::NotificationIcon icon;
    const base::NativeWindow window = player.form4.Handle();
    EXPECT_TRUE(icon.SetTrayIcon(core::TrayMessage::Add, window, "Nuvex Quillon Player"));
    EXPECT_FALSE(icon.SetTrayIcon(core::TrayMessage::Add, window, "a second one"));
    EXPECT_TRUE(icon.SetTrayIcon(core::TrayMessage::Delete, window, {}));
    EXPECT_FALSE(icon.SetTrayIcon(core::TrayMessage::Delete, window, {}));
}

TEST(NotificationIcon, TakesATipThatIsTooLong) {
    Player player;
    player.Start();
    platform::NotificationIcon icon;
    const base::NativeWindow window = player.form4.Handle();
    EXPECT_TRUE(icon.SetTrayIcon(core::TrayMessage::Add, window, std::string(500, 'x')));
    EXPECT_TRUE(icon.SetTrayIcon(core::TrayMessage::Delete, window, {}));
}

// The shell has lost all icons when it starts anew, and tells every top-level window so.
TEST(NotificationIcon, ComesBackWhenTheShellStartsAnew) {
    Player player;
    player.Start();
    const HWND window = HandleOf(player.form4);
    const auto exists = [window] {
        NOTIFYICONDATAW icon{};
        icon.cbSize = sizeof icon;
        icon.hWnd = window;
        return Shell_NotifyIconW(NIM_MODIFY, &icon) != FALSE;
    };
    const auto restart = [window] {
        NOTIFYICONDATAW icon{};
        icon.cbSize = sizeof icon;
        icon.hWnd = window;
        Shell_NotifyIconW(NIM_DELETE, &icon);
        SendMessageTimeoutW(HWND_BROADCAST, RegisterWindowMessageW(L"TaskbarCreated"), 0, 0,
                            SMTO_ABORTIFHUNG, 1000, nullptr);
    };
    platform::NotificationIcon icon;
    icon.SetTrayIcon(core::TrayMessage::Add, window, "Nuvex Quillon Player");
    ASSERT_TRUE(exists());
    restart();
    EXPECT_TRUE(exists());
    icon.SetTrayIcon(core::TrayMessage::Delete, window, {});
    EXPECT_FALSE(exists());
    restart();
    EXPECT_FALSE(exists());
}

}  // namespace
}  // namespace nqp::test
