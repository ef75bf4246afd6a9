#include "core/first_folder.h"

#include <gtest/gtest.h>

#include "core/settings_file.h"
#include "temp_folder.h"

namespace nqp::core {
namespace {

TEST(FirstFolder, ArmsAnOrdinaryStart) {
    const test::TempFolder folder;
    ASSERT_TRUE(FillFirstFolder(folder.Path()));
    EXPECT_EQ(folder.Content("startup.cfg"), "0");
}

TEST(FirstFolder, HoldsAnEmptyPlaylist) {
    const test::TempFolder folder;
    ASSERT_TRUE(FillFirstFolder(folder.Path()));
    const std::string list = folder.Content("playlist.cfg");
    ASSERT_EQ(list.size(), 503U);
    EXPECT_EQ(list.substr(0, 3), std::string("\x01\x00"
                                             "0",
                                             3));
    EXPECT_EQ(list.substr(500), std::string("\x01\x00"
                                            "0",
                                            3));
}

TEST(FirstFolder, HoldsSensibleFirstChoices) {
    const test::TempFolder folder;
    ASSERT_TRUE(FillFirstFolder(folder.Path()));
    const SettingsFile settings(folder.Path());
    EXPECT_TRUE(settings.Flag(kAutostartPlayback));
    EXPECT_TRUE(settings.Flag(kRememberWindow));
    EXPECT_FALSE(settings.Flag(kAlwaysOnTop));
    EXPECT_EQ(settings.Text(kSkinName), kDefaultSkin);
    EXPECT_EQ(settings.VolumeKnobTop(), std::nullopt);
}

TEST(FirstFolder, KeepsWhatIsThereAlready) {
    const test::TempFolder folder;
    folder.Put("startup.cfg", "1");
    folder.Put("options.cfg", "mine");
    folder.Put("playlist.cfg", "");
    ASSERT_TRUE(FillFirstFolder(folder.Path()));
    EXPECT_EQ(folder.Content("startup.cfg"), "1");
    EXPECT_EQ(folder.Content("options.cfg"), "mine");
    EXPECT_EQ(folder.Content("playlist.cfg"), "");
}

TEST(FirstFolder, ReportsAFolderThatIsNotThere) {
    const test::TempFolder folder;
    EXPECT_FALSE(FillFirstFolder(folder.Path() / "missing"));
}

}  // namespace
}  // namespace nqp::core
