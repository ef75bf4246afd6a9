#include "remote/form4.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <utility>
#include <vector>

#include "base/file.h"
#include "player.h"

namespace nqp::remote {
namespace {

using test::Player;
using Calls = std::vector<std::string>;

bool Contains(const Calls& calls, const std::string& call) {
    return std::find(calls.begin(), calls.end(), call) != calls.end();
}

Calls BoundsShownBy(Form4& form) {
    Calls texts;
    for (forms::TextBox* field :
         {&form.Text1, &form.Text2, &form.Text3, &form.Text5, &form.Text4, &form.Text6}) {
        texts.push_back(test::TextOn(*field));
    }
    return texts;
}

void RememberVideoWindow(const Player& player) {
    player.PutSetting(core::kRememberWindow, "1");
    player.PutSetting(core::kVideoLeft, "1500");
    player.PutSetting(core::kVideoTop, "1800");
    player.PutSetting(core::kVideoWidth, "4500");
    player.PutSetting(core::kVideoHeight, "3000");
}

TEST(Start, ShowsBothWindows) {
    Player player;
    EXPECT_EQ(player.Start(), core::LaunchMode::Ordinary);
    EXPECT_TRUE(test::OnScreen(player.form1));
    EXPECT_TRUE(test::OnScreen(player.form4));
    EXPECT_TRUE(test::Active(player.form4));
}

TEST(Start, WithoutAMarkerShowsNothing) {
    Player player;
    std::filesystem::remove(player.folder.Path() / "startup.cfg");
    EXPECT_EQ(player.Start(), core::LaunchMode::Automation);
    EXPECT_FALSE(player.form1.Loaded());
    EXPECT_FALSE(player.form4.Loaded());
    EXPECT_EQ(player.folder.Content("startup.cfg"), "0");
}

TEST(Start, HiddenLoadsBothWindowsAndTheIcon) {
    Player player("/START");
    EXPECT_EQ(player.Start(), core::LaunchMode::Hidden);
    EXPECT_TRUE(player.form1.Loaded());
    EXPECT_TRUE(player.form4.Loaded());
    EXPECT_FALSE(test::OnScreen(player.form1));
    EXPECT_FALSE(test::OnScreen(player.form4));
    EXPECT_EQ(player.tray.calls, Calls{"Add Nuvex Quillon Player"});
    EXPECT_FALSE(Contains(player.engine.calls, "Open /START"));
}

TEST(Start, TakesTheSwitchInLowerCaseForAFile) {
    Player player("/start");
    EXPECT_EQ(player.Start(), core::LaunchMode::Ordinary);
    EXPECT_TRUE(Contains(player.engine.calls, "Open /start"));
}

TEST(Start, OpensAFileFromTheCommandLine) {
    Player player("C:\\my clips\\movie.part1.avi");
    player.Start();
    EXPECT_TRUE(Contains(player.engine.calls, "Open C:\\my clips\\movie.part1.avi"));
    EXPECT_EQ(player.form4.glob_FilePath(), "C:\\my clips\\movie.part1.avi");
    EXPECT_EQ(test::TextOn(player.form4.Label1), "movie");
    EXPECT_EQ(player.form4.Label1.ToolTipText(), "movie");
    EXPECT_EQ(BoundsShownBy(player.form4), Calls(6, "00"));
    EXPECT_TRUE(player.form4.Flags().ready_to_play);
    EXPECT_FALSE(player.form4.Flags().bPause);
}

TEST(Start, TakesTheQuotesOffAPath) {
    Player player("\"C:\\my clips\\movie.avi\"");
    player.Start();
    EXPECT_EQ(player.engine.FileName(), "C:\\my clips\\movie.avi");
    EXPECT_EQ(player.form4.glob_FilePath(), "C:\\my clips\\movie.avi");
}

TEST(Start, TakesTheSwitchInQuotesForAFile) {
    Player player("\"/START\"");
    EXPECT_EQ(player.Start(), core::LaunchMode::Ordinary);
    EXPECT_TRUE(Contains(player.engine.calls, "Open /START"));
}

TEST(Start, ShowsAWholeNameWithoutADot) {
    Player player("C:\\clips\\movie");
    player.Start();
    EXPECT_EQ(test::TextOn(player.form4.Label1), "movie");
}

TEST(Start, PlaysAtOnceWhenAutostartIsSet) {
    Player player("C:\\movie.avi");
    player.PutSetting(core::kAutostartPlayback, "1");
    player.Start();
    EXPECT_EQ(player.engine.State(), core::PlayState::Playing);
    EXPECT_TRUE(player.engine.Visible());
}

TEST(Start, WaitsLoadedWhenAutostartIsNotSet) {
    Player player("C:\\movie.avi");
    player.PutSetting(core::kAutostartPlayback, "0");
    player.Start();
    EXPECT_EQ(player.engine.State(), core::PlayState::Stopped);
    EXPECT_EQ(player.engine.FileName(), "C:\\movie.avi");
}

TEST(Start, DeletesAStaleFlagFile) {
    Player player;
    player.folder.Put("flag.txt", "");
    player.Start();
    EXPECT_FALSE(player.folder.Has("flag.txt"));
}

TEST(Start, PutsUpTheIconAndTakesItDownAtTheEnd) {
    Player player;
    player.Start();
    EXPECT_EQ(player.tray.calls, Calls{"Add Nuvex Quillon Player"});
    player.form4.Picture1_Click();
    EXPECT_EQ(player.tray.calls, (Calls{"Add Nuvex Quillon Player", "Delete "}));
}

TEST(Settings, OfAnEmptyFileLeaveEveryDefault) {
    Player player;
    player.Start();
    const core::SharedSettings& settings = player.form4.Settings();
    EXPECT_FALSE(settings.control_at_fullscreen);
    EXPECT_FALSE(settings.auto_start);
    EXPECT_EQ(settings.fragment_percentage, 0);
    EXPECT_FALSE(settings.use_directshow);
    EXPECT_FALSE(Contains(player.engine.calls, "Volume = 0"));
    EXPECT_FALSE(test::Topmost(player.form1));
}

TEST(Settings, AreReadAtTheStart) {
    Player player;
    player.PutSetting(core::kHideControlInFullscreen, "0");
    player.PutSetting(core::kAutostartPlayback, "1");
    player.PutSetting(core::kAutoswitchToFullscreen, "1");
    player.PutSetting(core::kMoveAlso, "1");
    player.Start();
    const core::SharedSettings& settings = player.form4.Settings();
    EXPECT_TRUE(settings.control_at_fullscreen);
    EXPECT_TRUE(settings.auto_start);
    EXPECT_TRUE(settings.auto_fullscreen);
    EXPECT_TRUE(settings.move_also);
    EXPECT_EQ(settings.fragment_percentage, 100);
    EXPECT_TRUE(player.engine.AutoStart());
}

TEST(Settings, PutBothWindowsOnTop) {
    Player player;
    player.PutSetting(core::kAlwaysOnTop, "1");
    player.Start();
    EXPECT_TRUE(test::Topmost(player.form1));
    EXPECT_TRUE(test::Topmost(player.form4));
}

TEST(Settings, LeaveTheWindowsAloneWhenTheyAreNotToBeOnTop) {
    Player player;
    player.PutSetting(core::kAlwaysOnTop, "0");
    player.form1.SetTopmost(true);
    player.Start();
    EXPECT_TRUE(test::Topmost(player.form1));
}

TEST(Settings, ReadAnewAlsoTakeTheWindowsDown) {
    Player player;
    player.PutSetting(core::kAlwaysOnTop, "1");
    player.Start();
    player.PutSetting(core::kAlwaysOnTop, "0");
    player.PutSetting(core::kMoveAlso, "1");
    player.CancelOptions();
    EXPECT_FALSE(test::Topmost(player.form1));
    EXPECT_FALSE(test::Topmost(player.form4));
    EXPECT_TRUE(player.form4.Settings().move_also);
}

TEST(Volume, FollowsTheRememberedKnob) {
    Player player;
    player.PutSetting(core::kVolumeKnobTop, "200");
    player.Start();
    EXPECT_EQ(player.form4.Picture13.Top(), 200);
    const VolumeTrack track{player.form4.Line13.Y1(), player.form4.Line13.Y2(),
                            player.form4.Picture13.Height()};
    EXPECT_EQ(player.engine.Volume(), track.VolumeAt(200));
    EXPECT_EQ(player.form4.CurrentVolume, player.engine.Volume());
}

TEST(Volume, AtTheVeryBottomIsSilence) {
    Player player;
    player.PutSetting(core::kVolumeKnobTop, "99999");
    player.Start();
    EXPECT_EQ(player.engine.Volume(), core::kSilent);
    EXPECT_EQ(player.form4.CurrentVolume, core::kSilent);
}

TEST(Volume, StaysLoudWhenNoUnloadEverWroteIt) {
    Player player;
    for (int record = 1; record <= core::kStartWithSystem; ++record) {
        player.PutSetting(record, "1");
    }
    player.PutSetting(core::kVideoForWindows, "1");
    player.Start();
    EXPECT_EQ(player.engine.Volume(), 0);
    EXPECT_EQ(player.form4.Picture13.Top(), player.form4.Line13.Y1());
}

TEST(Geometry, IsRestoredWhenItIsRemembered) {
    Player player;
    RememberVideoWindow(player);
    player.PutSetting(core::kRemoteLeft, "2100");
    player.PutSetting(core::kRemoteTop, "6000");
    player.Start();
    EXPECT_EQ(player.form1.Bounds(), (base::Rect{1500, 1800, 4500, 3000}));
    EXPECT_EQ(player.form4.RemotePosition(), (base::Point{2100, 6000}));
    EXPECT_EQ(player.form4.plX, 2100);
    EXPECT_EQ(player.form4.plY, 6000);
}

TEST(Geometry, OfAHiddenStartIsThereWhenTheWindowsComeUp) {
    Player player("/START");
    RememberVideoWindow(player);
    player.Start();
    test::ReportFromTrayIcon(player.form4, 514);
    EXPECT_EQ(player.form1.Bounds(), (base::Rect{1500, 1800, 4500, 3000}));
}

TEST(Geometry, IsWrittenBackAsItWasRead) {
    Player player;
    const std::vector<std::pair<int, std::string>> records = {
        {core::kRememberWindow, "1"}, {core::kVideoLeft, "1500"},   {core::kVideoTop, "1800"},
        {core::kVideoWidth, "4500"},  {core::kVideoHeight, "3000"}, {core::kRemoteLeft, "2100"},
        {core::kRemoteTop, "6000"}};
    for (const auto& [record, text] : records)
        player.PutSetting(record, text);
    player.Start();
    test::GoTo(player.form1);
    player.form4.Picture1_Click();
    for (const auto& [record, text] : records)
        EXPECT_EQ(player.Setting(record), text) << record;
}

TEST(Geometry, IsIgnoredWhenItIsNotRemembered) {
    Player player;
    player.PutSetting(core::kVideoLeft, "1500");
    player.PutSetting(core::kRemoteLeft, "2100");
    player.Start();
    EXPECT_EQ(player.form1.Left(), 3090);
    EXPECT_NE(player.form4.Left(), 2100);
}

TEST(Geometry, OutsideOfEveryMonitorIsNotGoneTo) {
    Player player;
    player.PutSetting(core::kRememberWindow, "1");
    player.PutSetting(core::kVideoLeft, "-90000");
    player.PutSetting(core::kVideoTop, "90000");
    player.PutSetting(core::kVideoWidth, "4500");
    player.PutSetting(core::kVideoHeight, "-7");
    player.PutSetting(core::kRemoteLeft, "90000");
    player.PutSetting(core::kRemoteTop, "1e30");
    player.Start();
    EXPECT_EQ(player.form1.Bounds(), (base::Rect{3090, 1005, 5160, 3855}));
    EXPECT_LT(player.form4.Left(), 19200);
}

TEST(Geometry, ThatIsDamagedLeavesTheDefaults) {
    for (const int damaged : {core::kRememberWindow, core::kVideoLeft, core::kVideoTop,
                              core::kVideoWidth, core::kVideoHeight}) {
        Player player;
        RememberVideoWindow(player);
        player.PutSetting(damaged, "\xFF\xFE damaged");
        player.Start();
        EXPECT_TRUE(test::OnScreen(player.form1)) << damaged;
        EXPECT_EQ(player.form1.Bounds(), (base::Rect{3090, 1005, 5160, 3855})) << damaged;
    }
}

TEST(Geometry, OfTheRemoteIsTakenAsFarAsItIsWhole) {
    Player player;
    player.PutSetting(core::kRememberWindow, "1");
    player.PutSetting(core::kRemoteLeft, "damaged");
    player.PutSetting(core::kRemoteTop, "6000");
    player.Start();
    EXPECT_EQ(player.form4.RemotePosition(), (base::Point{3090, 6000}));
}

TEST(Saving, LeavesAnEmptyFileEmpty) {
    Player player;
    player.Start();
    player.form4.Picture1_Click();
    EXPECT_EQ(player.folder.Content("options.cfg"), "");
}

TEST(Saving, WritesTheKnobAndOnlyThatWhenTheWindowsAreNotRemembered) {
    Player player;
    player.PutSetting(core::kRememberWindow, "0");
    player.PutSetting(core::kVolumeKnobTop, "200");
    player.Start();
    player.form4.Picture1_Click();
    EXPECT_EQ(player.Setting(core::kVolumeKnobTop), "200");
    EXPECT_EQ(player.Setting(core::kVideoLeft), "");
    EXPECT_EQ(player.Setting(core::kRemoteLeft), "");
}

TEST(Saving, WritesTheGeometryWhenItIsRemembered) {
    Player player;
    player.PutSetting(core::kRememberWindow, "1");
    player.Start();
    test::OnNextDrag(player.form1, [](forms::HitCode) {
        return base::Rect{1500, 1800, 4500, 3000};
    });
    test::PressOn(player.form1, base::kLeftButton, 1500, 1500);
    player.form4.MoveRemote({2100, 6000});
    player.form4.Picture1_Click();
    EXPECT_EQ(player.Setting(core::kVideoLeft), "1500");
    EXPECT_EQ(player.Setting(core::kVideoTop), "1800");
    EXPECT_EQ(player.Setting(core::kVideoWidth), "4500");
    EXPECT_EQ(player.Setting(core::kVideoHeight), "3000");
    EXPECT_EQ(player.Setting(core::kRemoteLeft), "2100");
    EXPECT_EQ(player.Setting(core::kRemoteTop), "6000");
}

TEST(Saving, KeepsEveryOtherRecord) {
    Player player;
    for (int record = 1; record <= core::kStartWithSystem; ++record) {
        player.PutSetting(record, "record " + std::to_string(record));
    }
    player.Start();
    player.form4.Picture1_Click();
    for (int record = 1; record <= core::kStartWithSystem; ++record) {
        EXPECT_EQ(player.Setting(record), "record " + std::to_string(record));
    }
}

TEST(Exit, UnloadsBothWindows) {
    Player player;
    player.Start();
    player.form4.Picture1_Click();
    EXPECT_FALSE(player.form1.Loaded());
    EXPECT_FALSE(player.form4.Loaded());
}

TEST(Exit, FollowsEscapeAndAltF4OnTheRemote) {
    for (const base::KeyEvent key :
         {base::KeyEvent{base::kKeyEscape, 0}, base::KeyEvent{base::kKeyF4, base::kAltKey}}) {
        Player player;
        player.Start();
        test::PressKey(player.form4, key.KeyCode, key.Shift);
        EXPECT_FALSE(player.form4.Loaded());
        EXPECT_FALSE(player.form1.Loaded());
    }
}

TEST(Exit, DoesNotFollowOtherKeys) {
    Player player;
    player.Start();
    test::PressKey(player.form4, base::kKeyF4, 0);
    test::PressKey(player.form4, base::kKeyF4, base::kAltKey | base::kShiftKey);
    test::PressKey(player.form4, base::kKeySpace);
    EXPECT_TRUE(player.form4.Loaded());
}

class OpenMedia : public testing::Test {
protected:
    void SetUp() override {
        player_.Start();
        player_.folder.Put("movie.part1.avi", "a clip");
        player_.engine.ForgetCalls();
    }
    std::string ClipPath() const {
        return base::Utf8FromPath(player_.folder.Path() / "movie.part1.avi");
    }

