#include <gtest/gtest.h>

#include <set>

#include "remote/face.h"
#include "remote/skin_check.h"
#include "remote/skin_package.h"

// The skins as the build renders them.
namespace nqp::remote {
namespace {

constexpr double kReadable = 4.5;
constexpr double kVisible = 2.0;
constexpr int kScale = 3;

std::set<std::filesystem::path> ShippedSkins() {
    std::set<std::filesystem::path> folders;
    for (const auto& entry : std::filesystem::directory_iterator(NQP_SKINS))
        folders.insert(entry.path());
    return folders;
}

TEST(ShippedSkins, AreThree) {
    std::set<std::string> names;
    for (const auto& folder : ShippedSkins())
        names.insert(folder.filename().string());
    EXPECT_EQ(names, (std::set<std::string>{"Carnival", "Daylight", "Graphite"}));
}

TEST(ShippedSkins, AreWhole) {
    for (const auto& folder : ShippedSkins())
        EXPECT_EQ(CheckSkin(folder), std::vector<std::string>{}) << folder;
}

TEST(ShippedSkins, CanBeRead) {
    for (const auto& folder : ShippedSkins()) {
        const SkinColors colors{SkinPackage(folder)};
        const auto contrast = [&](SkinColor text, SkinColor background) {
            return Contrast(colors.Read(text), colors.Read(background));
        };
        EXPECT_GE(contrast(kTitleTextColor, kTitleBackColor), kReadable) << folder;
        EXPECT_GE(contrast(kMarkButtonTextColor, kMarkButtonBackColor), kReadable) << folder;
        EXPECT_GE(contrast(kTimeTextColor, kTimeBackColor), kReadable) << folder;
        EXPECT_GE(contrast(kFieldTextColor, kFieldBackColor), kReadable) << folder;
        EXPECT_GE(contrast(kListTextColor, kListBackColor), kReadable) << folder;
        EXPECT_GE(contrast(kPositionLineColor, kTitleBackColor), kVisible) << folder;
    }
}

TEST(ShippedSkins, AreCrispAtThreeTimesTheirSize) {
    for (const auto& folder : ShippedSkins()) {
        const auto background = SkinPackage(folder).LoadPicture("backgrnd.bmp");
        ASSERT_NE(background, nullptr);
        EXPECT_EQ(background->Width(),
                  base::RoundHalfEven(face::kBackdropSize.width / face::kPixel) * kScale);
        EXPECT_TRUE(background->Opaque());
        EXPECT_FALSE(SkinPackage(folder).LoadPicture("button1.bmp")->Opaque());
    }
}

// The face is plain behind the texts, in the very colour that they stand on.
TEST(ShippedSkins, HaveThePanelInTheColorOfTheTextsOnIt) {
    for (const auto& folder : ShippedSkins()) {
        const SkinPackage skin(folder);
        const SkinColors colors(skin);
        const auto background = skin.LoadPicture("backgrnd.bmp");
        const forms::Color panel = colors.Read(kTitleBackColor);
        EXPECT_EQ(colors.Read(kTimeBackColor), panel) << folder;
        for (const base::Point& point : {face::PointAt(165, 15), face::PointAt(348, 15),
                                         face::PointAt(429, 15), face::PointAt(300, 25)}) {
            const auto pixel = background->At(base::RoundHalfEven(point.x / face::kPixel * kScale),
                                              base::RoundHalfEven(point.y / face::kPixel * kScale));
            EXPECT_EQ(forms::Rgb(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF), panel)
                << folder;
        }
    }
}

// A person sees at a glance that the pointer is over a button.
TEST(ShippedSkins, HighlightTheirButtonsClearly) {
    for (const auto& folder : ShippedSkins()) {
        const SkinPackage skin(folder);
        for (const char* button : {"button1.bmp", "button2.bmp", "button3.bmp", "button4.bmp"}) {
            const auto normal = skin.LoadPicture(button);
            const auto highlighted = skin.LoadPicture("x" + std::string(button));
            ASSERT_EQ(normal->Pixels().size(), highlighted->Pixels().size()) << folder << button;
            int different = 0;
            for (std::size_t index = 0; index < normal->Pixels().size(); ++index) {
                const auto a = normal->Pixels()[index];
                const auto b = highlighted->Pixels()[index];
                const auto distance = [&](unsigned shift) {
                    return std::abs(static_cast<int>(a >> shift & 0xFF) -
                                    static_cast<int>(b >> shift & 0xFF));
                };
                if (distance(0) + distance(8) + distance(16) > 90) ++different;
            }
            EXPECT_GT(different, static_cast<int>(normal->Pixels().size()) / 4)
                << folder << ' ' << button;
        }
    }
}

}  // namespace
}  // namespace nqp::remote
