#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "bmp_bytes.h"
#include "forms/run_time_error.h"
#include "player.h"
#include "skin_files.h"

namespace nqp::remote {
namespace {

using test::Player;

using Box = forms::PictureBox Form4::*;

const std::vector<std::pair<const char*, Box>> kPictures = {
    {"button1.bmp", &Form4::Picture2},   {"button2.bmp", &Form4::Picture3},
    {"button3.bmp", &Form4::Picture4},   {"button4.bmp", &Form4::Picture6},
    {"xbutton1.bmp", &Form4::Picture7},  {"xbutton2.bmp", &Form4::Picture8},
    {"xbutton3.bmp", &Form4::Picture9},  {"xbutton4.bmp", &Form4::Picture11},
    {"position.bmp", &Form4::Picture12}, {"volume.bmp", &Form4::Picture13},
    {"options.bmp", &Form4::Picture10},  {"help.bmp", &Form4::Picture14},
    {"playlist.bmp", &Form4::Picture15}, {"hideremote.bmp", &Form4::Picture5},
    {"hideall.bmp", &Form4::Picture16},  {"exit.bmp", &Form4::Picture1},
    {"resize.bmp", &Form4::Picture17},   {"resize.bmp", &Form4::Picture18},
};

constexpr std::uint32_t kFirstShade = 0x102030;

class Skin : public testing::Test {
protected:
    void Choose(const std::string& name) { player_.PutSetting(core::kSkinName, name); }
    test::SkinFiles Make(const std::string& name) { return {player_.folder, name}; }
    // Twelve colours that all differ: 1000, 1001 and so on.
    static std::vector<std::string> TwelveColors() {
        std::vector<std::string> records;
        for (int record = 1; record <= 12; ++record)
            records.push_back(std::to_string(1000 + record));
        return records;
    }

