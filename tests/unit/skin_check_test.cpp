#include "remote/skin_check.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "bmp_bytes.h"
#include "skin_files.h"

namespace nqp::remote {
namespace {

class SkinCheck : public testing::Test {
protected:
    void SetUp() override {
        skin_.Put("backgrnd.bmp", test::Bmp24(560, 160, 0x223344));
        for (const char* button : {"button1", "button2", "button3", "button4"}) {
            skin_.Put(std::string(button) + ".bmp", test::Bmp24(68, 68, 0x101010));
            skin_.Put("x" + std::string(button) + ".bmp", test::Bmp24(68, 68, 0xF0F0F0));
        }
        skin_.Put("position.bmp", test::Bmp24(17, 14, 0));
        skin_.Put("volume.bmp", test::Bmp24(18, 10, 0));
        skin_.Put("resize.bmp", test::Bmp24(12, 12, 0));
        for (const char* tool : {"options", "help", "playlist", "hideremote", "hideall", "exit"})
            skin_.Put(std::string(tool) + ".bmp", test::Bmp24(20, 20, 0));
        skin_.PutColors(colors_);
    }
    std::string Finding() const {
        const auto findings = CheckSkin(skin_.Folder());
        return findings.size() == 1 ? findings.front() : std::to_string(findings.size());
    }

    std::vector<std::string> colors_ = {"8421504", "8421504",  "0", "16777215", "16777215", "0",
                                        "0",       "16777215", "0", "16777215", "16777215", "0"};
    test::TempFolder folder_;
    test::SkinFiles skin_{folder_, "Test"};
};

TEST_F(SkinCheck, FindsNothingInAWholeSkin) {
    EXPECT_EQ(CheckSkin(skin_.Folder()), std::vector<std::string>{});
}

TEST_F(SkinCheck, FindsAMissingFolder) {
    EXPECT_EQ(CheckSkin(folder_.Path() / "nowhere"),
              std::vector<std::string>{"There is no such folder."});
}

TEST_F(SkinCheck, NamesAMissingPicture) {
    std::filesystem::remove(skin_.Folder() / "help.bmp");
    EXPECT_TRUE(Finding().starts_with("help.bmp is missing")) << Finding();
}

TEST_F(SkinCheck, NamesADamagedPicture) {
    skin_.Put("exit.bmp", "BM but no picture");
    EXPECT_TRUE(Finding().starts_with("exit.bmp is damaged")) << Finding();
}

TEST_F(SkinCheck, NamesAPictureThatIsTooSmallOrDistorted) {
    skin_.Put("exit.bmp", test::Bmp24(10, 10, 0));
    EXPECT_TRUE(Finding().starts_with("exit.bmp is 10 x 10, smaller than its place of 20 x 20"))
        << Finding();
    skin_.Put("exit.bmp", test::Bmp24(60, 20, 0));
    EXPECT_TRUE(Finding().starts_with("exit.bmp is 60 x 20, which has another shape")) << Finding();
}

TEST_F(SkinCheck, NamesAHighlightThatNobodySees) {
    skin_.Put("xbutton3.bmp", test::Bmp24(68, 68, 0x101010));
    EXPECT_TRUE(Finding().starts_with("xbutton3.bmp is the same picture")) << Finding();
}

TEST_F(SkinCheck, NamesAColorFileThatIsMissingAndDoesNotMakeIt) {
    std::filesystem::remove(skin_.Folder() / "nqp_colors.cfg");
    EXPECT_TRUE(Finding().starts_with("nqp_colors.cfg is missing or empty")) << Finding();
    EXPECT_FALSE(std::filesystem::exists(skin_.Folder() / "nqp_colors.cfg"));
}

TEST_F(SkinCheck, NamesARecordThatIsNoNumber) {
    colors_[4] = "white";
    skin_.PutColors(colors_);
    EXPECT_TRUE(Finding().starts_with("Record 5 of nqp_colors.cfg")) << Finding();
}

TEST_F(SkinCheck, NamesTextThatCannotBeRead) {
    colors_[2] = "12632256";  // light grey on white
    skin_.PutColors(colors_);
    EXPECT_EQ(Finding(),
              "The text of the title (records 3 and 4) has a contrast of 1.8 to 1; 4.5 to 1 is the "
              "least that reads well.");
}

TEST(Contrast, IsTwentyOneForBlackOnWhiteAndOneForTheSame) {
    EXPECT_NEAR(Contrast(0x000000, 0xFFFFFF), 21, 0.001);
    EXPECT_NEAR(Contrast(0xFFFFFF, 0x000000), 21, 0.001);
    EXPECT_NEAR(Contrast(0x334455, 0x334455), 1, 0.001);
    EXPECT_NEAR(Contrast(forms::Rgb(0x76, 0x76, 0x76), 0xFFFFFF), 4.54, 0.01);
}

}  // namespace
}  // namespace nqp::remote
