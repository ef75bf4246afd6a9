#include "options/skin_list.h"

#include <gtest/gtest.h>

#include "skin_files.h"

namespace nqp::options {
namespace {

using test::SkinFiles;
using Names = std::vector<std::string>;

class SkinListTest : public testing::Test {
protected:
    void PutSkin(const std::string& name) const { SkinFiles(folder_, name).PutColors({"0"}); }
    SkinList List(const std::string& present = {}) const {
        return ListSkins(folder_.Path(), present);
    }

    test::TempFolder folder_;
};

TEST_F(SkinListTest, HasTheFoldersWithColoursInTheOrderOfTheirNames) {
    PutSkin("beta");
    PutSkin("Gamma");
    PutSkin("Alpha");
    PutSkin("\xD0\xB6");
    EXPECT_EQ(List().names, (Names{"Alpha", "beta", "Gamma", "\xD0\xB6"}));
    EXPECT_EQ(List().selected, -1);
}

TEST_F(SkinListTest, SelectsThePresentSkin) {
    PutSkin("Alpha");
    PutSkin("Beta");
    EXPECT_EQ(List("Beta").selected, 1);
    EXPECT_EQ(List("beta").selected, -1);
    EXPECT_EQ(List("").selected, -1);
}

TEST_F(SkinListTest, GivesAFolderWithoutColoursAnEmptyFileAndLeavesItOut) {
    PutSkin("Alpha");
    const SkinFiles bare(folder_, "Bare");
    EXPECT_EQ(List().names, Names{"Alpha"});
    EXPECT_EQ(std::filesystem::file_size(bare.Folder() / "nqp_colors.cfg"), 0U);
}

TEST_F(SkinListTest, SelectsTheOneBeforeAPresentSkinWithoutColours) {
    PutSkin("Alpha");
    const SkinFiles bare(folder_, "Bare");
    PutSkin("Zeta");
    EXPECT_EQ(List("Bare").selected, 0);
}

TEST_F(SkinListTest, SelectsNothingWhenNoSkinStandsBeforeIt) {
    const SkinFiles bare(folder_, "Bare");
    EXPECT_EQ(List("Bare").selected, -1);
}

TEST_F(SkinListTest, LeavesFilesOut) {
    PutSkin("Alpha");
    folder_.Put("Skins/readme.txt", "text");
    EXPECT_EQ(List().names, Names{"Alpha"});
}

TEST_F(SkinListTest, IsEmptyWithoutTheFolder) {
    EXPECT_EQ(List("Alpha").names, Names{});
    EXPECT_FALSE(folder_.Has("Skins"));
}

}  // namespace
}  // namespace nqp::options