    Player player_;
    Form4& remote_ = player_.form4;
};

TEST_F(Skin, PutsEachPictureOnItsControl) {
    const auto skin = Make("Test");
    skin.Put("backgrnd.bmp", test::Bmp24(3, 2, kFirstShade));
    std::uint32_t shade = kFirstShade;
    for (const auto& [file, box] : kPictures) {
        if (box != &Form4::Picture18) ++shade;
        skin.Put(file, test::Bmp24(2, 2, shade));
    }
    Choose("Test");
    player_.Start();
    ASSERT_NE(remote_.BackgroundPicture(), nullptr);
    EXPECT_EQ(remote_.BackgroundPicture()->At(0, 0), 0xFF000000 | kFirstShade);
    shade = kFirstShade;
    for (const auto& [file, box] : kPictures) {
        if (box != &Form4::Picture18) ++shade;
        const forms::Picture& picture = (remote_.*box).ShownPicture();
        ASSERT_NE(picture, nullptr) << file;
        EXPECT_EQ(picture->At(0, 0), 0xFF000000 | shade) << file;
    }
}

TEST_F(Skin, DoesNotSizeTheControls) {
    const auto skin = Make("Test");
    skin.Put("position.bmp", test::Bmp24(100, 100, 0));
    skin.Put("backgrnd.bmp", test::Bmp24(9, 900, 0));
    Choose("Test");
    const base::Rect knob{remote_.Picture12.Left(), remote_.Picture12.Top(),
                          remote_.Picture12.Width(), remote_.Picture12.Height()};
    const base::Size window{remote_.Width(), remote_.Height()};
    player_.Start();
    EXPECT_EQ((base::Rect{remote_.Picture12.Left(), remote_.Picture12.Top(),
                          remote_.Picture12.Width(), remote_.Picture12.Height()}),
              knob);
    EXPECT_EQ(remote_.Width(), window.width);
    EXPECT_NEAR(remote_.Height(), window.height, 15);
}

TEST_F(Skin, PutsEachColorOnItsControls) {
    Make("Test").PutColors(TwelveColors());
    Choose("Test");
    player_.Start();
    for (const forms::Line* line : {&remote_.Line12, &remote_.Line11, &remote_.Line9})
        EXPECT_EQ(line->BorderColor(), 1001U);
    for (const forms::Line* line : {&remote_.Line13, &remote_.Line10})
        EXPECT_EQ(line->BorderColor(), 1002U);
    EXPECT_EQ(remote_.Label1.ForeColor(), 1003U);
    EXPECT_EQ(remote_.Label1.BackColor(), 1004U);
    for (const forms::CommandButton* button : {&remote_.Command1, &remote_.Command2}) {
        EXPECT_EQ(button->BackColor(), 1005U);
        EXPECT_EQ(button->ForeColor(), 1006U);
    }
    EXPECT_EQ(remote_.Label2.ForeColor(), 1007U);
    EXPECT_EQ(remote_.Label2.BackColor(), 1008U);
    for (const forms::Control* control : std::initializer_list<const forms::Control*>{
             &remote_.Text1, &remote_.Text2, &remote_.Text3, &remote_.Text4, &remote_.Text5,
             &remote_.Text6, &remote_.Label3, &remote_.Label4, &remote_.Label5, &remote_.Label6}) {
        EXPECT_EQ(control->ForeColor(), 1009U) << control->Name();
        EXPECT_EQ(control->BackColor(), 1010U) << control->Name();
    }
    EXPECT_EQ(remote_.List1.BackColor(), 1011U);
    EXPECT_EQ(remote_.List1.ForeColor(), 1012U);
}

TEST_F(Skin, ReadsAColorWithRedInTheLowByte) {
    auto records = TwelveColors();
    records[2] = std::to_string(0x00BB8040);
    Make("Test").PutColors(records);
    Choose("Test");
    player_.Start();
    EXPECT_EQ(remote_.Label1.ForeColor(), forms::Rgb(0x40, 0x80, 0xBB));
}

TEST_F(Skin, WithoutAnyFileLeavesTheLookAndGetsAnEmptyColorFile) {
    const forms::Color before = remote_.Label1.ForeColor();
    const auto skin = Make("Empty");
    Choose("Empty");
    player_.Start();
    EXPECT_EQ(remote_.Label1.ForeColor(), before);
    EXPECT_EQ(remote_.Picture2.ShownPicture(), nullptr);
    EXPECT_EQ(remote_.BackgroundPicture(), nullptr);
    EXPECT_TRUE(std::filesystem::is_regular_file(skin.Folder() / "nqp_colors.cfg"));
    EXPECT_EQ(std::filesystem::file_size(skin.Folder() / "nqp_colors.cfg"), 0U);
}

TEST_F(Skin, ReplacesOnlyWhatItBrings) {
    Make("First").Put("button1.bmp", test::Bmp24(1, 1, 0x111111));
    Make("First").Put("exit.bmp", test::Bmp24(1, 1, 0x222222));
    Make("First").PutColors(TwelveColors());
    Make("Second").Put("exit.bmp", test::Bmp24(1, 1, 0x333333));
    Choose("First");
    player_.Start();
    Choose("Second");
    remote_.goskin();
    EXPECT_EQ(remote_.Picture2.ShownPicture()->At(0, 0), 0xFF111111U);
    EXPECT_EQ(remote_.Picture1.ShownPicture()->At(0, 0), 0xFF333333U);
    EXPECT_EQ(remote_.Label1.ForeColor(), 1003U);
}

TEST_F(Skin, WithFewerColorsAppliesThoseItHasAndFails) {
    auto records = TwelveColors();
    records.resize(7);
    Make("Short").PutColors(records);
    Choose("Short");
    player_.Start();
    EXPECT_TRUE(test::OnScreen(remote_));
    EXPECT_EQ(remote_.Label2.ForeColor(), 1007U);
    EXPECT_NE(remote_.Label2.BackColor(), 1008U);
    EXPECT_THROW(remote_.goskin(), forms::RunTimeError);
}

TEST_F(Skin, WithARecordThatIsNoNumberAppliesWhatComesBeforeAndFails) {
    for (const char* text : {"red", "", "12x", "1e400", "4294967296"}) {
        Player player;
        test::SkinFiles skin(player.folder, "Bad");
        auto records = TwelveColors();
        records[4] = text;
        skin.PutColors(records);
        skin.Put("button1.bmp", test::Bmp24(1, 1, 0x111111));
        player.PutSetting(core::kSkinName, "Bad");
        player.Start();
        EXPECT_TRUE(test::OnScreen(player.form4)) << text;
        EXPECT_NE(player.form4.Picture2.ShownPicture(), nullptr) << text;
        EXPECT_EQ(player.form4.Label1.BackColor(), 1004U) << text;
        EXPECT_NE(player.form4.Command1.BackColor(), 1005U) << text;
        EXPECT_THROW(player.form4.goskin(), forms::RunTimeError) << text;
    }
}

TEST_F(Skin, WithADamagedPictureKeepsThoseBeforeItAndFails) {
    const auto skin = Make("Bad");
    skin.Put("backgrnd.bmp", test::Bmp24(1, 1, 0x111111));
    skin.Put("button2.bmp", "BM this is no bitmap");
    skin.Put("button3.bmp", test::Bmp24(1, 1, 0x333333));
    skin.PutColors(TwelveColors());
    Choose("Bad");
    player_.Start();
    EXPECT_TRUE(test::OnScreen(remote_));
    EXPECT_TRUE(test::OnScreen(player_.form1));
    EXPECT_NE(remote_.BackgroundPicture(), nullptr);
    EXPECT_EQ(remote_.Picture4.ShownPicture(), nullptr);
    EXPECT_NE(remote_.Label1.ForeColor(), 1003U);
    EXPECT_THROW(remote_.goskin(), forms::RunTimeError);
    EXPECT_EQ(player_.tray.calls.size(), 1U);  // the start went on
}

TEST_F(Skin, LeavesAFolderInThePlaceOfAPictureAlone) {
    const auto skin = Make("Odd");
    std::filesystem::create_directory(skin.Folder() / "button1.bmp");
    Choose("Odd");
    player_.Start();
    EXPECT_EQ(remote_.Picture2.ShownPicture(), nullptr);
    EXPECT_NO_THROW(remote_.goskin());
}

TEST_F(Skin, ThatDoesNotExistChangesNothing) {
    Choose("Nowhere");
    player_.Start();
    EXPECT_NO_THROW(remote_.goskin());
    EXPECT_EQ(remote_.Picture2.ShownPicture(), nullptr);
    EXPECT_FALSE(player_.folder.Has("Skins"));
}

TEST_F(Skin, MayHaveANameWithBlanksAndNonLatinLetters) {
    Make("Ночь и день").Put("button1.bmp", test::Bmp24(1, 1, 0x111111));
    Choose("Ночь и день");
    player_.Start();
    EXPECT_NE(remote_.Picture2.ShownPicture(), nullptr);
}

TEST_F(Skin, TakesEveryKindOfBitmap) {
    const auto skin = Make("Kinds");
    const std::vector<std::uint32_t> palette = {0x102030, 0x405060};
    skin.Put("button1.bmp", test::BmpIndexed(2, 2, 1, palette, [](int, int) { return 1; }));
    skin.Put("button2.bmp", test::BmpIndexed(2, 2, 4, palette, [](int, int) { return 1; }));
    skin.Put("button3.bmp", test::BmpIndexed(2, 2, 8, palette, [](int, int) { return 1; }));
    skin.Put("button4.bmp", test::Bmp24(2, 2, 0x405060));
    skin.Put("xbutton1.bmp", test::Bmp32(2, 2, 0xFF405060));
    skin.Put("xbutton2.bmp", test::BmpRle(2, 2, 8, palette, std::string("\2\1\0\0\2\1\0\1", 8)));
    Choose("Kinds");
    player_.Start();
    for (const Box box : {&Form4::Picture2, &Form4::Picture3, &Form4::Picture4, &Form4::Picture6,
                          &Form4::Picture7, &Form4::Picture8}) {
        ASSERT_NE((remote_.*box).ShownPicture(), nullptr);
        EXPECT_EQ((remote_.*box).ShownPicture()->At(1, 1), 0xFF405060U);
    }
}

}  // namespace
}  // namespace nqp::remote
