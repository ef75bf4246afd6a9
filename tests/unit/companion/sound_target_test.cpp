#include "server/sound_target.h"

#include <gtest/gtest.h>

#include "core/settings_file.h"
#include "temp_folder.h"

namespace nqp::companion {
namespace {

TEST(SoundTarget, OnlyTheClipBesideATargetDependsOnIt) {
    EXPECT_TRUE(StandsBesideATarget("C:\\a!.avi"));
    EXPECT_TRUE(StandsBesideATarget(std::string("C:\\a!.AVI\0\0", 11)));
    EXPECT_FALSE(StandsBesideATarget("C:\\a.avi"));
    EXPECT_FALSE(StandsBesideATarget("C:\\a!.mp3"));
}

TEST(SoundTarget, IsAnMp3WhenTheClipIsNamedAfterOne) {
    EXPECT_TRUE(BecomesMp3("C:\\a!.avi", "C:\\a.mp3"));
    EXPECT_TRUE(BecomesMp3("C:\\A!.avi", std::string("c:\\a.MP3") + std::string(200, '\0')));
    EXPECT_TRUE(BecomesMp3("C:\\歌!.avi", "C:\\歌.mp3"));
}

TEST(SoundTarget, IsNoMp3Otherwise) {
    EXPECT_FALSE(BecomesMp3("C:\\a!.avi", "C:\\a.wav"));
    EXPECT_FALSE(BecomesMp3("C:\\a!.avi", "C:\\b.mp3")) << "another job's target";
    EXPECT_FALSE(BecomesMp3("C:\\a!.avi", "C:\\a!.mp3"));
    EXPECT_FALSE(BecomesMp3("C:\\a.avi", "C:\\a.mp3"));
    EXPECT_FALSE(BecomesMp3("C:\\a!.avi", ""));
    EXPECT_FALSE(BecomesMp3("!.avi", "mp3"));
}

class Mp3Rate : public testing::Test {
protected:
    void Write(const std::string& text) const {
        core::SettingsFile settings(folder_.Path());
        ASSERT_TRUE(settings.SetText(core::kMp3SampleRate, text) && settings.Commit());
    }

    test::TempFolder folder_;
};

TEST_F(Mp3Rate, IsThatOfThePlayersOptions) {
    Write("22050");
    EXPECT_EQ(Mp3RateIn(folder_.Path()), 22050);
}

TEST_F(Mp3Rate, IsTheUsualOneWhereTheOptionsDoNotSay) {
    for (const char* text : {"", "high", "0", "-8000"}) {
        Write(text);
        EXPECT_EQ(Mp3RateIn(folder_.Path()), 44100) << text;
    }
}

TEST_F(Mp3Rate, MakesNoOptionsWhereThereAreNone) {
    EXPECT_EQ(Mp3RateIn(folder_.Path()), 44100);
    EXPECT_FALSE(folder_.Has("options.cfg"));
}

}  // namespace
}  // namespace nqp::companion
