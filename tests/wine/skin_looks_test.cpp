#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <iostream>

#include "bmp_bytes.h"
#include "player.h"
#include "skin_files.h"
#include "win32/gdi_objects.h"

// What a skin makes of the pixels of the real window.
namespace nqp::test {
namespace {

using Clock = std::chrono::steady_clock;

HWND HandleOf(const forms::Form& form) {
    return static_cast<HWND>(form.Handle());
}

HWND HandleOf(const forms::Control& control) {
    return GetDlgItem(HandleOf(control.Parent()), control.Id());
}

COLORREF PixelOf(HWND window, int x, int y) {
    UpdateWindow(window);
    const HDC context = GetDC(window);
    const COLORREF color = GetPixel(context, x, y);
    ReleaseDC(window, context);
    return color;
}

// 0xRRGGBB, as the bitmaps of the tests have it.
std::string Shown(COLORREF color) {
    std::array<char, 16> text{};
    snprintf(text.data(), text.size(), "#%02X%02X%02X", static_cast<unsigned>(GetRValue(color)),
             static_cast<unsigned>(GetGValue(color)), static_cast<unsigned>(GetBValue(color)));
    return text.data();
}

class SkinLooks : public testing::Test {
protected:
    void Start() {
        player_.PutSetting(core::kSkinName, "Test");
        player_.Start();
        GoTo(player_.form4);
        RedrawWindow(HandleOf(remote_), nullptr, nullptr,
                     RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    }
    void ChangeDpi(int dpi) {
        RECT suggested{50, 50, 50 + 560 * dpi / 96, 50 + 59 * dpi / 96};
        SendMessageW(HandleOf(remote_), WM_DPICHANGED, MAKEWPARAM(dpi, dpi),
                     reinterpret_cast<LPARAM>(&suggested));
        RunMessages();
    }

    Player player_;
    remote::Form4& remote_ = player_.form4;
    SkinFiles skin_{player_.folder, "Test"};
};

TEST_F(SkinLooks, FillsTheControlWithItsPicture) {
    skin_.Put("button1.bmp",
              Bmp24(2, 1, [](int x, int) { return x == 0 ? 0xFF0000U : 0x0000FFU; }));
    Start();
    const HWND play = HandleOf(remote_.Picture2);
    EXPECT_EQ(Shown(PixelOf(play, 1, 1)), "#FF0000");
    EXPECT_EQ(Shown(PixelOf(play, 32, 32)), "#0000FF");
}

TEST_F(SkinLooks, AveragesALargerPicture) {
    skin_.Put("button1.bmp",
              Bmp24(68, 68, [](int x, int y) { return (x + y) % 2 == 0 ? 0x000000U : 0xFFFFFFU; }));
    Start();
    const COLORREF grey = PixelOf(HandleOf(remote_.Picture2), 17, 17);
    EXPECT_NEAR(GetRValue(grey), 128, 1);
    EXPECT_EQ(GetRValue(grey), GetBValue(grey));
}

TEST_F(SkinLooks, BlendsAPictureOntoTheFace) {
    skin_.Put("backgrnd.bmp", Bmp24(4, 4, 0x204060));
    skin_.Put("button1.bmp",
              Bmp32(34, 34, [](int x, int) { return x < 17 ? 0x00FFFFFFU : 0x80FF0000U; }));
    Start();
    const HWND play = HandleOf(remote_.Picture2);
    EXPECT_EQ(Shown(PixelOf(play, 1, 1)), "#204060");
    const COLORREF half = PixelOf(play, 32, 17);
    EXPECT_NEAR(GetRValue(half), (0x20 + 0xFF) / 2, 2);
    EXPECT_NEAR(GetBValue(half), 0x60 / 2, 2);
}

TEST_F(SkinLooks, ShowsTheTrackThroughATransparentKnob) {
    skin_.Put("backgrnd.bmp", Bmp24(4, 4, 0x204060));
    skin_.Put("position.bmp", Bmp32(2, 2, [](int x, int) { return x == 0 ? 0xFFFFFFFFU : 0U; }));
    skin_.PutColors({"255", "65280", "0", "0", "0", "0", "0", "0", "0", "0", "0", "0"});
    Start();
    const HWND knob = HandleOf(remote_.Picture12);
    EXPECT_EQ(Shown(PixelOf(knob, 16, 1)), "#204060");
    EXPECT_EQ(Shown(PixelOf(knob, 16, 6)), "#FF0000");  // the track's first row
    EXPECT_EQ(Shown(PixelOf(knob, 16, 7)), "#FF0000");  // and its second one
    EXPECT_EQ(Shown(PixelOf(knob, 16, 8)), "#204060");
    EXPECT_EQ(Shown(PixelOf(HandleOf(remote_), 300, 32)), "#FF0000");
}

TEST_F(SkinLooks, RepeatsTheMiddleOfTheFaceInAWiderRemote) {
    // One pixel for a pixel at 100 %: black, but for two columns and the last row.
    skin_.Put("backgrnd.bmp", Bmp24(560, 160, [](int x, int y) {
                  if (x == 348) return 0x00FF00U;
                  if (x == 559) return 0xFF0000U;
                  return y == 159 ? 0x0000FFU : 0x000000U;
              }));
    Start();
    const HWND window = HandleOf(remote_);
    EXPECT_EQ(Shown(PixelOf(window, 559, 3)), "#FF0000");
    SetWindowPos(window, nullptr, 0, 0, 660, 400, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    RunMessages();
    EXPECT_EQ(Shown(PixelOf(window, 659, 3)), "#FF0000");
    EXPECT_EQ(Shown(PixelOf(window, 559, 3)), "#000000");
    EXPECT_EQ(Shown(PixelOf(window, 400, 2)), "#00FF00");
    EXPECT_EQ(Shown(PixelOf(window, 5, 399)), "#0000FF");
    EXPECT_EQ(Shown(PixelOf(window, 5, 200)), "#000000");
}

TEST_F(SkinLooks, ScalesTheFaceAndThePicturesWithTheResolution) {
    skin_.Put("backgrnd.bmp",
              Bmp24(560, 160, [](int x, int) { return x < 8 ? 0xFF0000U : 0x0000FFU; }));
    skin_.Put("button1.bmp",
              Bmp24(2, 1, [](int x, int) { return x == 0 ? 0xFF0000U : 0x0000FFU; }));
    Start();
    ChangeDpi(192);
    EXPECT_EQ(Shown(PixelOf(HandleOf(remote_), 13, 5)), "#FF0000");
    EXPECT_EQ(Shown(PixelOf(HandleOf(remote_), 18, 5)), "#0000FF");
    EXPECT_EQ(Shown(PixelOf(HandleOf(remote_.Picture2), 3, 60)), "#FF0000");
    EXPECT_EQ(Shown(PixelOf(HandleOf(remote_.Picture2), 64, 60)), "#0000FF");
}

TEST_F(SkinLooks, ShowsWhereTheKeyboardIs) {
    skin_.Put("button1.bmp", Bmp24(1, 1, 0x808080));
    Start();
    const HWND play = HandleOf(remote_.Picture2);
    EXPECT_EQ(Shown(PixelOf(play, 0, 0)), "#808080");
    remote_.Picture2.SetFocus();
    EXPECT_EQ(Shown(PixelOf(play, 0, 0)), "#000000");
    EXPECT_EQ(Shown(PixelOf(play, 1, 1)), "#FFFFFF");
    remote_.Picture4.SetFocus();
    EXPECT_EQ(Shown(PixelOf(play, 0, 0)), "#808080");
}

// Of the sizes of the skins that come with the program.
void MakeFullSkin(const SkinFiles& skin, std::uint32_t shade) {
    skin.Put("backgrnd.bmp", Bmp24(1680, 480, shade));
    for (const char* file : {"button1", "button2", "button3", "button4", "xbutton1", "xbutton2",
                             "xbutton3", "xbutton4"}) {
        skin.Put(std::string(file) + ".bmp", Bmp32(102, 102, 0x80000000 | shade));
    }
    for (const char* file : {"position", "volume", "options", "help", "playlist", "hideremote",
                             "hideall", "exit", "resize"}) {
        skin.Put(std::string(file) + ".bmp", Bmp32(60, 60, 0x80000000 | shade));
    }
    skin.PutColors(std::vector<std::string>(12, std::to_string(shade)));
}

TEST_F(SkinLooks, ChangeInNoTimeAndLeakNoGraphicsObjects) {
    constexpr int kSwitches = 1000;
    constexpr int kWarmUp = 10;
    constexpr double kMostMilliseconds = 50;
    MakeFullSkin(skin_, 0x336699);
    MakeFullSkin({player_.folder, "Other"}, 0x996633);
    Start();
    double objects = 0;
    std::vector<double> milliseconds;
    for (int count = 0; count < kSwitches + kWarmUp; ++count) {
        if (count == kWarmUp) objects = CountGdiObjects();
        player_.PutSetting(core::kSkinName, count % 2 == 0 ? "Other" : "Test");
        const auto begin = Clock::now();
        remote_.goskin();
        RedrawWindow(HandleOf(remote_), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        const std::chrono::duration<double, std::milli> took = Clock::now() - begin;
        if (count >= kWarmUp) milliseconds.push_back(took.count());
    }
    std::sort(milliseconds.begin(), milliseconds.end());
    const double median = milliseconds[milliseconds.size() / 2];
    std::cout << "a switch takes " << median << " ms, at most " << milliseconds.back() << " ms\n";
    EXPECT_LT(median, kMostMilliseconds);
    EXPECT_EQ(CountGdiObjects(), objects);
    EXPECT_EQ(Shown(PixelOf(HandleOf(remote_), 3, 3)), "#336699");
}

}  // namespace
}  // namespace nqp::test
