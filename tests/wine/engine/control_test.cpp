#include <gtest/gtest.h>

#include "engine_window.h"
#include "platform/engine/script_messages.h"

namespace nqp::test {
namespace {

namespace script = platform::script;

TEST(Control, IsAChildWithItsClassAndId) {
    EngineWindow window;
    const HWND view = window.View();
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(GetDlgCtrlID(view), kControlId);
    EXPECT_EQ(GetParent(view), window.Window());
    EXPECT_FALSE(IsWindowVisible(view));
    window.engine().Detach();
    EXPECT_FALSE(IsWindow(view));
}

TEST(Control, HasTheSizeInTwipsOfItsParent) {
    EngineWindow window;
    window.engine().SetWidth(3000);
    window.engine().SetHeight(1500);
    EXPECT_EQ(window.engine().Width(), 3000.0F);
    RECT client{};
    GetClientRect(window.View(), &client);
    EXPECT_EQ(client.right, 200);
    EXPECT_EQ(client.bottom, 100);
}

// Sends a press, a move and a release to the window that really lies under the point.
HWND WindowUnder(HWND window, int x, int y) {
    POINT point{x, y};
    ClientToScreen(window, &point);
    return WindowFromPoint(point);
}

TEST(Control, ReportsThePointerOverThePictureInTwips) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("timecode.avi"));
    PumpFor(200ms);
    const HWND view = window.View();
    ASSERT_EQ(WindowUnder(window.Window(), 300, 200), view);
    SendMessageW(view, WM_MOUSEMOVE, MK_LBUTTON | MK_RBUTTON | MK_CONTROL, MAKELPARAM(10, 20));
    ASSERT_FALSE(window.moves.empty());
    EXPECT_EQ(window.moves.back().Button, base::kLeftButton + base::kRightButton);
    EXPECT_EQ(window.moves.back().Shift, base::kControlKey);
    EXPECT_EQ(window.moves.back().X, 150.0F);
    EXPECT_EQ(window.moves.back().Y, 300.0F);
    SendMessageW(view, WM_RBUTTONDOWN, MK_RBUTTON | MK_SHIFT, MAKELPARAM(1, 2));
    SendMessageW(view, WM_RBUTTONUP, MK_SHIFT, MAKELPARAM(1, 2));
    ASSERT_EQ(window.presses.size(), 1U);
    EXPECT_EQ(window.presses[0].Button, base::kRightButton);
    EXPECT_EQ(window.presses[0].Shift, base::kShiftKey);
    ASSERT_EQ(window.releases.size(), 1U);
    EXPECT_EQ(window.releases[0].Button, base::kRightButton);
    SendMessageW(view, WM_MBUTTONDOWN, MK_MBUTTON, 0);
    SendMessageW(view, WM_LBUTTONDBLCLK, MK_LBUTTON, 0);
    ASSERT_EQ(window.presses.size(), 3U);
    EXPECT_EQ(window.presses[1].Button, base::kMiddleButton);
    EXPECT_EQ(window.presses[2].Button, base::kLeftButton);
}

TEST(Control, MayBeDetachedByAPressOnThePicture) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("timecode.avi"));
    window.onPress = [&](const base::MouseEvent&) { window.engine().Detach(); };
    SendMessageW(window.View(), WM_LBUTTONDOWN, MK_LBUTTON, 0);
    EXPECT_EQ(window.View(), nullptr);
    EXPECT_EQ(window.engine().Readiness(), 0);
}

TEST(Control, ShowsTheCursorOfItsType) {
    EngineWindow window;
    window.engine().SetVisible(true);
    const LPARAM overClient = MAKELPARAM(HTCLIENT, WM_MOUSEMOVE);
    window.engine().SetCursorType(core::kSizingCursor);
    SendMessageW(window.View(), WM_SETCURSOR, 0, overClient);
    EXPECT_EQ(GetCursor(), LoadCursor(nullptr, IDC_SIZENWSE));
    window.engine().SetCursorType(core::kNormalCursor);
    SendMessageW(window.View(), WM_SETCURSOR, 0, overClient);
    EXPECT_EQ(GetCursor(), LoadCursor(nullptr, IDC_ARROW));
}

TEST(Control, OutlivesTheDestructionOfItsParent) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("silent.avi"));
    DestroyWindow(window.Window());
    window.engine().Pause();
    window.engine().SetVisible(false);
    window.engine().SetWidth(100);
    window.engine().SetDisplaySize(core::kFullScreenDisplay);
    window.engine().ShowDialog(core::kStatisticsDialog);
    window.engine().Detach();
    EXPECT_EQ(window.engine().Readiness(), 0);
}

class ScriptInterface : public testing::Test {
protected:
    LRESULT Send(int number, LPARAM value = 0) {
        return SendMessageW(window_.View(), message_, static_cast<WPARAM>(number), value);
    }

    EngineWindow window_;
    const UINT message_ = RegisterWindowMessageW(script::kMessageName);
};

