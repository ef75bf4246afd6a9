#include <gtest/gtest.h>

#include <cmath>

#include "engine_window.h"

namespace nqp::test {
namespace {

// The time code clip: 640 x 360, 25 frames per second, eight squares with the frame number in
// binary at the top, a background colour for each second.
constexpr double kFrameRate = 25.0;
constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kLime = RGB(0, 255, 0);
constexpr COLORREF kCyan = RGB(0, 255, 255);
constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kWhite = RGB(255, 255, 255);

// The frame number that the screen shows, with the picture filling the window's 640 x 360 pixels.
int ShownFrame(HWND window) {
    int frame = 0;
    for (int bit = 0; bit < 8; ++bit) {
        if (IsNear(PixelOf(window, bit * 80 + 40, 30), kWhite)) frame |= 1 << bit;
    }
    return frame;
}

bool ShowsFrame(HWND window, double seconds) {
    return std::abs(ShownFrame(window) - seconds * kFrameRate) <= 1.0;
}

TEST(Picture, ShowsTheFrameOfTheTimeAfterASeekWhileStopped) {
    EngineWindow window;
    window.engine().Open(Clip("timecode.avi"));
    window.engine().SetVisible(true);
    for (const double target : {5.0, 1.24, 9.4, 0.0, 3.0}) {
        window.engine().SetCurrentPosition(target);
        EXPECT_TRUE(PumpUntil([&] { return ShowsFrame(window.Window(), target); }, 2s))
            << "frame " << ShownFrame(window.Window()) << " for " << target;
        EXPECT_EQ(window.engine().CurrentPosition(), target);
    }
    EXPECT_EQ(window.engine().State(), PlayState::Stopped);
}

TEST(Picture, ShowsTheFrameOfTheTimeAfterASeekWhilePaused) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("timecode.avi"));
    PumpFor(300ms);
    window.engine().Pause();
    for (const double target : {5.0, 2.0, 8.08}) {
        window.engine().SetCurrentPosition(target);
        EXPECT_TRUE(PumpUntil([&] { return ShowsFrame(window.Window(), target); }, 2s))
            << "frame " << ShownFrame(window.Window()) << " for " << target;
    }
    EXPECT_EQ(window.engine().State(), PlayState::Paused);
}

TEST(Picture, KeepsStepWithThePositionWhilePlaying) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("timecode.avi"));
    window.engine().SetCurrentPosition(5.0);
    // The platform may hold all presentation back by up to a quarter of a second after a start.
    constexpr double kPresentationDelay = 0.3;  // seconds
    for (int look = 0; look < 10; ++look) {
        PumpFor(100ms);
        const double position = window.engine().CurrentPosition();
        EXPECT_NEAR(ShownFrame(window.Window()) / kFrameRate, position, kPresentationDelay);
    }
}

TEST(Picture, HasTheColourOfTheSecond) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("timecode.avi"));
    const auto colour = [&] { return PixelOf(window.Window(), 20, 330); };
    EXPECT_TRUE(PumpUntil([&] { return IsNear(colour(), kRed); }, 2s));
    EXPECT_TRUE(PumpUntil([&] { return IsNear(colour(), kLime); }, 2s));
    EXPECT_NEAR(window.engine().CurrentPosition(), 1.0, 0.35);
    window.engine().SetCurrentPosition(5.5);
    EXPECT_TRUE(PumpUntil([&] { return IsNear(colour(), kCyan); }, 2s));
}

TEST(Picture, KeepsItsShapeBetweenBlackBars) {
    EngineWindow window;
    window.engine().Open(Clip("timecode.avi"));
    window.engine().SetVisible(true);
    window.ResizeClient(640, 560);
    const auto at = [&](int x, int y) { return PixelOf(window.Window(), x, y); };
    EXPECT_TRUE(PumpUntil([&] { return IsNear(at(320, 440), kRed); }, 2s));
    EXPECT_TRUE(PumpUntil([&] { return IsNear(at(320, 90), kBlack); }, 2s));
    EXPECT_TRUE(PumpUntil([&] { return IsNear(at(320, 470), kBlack); }, 2s));
    window.ResizeClient(840, 360);
    EXPECT_TRUE(PumpUntil([&] { return IsNear(at(95, 180), kBlack); }, 2s));
    EXPECT_TRUE(PumpUntil([&] { return IsNear(at(745, 180), kBlack); }, 2s));
    EXPECT_TRUE(PumpUntil([&] { return IsNear(at(110, 180), kRed); }, 2s));
}

