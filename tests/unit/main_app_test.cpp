#include "core/main_app.h"

#include <gtest/gtest.h>

#include "core/command_line.h"
#include "core/program_folder.h"
#include "temp_folder.h"

namespace nqp::core {
namespace {

class RecordingWindows final : public StartWindows {
public:
    void Load() override { done += "load "; }
    void Show() override { done += "show "; }
    std::string done;
};

class MainAppTest : public testing::Test {
protected:
    LaunchMode Start(const std::string& commandLine = {}) {
        return MainApp(folder_.Path(), {commandLine}, windows_).Mode();
    }
    LaunchMode StartByAutomation() { return MainApp(folder_.Path(), {{}, true}, windows_).Mode(); }
    std::string Marker() const { return folder_.Content("startup.cfg"); }

    test::TempFolder folder_;
    RecordingWindows windows_;
};

TEST_F(MainAppTest, TheFirstStartOnlyMakesTheMarker) {
    EXPECT_EQ(Start(), LaunchMode::Automation);
    EXPECT_EQ(windows_.done, "");
    EXPECT_EQ(Marker(), "0");
}

TEST_F(MainAppTest, TheSecondStartShowsBothWindows) {
    Start();
    EXPECT_EQ(Start(), LaunchMode::Ordinary);
    EXPECT_EQ(windows_.done, "show ");
    EXPECT_EQ(Marker(), "0");
}

TEST_F(MainAppTest, AnyOtherMarkerMakesAnAutomationStart) {
    for (const std::string& marker : {std::string("1"), std::string(), std::string("10"),
                                      std::string("\0", 1), std::string("x")}) {
        folder_.Put("startup.cfg", marker);
        EXPECT_EQ(Start(), LaunchMode::Automation) << marker;
        EXPECT_EQ(Marker(), "0");
    }
    EXPECT_EQ(windows_.done, "");
}

TEST_F(MainAppTest, OnlyTheFirstByteOfTheMarkerCounts) {
    folder_.Put("startup.cfg", "01");
    EXPECT_EQ(Start(), LaunchMode::Ordinary);
    EXPECT_EQ(Marker(), "01");
}

TEST_F(MainAppTest, TheHiddenSwitchLoadsWithoutShowing) {
    folder_.Put("startup.cfg", "0");
    EXPECT_EQ(Start("/START"), LaunchMode::Hidden);
    EXPECT_EQ(windows_.done, "load ");
}

TEST_F(MainAppTest, TheHiddenSwitchIsTheWholeTextInUpperCase) {
    folder_.Put("startup.cfg", "0");
    for (const char* text : {"/start", "/START ", " /START", "/START a.avi"}) {
        EXPECT_EQ(Start(text), LaunchMode::Ordinary) << text;
        EXPECT_TRUE(NamesMediaFile(text));
    }
    EXPECT_FALSE(NamesMediaFile("/START"));
    EXPECT_FALSE(NamesMediaFile(""));
}

TEST_F(MainAppTest, AnAutomationMarkerWinsOverTheHiddenSwitch) {
    folder_.Put("startup.cfg", "1");
    EXPECT_EQ(Start("/START"), LaunchMode::Automation);
    EXPECT_EQ(windows_.done, "");
}

TEST_F(MainAppTest, AMissingFolderIsAnAutomationStart) {
    EXPECT_EQ(MainApp(folder_.Path() / "missing", {}, windows_).Mode(), LaunchMode::Automation);
}

TEST(FlagFile, IsDeletedFromTheProgramFolder) {
    const test::TempFolder folder;
    folder.Put("flag.txt", "");
    DeleteFlagFile(folder.Path());
    EXPECT_FALSE(folder.Has("flag.txt"));
    DeleteFlagFile(folder.Path());  // a missing one is no error
}

TEST_F(MainAppTest, StartByTheAutomationLayerShowsNothingWhateverTheMarkerHolds) {
    for (const char* marker : {"0", "1", ""}) {
        folder_.Put("startup.cfg", marker);
        EXPECT_EQ(StartByAutomation(), LaunchMode::Automation);
        EXPECT_EQ(windows_.done, "");
        EXPECT_EQ(Marker(), "0");
    }
}

TEST_F(MainAppTest, ArmedAutomationStartIsForOneStart) {
    folder_.Put("startup.cfg", "0");
    {
        const ArmedAutomationStart armed(folder_.Path());
        EXPECT_EQ(Marker(), "1");
        EXPECT_EQ(Start(), LaunchMode::Automation);
        EXPECT_EQ(Marker(), "0");
    }
    EXPECT_EQ(Start(), LaunchMode::Ordinary);
}

TEST_F(MainAppTest, ArmedAutomationStartThatNobodyUsedIsTakenBack) {
    folder_.Put("startup.cfg", "0");
    { const ArmedAutomationStart armed(folder_.Path()); }
    EXPECT_EQ(Marker(), "0");
}

}  // namespace
}  // namespace nqp::core
