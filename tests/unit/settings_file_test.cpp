#include "core/settings_file.h"

#include <gtest/gtest.h>

#include "temp_folder.h"

namespace nqp::core {
namespace {

class SettingsFileTest : public testing::Test {
protected:
    SettingsFile Open() const { return SettingsFile(folder_.Path()); }
    void Put(SettingsRecord record, const std::string& text) const {
        SettingsFile file = Open();
        ASSERT_TRUE(file.SetText(record, text));
        ASSERT_TRUE(file.Commit());
    }
    SharedSettings Applied() const {
        SharedSettings settings;
        Open().ApplyBehaviour(settings);
        Open().ApplyFragmentsAndSchedule(settings);
        return settings;
    }

    test::TempFolder folder_;
};

TEST_F(SettingsFileTest, AMissingFileIsCreatedEmpty) {
    EXPECT_TRUE(Open().Empty());
    EXPECT_EQ(folder_.Content("options.cfg"), "");
}

TEST_F(SettingsFileTest, OnlyOneTurnsAFlagOn) {
    Put(kAutostartPlayback, "1");
    Put(kAutoswitchToFullscreen, "0");
    Put(kMoveAlso, "2");
    const SharedSettings settings = Applied();
    EXPECT_TRUE(settings.auto_start);
    EXPECT_FALSE(settings.auto_fullscreen);
    EXPECT_FALSE(settings.move_also);
}

TEST_F(SettingsFileTest, HidingTheControlTurnsItsFullScreenFlagOff) {
    Put(kHideControlInFullscreen, "1");
    EXPECT_FALSE(Applied().control_at_fullscreen);
    Put(kHideControlInFullscreen, "0");
    EXPECT_TRUE(Applied().control_at_fullscreen);
    Put(kHideControlInFullscreen, "2");
    EXPECT_TRUE(Applied().control_at_fullscreen);
}

TEST_F(SettingsFileTest, AnEmptyPercentageReadsAsAHundred) {
    Put(kMoveAlso, "1");
    EXPECT_EQ(Applied().fragment_percentage, 100);
    Put(kFragmentPercentage, "50");
    EXPECT_EQ(Applied().fragment_percentage, 50);
}

TEST_F(SettingsFileTest, AnEmptyScheduleReadsAsZero) {
    Put(kMoveAlso, "1");
    const SharedSettings settings = Applied();
    EXPECT_EQ(settings.scheduled_month, 0);
    EXPECT_EQ(settings.scheduled_day, 0);
    EXPECT_EQ(settings.scheduled_hour, 0);
    EXPECT_EQ(settings.scheduled_minute, 0);
}

TEST_F(SettingsFileTest, TheScheduleAndThePictureAreRead) {
    Put(kScheduledMonth, "12");
    Put(kScheduledDay, "31");
    Put(kScheduledHour, "23");
    Put(kScheduledMinute, "59");
    Put(kScheduledFile, "C:\\a b\\c.avi");
    Put(kInsertPicture, "1");
    Put(kPicturePath, "C:\\logo.bmp");
    Put(kPictureX, "500");
    Put(kPictureY, "-3");
    Put(kVideoForWindows, "1");
    const SharedSettings settings = Applied();
    EXPECT_EQ(settings.scheduled_month, 12);
    EXPECT_EQ(settings.scheduled_day, 31);
    EXPECT_EQ(settings.scheduled_hour, 23);
    EXPECT_EQ(settings.scheduled_minute, 59);
    EXPECT_EQ(settings.scheduled_file, "C:\\a b\\c.avi");
    EXPECT_TRUE(settings.insert_picture);
    EXPECT_EQ(settings.picture_path, "C:\\logo.bmp");
    EXPECT_EQ(settings.picture_x, 500);
    EXPECT_EQ(settings.picture_y, -3);
    EXPECT_FALSE(settings.use_directshow);
}

TEST_F(SettingsFileTest, AnyOtherVideoInterfaceIsDirectShow) {
    Put(kVideoForWindows, "0");
    EXPECT_TRUE(Applied().use_directshow);
    Put(kVideoForWindows, "");
    EXPECT_TRUE(Applied().use_directshow);
}

TEST_F(SettingsFileTest, ARecordThatIsNoNumberChangesNothing) {
    Put(kVideoForWindows, "0");
    for (int record = 1; record <= kSettingsRecordCount; ++record) {
        Put(static_cast<SettingsRecord>(record), "no number");
    }
    const SharedSettings settings = Applied();
    EXPECT_FALSE(settings.auto_start);
    EXPECT_EQ(settings.fragment_percentage, 100);
    EXPECT_EQ(settings.picture_x, 0);
    EXPECT_EQ(Open().VolumeKnobTop(), std::nullopt);
    EXPECT_EQ(Open().Geometry(), std::nullopt);
}

TEST_F(SettingsFileTest, TheKnobOfAFileThatNoUnloadWroteIsAbsent) {
    for (int record = 1; record <= kStartWithSystem; ++record) {
        Put(static_cast<SettingsRecord>(record), "1");
    }
    Put(kVideoForWindows, "1");
    EXPECT_EQ(Open().Text(kVolumeKnobTop), "");
    EXPECT_EQ(Open().VolumeKnobTop(), std::nullopt);
}

TEST_F(SettingsFileTest, TheGeometryIsReadOnlyWhenItIsRemembered) {
    SettingsFile file = Open();
    file.SetVideoBounds(-150, 1005, 5160, 3855);
    file.SetRemotePosition(100.5F, 200);
    ASSERT_TRUE(file.Commit());
    EXPECT_EQ(Open().Geometry(), std::nullopt);
    Put(kRememberWindow, "1");
    const auto geometry = Open().Geometry();
    ASSERT_TRUE(geometry.has_value());
    EXPECT_EQ(geometry->videoLeft, -150);
    EXPECT_EQ(geometry->videoHeight, 3855);
    EXPECT_EQ(geometry->remoteLeft, 100.5F);
    EXPECT_EQ(Open().Text(kRemoteLeft), "100.5");
    EXPECT_EQ(Open().Text(kRemoteTop), "200");
}

TEST_F(SettingsFileTest, TheLongestSkinNameHas998Bytes) {
    const std::string longest(998, 's');
    SettingsFile file = Open();
    EXPECT_TRUE(file.SetText(kSkinName, longest));
    EXPECT_FALSE(file.SetText(kSkinName, longest + "s"));
    ASSERT_TRUE(file.Commit());
    EXPECT_EQ(Open().Text(kSkinName), longest);
}

}  // namespace
}  // namespace nqp::core