TEST(Picture, IsHiddenAndShownWithTheControl) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("timecode.avi"));
    const auto colour = [&] { return PixelOf(window.Window(), 20, 330); };
    EXPECT_TRUE(PumpUntil([&] { return IsNear(colour(), kRed); }, 2s));
    window.engine().SetVisible(false);
    EXPECT_TRUE(PumpUntil([&] { return IsNear(colour(), RGB(128, 128, 128)); }, 2s));
    EXPECT_EQ(window.engine().State(), PlayState::Playing);
    window.engine().SetVisible(true);
    EXPECT_TRUE(PumpUntil([&] { return !IsNear(colour(), RGB(128, 128, 128)); }, 2s));
}

TEST(Picture, OfTheLastFrameStaysAtTheEnd) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("timecode.avi"));
    window.engine().SetCurrentPosition(9.5);
    ASSERT_TRUE(window.WaitForEnd());
    PumpFor(200ms);
    EXPECT_NEAR(ShownFrame(window.Window()), 249, 2);
}

TEST(FullScreen, CoversTheMonitorAndComesBackToTheSameRectangle) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("timecode.avi"));
    RECT before{};
    GetWindowRect(window.Window(), &before);
    const int width = GetSystemMetrics(SM_CXSCREEN);
    const int height = GetSystemMetrics(SM_CYSCREEN);
    const auto corner = [&] { return ScreenPixel(5, height / 2); };
    window.engine().SetDisplaySize(core::kFullScreenDisplay);
    EXPECT_EQ(window.engine().DisplaySize(), core::kFullScreenDisplay);
    EXPECT_TRUE(PumpUntil([&] { return IsNear(corner(), kRed); }, 2s));
    EXPECT_TRUE(PumpUntil([&] { return IsNear(ScreenPixel(width / 2, 5), kBlack); }, 2s));
    EXPECT_EQ(window.engine().State(), PlayState::Playing);
    window.engine().SetDisplaySize(core::kWindowDisplay);
    EXPECT_EQ(window.engine().DisplaySize(), core::kWindowDisplay);
    EXPECT_TRUE(PumpUntil([&] { return !IsNear(corner(), kRed); }, 2s));
    RECT after{};
    GetWindowRect(window.Window(), &after);
    EXPECT_TRUE(EqualRect(&before, &after));
    window.engine().SetCurrentPosition(5.5);
    EXPECT_TRUE(PumpUntil([&] { return IsNear(PixelOf(window.Window(), 20, 330), kCyan); }, 2s));
}

HWND FullScreenWindow() {
    return FindWindowW(L"nqp.FullScreen", nullptr);
}

TEST(FullScreen, IsLeftByEscapeAndByADoubleClick) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("timecode.avi"));
    window.engine().SetDisplaySize(core::kFullScreenDisplay);
    PostMessageW(FullScreenWindow(), WM_KEYDOWN, VK_ESCAPE, 0);
    EXPECT_TRUE(PumpUntil([&] { return window.engine().DisplaySize() == 0; }, 2s));
    EXPECT_EQ(FullScreenWindow(), nullptr);
    window.engine().SetDisplaySize(core::kFullScreenDisplay);
    PostMessageW(FullScreenWindow(), WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(300, 300));
    EXPECT_TRUE(PumpUntil([&] { return window.engine().DisplaySize() == 0; }, 2s));
    EXPECT_EQ(window.engine().State(), PlayState::Playing);
    EXPECT_TRUE(window.presses.empty());
}

TEST(FullScreen, StaysForTheNextClipAndEndsWhenNothingIsLoaded) {
    EngineWindow window;
    window.engine().Open(Clip("timecode.avi"));
    window.engine().SetDisplaySize(core::kFullScreenDisplay);
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("timecode.avi"));
    EXPECT_EQ(window.engine().DisplaySize(), core::kFullScreenDisplay);
    const int middle = GetSystemMetrics(SM_CYSCREEN) / 2;
    EXPECT_TRUE(PumpUntil([&] { return IsNear(ScreenPixel(5, middle), kRed); }, 2s));
    window.engine().Open(Clip("missing.avi"));
    EXPECT_EQ(window.engine().DisplaySize(), core::kWindowDisplay);
    window.engine().SetDisplaySize(core::kFullScreenDisplay);
    EXPECT_EQ(window.engine().DisplaySize(), core::kWindowDisplay);
}

TEST(FullScreen, ReportsARightPressInTheCoordinatesOfTheControl) {
    EngineWindow window;
    window.engine().Open(Clip("timecode.avi"));
    window.engine().SetDisplaySize(core::kFullScreenDisplay);
    SendMessageW(FullScreenWindow(), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(110, 105));
    ASSERT_EQ(window.presses.size(), 1U);
    EXPECT_EQ(window.presses[0].Button, base::kRightButton);
    EXPECT_EQ(window.presses[0].X, base::PixelsToTwips(10, 96));
    EXPECT_EQ(window.presses[0].Y, base::PixelsToTwips(5, 96));
    SendMessageW(FullScreenWindow(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(110, 105));
    EXPECT_EQ(window.presses.size(), 1U);
}

}  // namespace
}  // namespace nqp::test
