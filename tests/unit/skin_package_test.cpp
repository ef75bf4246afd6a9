#include "remote/skin_package.h"

#include <gtest/gtest.h>

#include "base/file.h"
#include "bmp_bytes.h"
#include "forms/run_time_error.h"
#include "skin_files.h"

namespace nqp::remote {
namespace {

TEST(SkinPackage, PutsItsNameBehindTheFolderAsItIs) {
    for (const char* name : {"Daylight", "two words", "blanks at the end  ", "Ночь", ""}) {
        EXPECT_EQ(base::Utf8FromPath(SkinPackage("program", name).Folder()),
                  std::string("program/Skins/") + name);
    }
}

TEST(SkinPackage, NeverLeavesTheProgramFolderByAnAbsoluteName) {
    const std::string folder = base::Utf8FromPath(SkinPackage("program", "/etc").Folder());
    EXPECT_TRUE(folder.starts_with("program")) << folder;
}

TEST(SkinPackage, HasNoPictureForAFileThatIsMissing) {
    const test::TempFolder folder;
    EXPECT_EQ(SkinPackage(folder.Path(), "Test").LoadPicture("exit.bmp"), nullptr);
}

TEST(SkinPackage, FailsAtAFileThatIsNoBitmap) {
    const test::TempFolder folder;
    const test::SkinFiles files(folder, "Test");
    const std::string whole = test::Bmp24(4, 4, 0x405060);
    for (const std::string& content : {std::string(), std::string("text"), whole.substr(0, 60)}) {
        files.Put("exit.bmp", content);
        EXPECT_THROW(static_cast<void>(SkinPackage(folder.Path(), "Test").LoadPicture("exit.bmp")),
                     forms::RunTimeError);
    }
}

TEST(SkinColors, AreWholeNumbersInDecimal) {
    const test::TempFolder folder;
    const test::SkinFiles files(folder, "Test");
    files.PutColors({"255", " 65280 ", "16777215", "-1"});
    const SkinColors colors(SkinPackage(folder.Path(), "Test"));
    EXPECT_FALSE(colors.Empty());
    EXPECT_EQ(colors.Read(kPositionLineColor), forms::Rgb(255, 0, 0));
    EXPECT_EQ(colors.Read(kVolumeLineColor), forms::Rgb(0, 255, 0));
    EXPECT_EQ(colors.Read(kTitleTextColor), forms::Rgb(255, 255, 255));
    EXPECT_EQ(colors.Read(kTitleBackColor), forms::Rgb(255, 255, 255));
    EXPECT_THROW(static_cast<void>(colors.Read(kListTextColor)), forms::RunTimeError);
}

TEST(SkinColors, OfASkinWithoutAFileAreMadeEmpty) {
    const test::TempFolder folder;
    const test::SkinFiles files(folder, "Test");
    EXPECT_TRUE(SkinColors(SkinPackage(folder.Path(), "Test")).Empty());
    EXPECT_TRUE(base::IsFile(files.Folder() / "nqp_colors.cfg"));
}

}  // namespace
}  // namespace nqp::remote