    Player player_;
};

TEST_F(OpenMedia, PlaysTheChosenFile) {
    player_.dialogs.answer = ClipPath();
    player_.form4.Picture11_Click();
    EXPECT_EQ(player_.engine.FileName(), ClipPath());
    EXPECT_EQ(player_.engine.State(), core::PlayState::Playing);
    EXPECT_TRUE(player_.engine.Visible());
    EXPECT_EQ(player_.form4.glob_FilePath(), ClipPath());
}

TEST_F(OpenMedia, AsksForEveryMediaType) {
    player_.form4.Picture11_Click();
    EXPECT_EQ(player_.dialogs.lastRequest.filter.name, "All Media Types");
    EXPECT_EQ(player_.dialogs.lastRequest.filter.pattern, "*.*");
}

TEST_F(OpenMedia, ACancelOnlyHidesThePicture) {
    player_.form4.Picture11_Click();
    EXPECT_EQ(player_.engine.calls, (Calls{"Visible = false", "DisplaySize = 0"}));
    EXPECT_FALSE(player_.form4.Flags().ready_to_play);
}

TEST_F(OpenMedia, LeavesFullScreenForTheDialog) {
    player_.engine.Open("C:\\clip.avi");
    player_.engine.SetDisplaySize(core::kFullScreenDisplay);
    player_.form4.Picture11_Click();
    EXPECT_EQ(player_.engine.DisplaySize(), core::kWindowDisplay);
}

TEST_F(OpenMedia, IgnoresAFileThatDoesNotExist) {
    player_.dialogs.answer = base::Utf8FromPath(player_.folder.Path() / "missing.avi");
    player_.form4.Picture11_Click();
    EXPECT_EQ(player_.engine.calls, (Calls{"Visible = false", "DisplaySize = 0"}));
}

TEST(Tray, ALeftClickOnTheIconBringsTheWindowsBack) {
    Player player("/START");
    player.Start();
    test::ReportFromTrayIcon(player.form4, 514);
    EXPECT_TRUE(test::OnScreen(player.form1));
    EXPECT_TRUE(test::OnScreen(player.form4));
}

TEST(Tray, ARightClickOnTheIconPopsUpTheMenu) {
    Player player("/START");
    player.Start();
    test::ChooseInNextMenu(player.form4, player.form1.med, player.form1.i1);
    test::ReportFromTrayIcon(player.form4, 517);
    EXPECT_TRUE(test::OnScreen(player.form1));
}

TEST(Tray, OtherMessagesOfTheIconDoNothing) {
    Player player("/START");
    player.Start();
    for (const int message : {512, 513, 515, 516, 518}) {
        test::ReportFromTrayIcon(player.form4, message);
    }
    EXPECT_FALSE(test::OnScreen(player.form1));
}

TEST(FullScreen, PutsTheRemoteOnTopWithoutTakingTheKeys) {
    Player player("C:\\movie.avi");
    player.PutSetting(core::kHideControlInFullscreen, "0");
    player.PutSetting(core::kAutoswitchToFullscreen, "1");
    player.Start();
    test::GoTo(player.form1);
    player.form4.HideRemote();
    player.form4.Picture7_Click();
    EXPECT_EQ(player.engine.DisplaySize(), core::kFullScreenDisplay);
    EXPECT_TRUE(test::OnScreen(player.form4));
    EXPECT_TRUE(test::Topmost(player.form4));
    EXPECT_FALSE(test::Active(player.form4));
}

}  // namespace
}  // namespace nqp::remote