TEST_F(ScriptInterface, ReadsEverything) {
    EXPECT_EQ(Send(script::kCurrentPosition), -1);
    EXPECT_EQ(Send(script::kReadiness), 0);
    window_.engine().Open(Clip("timecode.avi"));
    window_.engine().SetCurrentPosition(2.5);
    EXPECT_EQ(Send(script::kPlayState), 0);
    EXPECT_EQ(Send(script::kCurrentPosition), 2500);
    EXPECT_EQ(Send(script::kDuration), 10000);
    EXPECT_EQ(Send(script::kVolume), 0);
    EXPECT_EQ(Send(script::kRate), 1000);
    EXPECT_NE(Send(script::kReadiness), 0);
    EXPECT_EQ(Send(script::kVisible), 0);
    EXPECT_EQ(Send(script::kDisplaySize), 0);
    EXPECT_EQ(Send(999), 0);
}

TEST_F(ScriptInterface, SteersThePlayback) {
    window_.engine().Open(Clip("timecode.avi"));
    EXPECT_EQ(Send(script::kSetCurrentPosition, 4000), 1);
    EXPECT_EQ(Send(script::kSetVolume, -777), 1);
    EXPECT_EQ(Send(script::kSetRate, 2000), 1);
    EXPECT_EQ(window_.engine().CurrentPosition(), 4.0);
    EXPECT_EQ(Send(script::kVolume), -777);
    EXPECT_EQ(window_.engine().Rate(), 2.0);
    Send(script::kPlay);
    EXPECT_EQ(Send(script::kPlayState), 2);
    EXPECT_TRUE(PumpUntil([&] { return Send(script::kCurrentPosition) > 4500; }));
    EXPECT_GT(Send(script::kFramesDrawn), 5);
    Send(script::kPause);
    EXPECT_EQ(Send(script::kPlayState), 1);
    Send(script::kSetDisplaySize, 3);
    EXPECT_EQ(Send(script::kDisplaySize), 3);
    Send(script::kSetDisplaySize, 0);
    EXPECT_EQ(Send(script::kDisplaySize), 0);
}

std::wstring TextOf(HWND dialog, int id) {
    wchar_t text[512] = L"";
    GetDlgItemTextW(dialog, id, text, 512);
    return text;
}

TEST(StatisticsDialog, IsOneTopmostWindowWithFiguresThatFollowThePlayback) {
    constexpr int kPosition = 102;
    constexpr int kDrawn = 111;
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("timecode.avi"));
    window.engine().ShowDialog(core::kStatisticsDialog);
    window.engine().ShowDialog(core::kStatisticsDialog);
    const HWND dialog = FindWindowW(L"nqp.Statistics", L"Statistics");
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(FindWindowExW(nullptr, dialog, L"nqp.Statistics", nullptr), nullptr);
    EXPECT_NE(GetWindowLongPtrW(dialog, GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
    const std::wstring position = TextOf(dialog, kPosition);
    const std::wstring drawn = TextOf(dialog, kDrawn);
    EXPECT_TRUE(PumpUntil([&] { return TextOf(dialog, kPosition) != position; }, 3s));
    EXPECT_TRUE(PumpUntil([&] { return TextOf(dialog, kDrawn) != drawn; }, 3s));
    window.engine().Open(Clip("tone.wav"));
    EXPECT_EQ(TextOf(dialog, kDrawn), L"not available");
    PostMessageW(dialog, WM_KEYDOWN, VK_ESCAPE, 0);
    EXPECT_TRUE(PumpUntil([&] { return !IsWindow(dialog); }, 2s));
    window.engine().ShowDialog(core::kStatisticsDialog);
    EXPECT_NE(FindWindowW(L"nqp.Statistics", nullptr), nullptr);
    window.engine().Detach();
    EXPECT_EQ(FindWindowW(L"nqp.Statistics", nullptr), nullptr);
}

TEST(FilterDialog, ListsTheFiltersOfTheClip) {
    constexpr int kList = 100;
    EngineWindow window;
    window.engine().Open(Clip("timecode.avi"));
    window.engine().ShowDialog(core::kPropertiesDialog);
    const HWND dialog = FindWindowW(L"nqp.FilterSettings", L"Standard settings");
    ASSERT_NE(dialog, nullptr);
    EXPECT_GE(SendDlgItemMessageW(dialog, kList, LB_GETCOUNT, 0, 0), 3);
    PostMessageW(dialog, WM_CLOSE, 0, 0);
    EXPECT_TRUE(PumpUntil([&] { return !IsWindow(dialog); }, 2s));
}

TEST(Dialogs, OfOtherNumbersAreNone) {
    EngineWindow window;
    window.engine().ShowDialog(0);
    window.engine().ShowDialog(3);
    EXPECT_EQ(GetLastActivePopup(window.Window()), window.Window());
}

}  // namespace
}  // namespace nqp::test
