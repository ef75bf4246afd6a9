#include <gtest/gtest.h>

#include "forms/run_time_error.h"
#include "player.h"

namespace nqp::test {
namespace {

using Calls = std::vector<std::string>;
constexpr char kCommand[] = " C:\\My Player\\nqp.exe %L";

std::string last_error;

class FileTypes : public testing::Test {
protected:
    void SetUp() override {
        player_.Start();
        last_error.clear();
        forms::SetRunTimeErrorHandler(
            [](const std::string& sentence, forms::Origin) { last_error = sentence; });
        dialog_.Show();
    }
    void TearDown() override { forms::SetRunTimeErrorHandler(nullptr); }
    void Tick(std::initializer_list<int> rows) {
        for (const int row : rows)
            ClickOn(dialog_.Check1[row]);
    }

    Player player_;
    options::Form8& dialog_ = player_.form8;
    Calls& calls_ = player_.associations.calls;
};

TEST_F(FileTypes, AreNamedInTheirOrder) {
    Calls captions;
    for (int row = 0; row < options::Form8::kTypeCount; ++row)
        captions.push_back(TextOn(dialog_.Check1[row]));
    EXPECT_EQ(captions, (Calls{"ASF", "ASX", "AU", "AVI", "MP3", "WAV", "MPEG", "WMV"}));
    EXPECT_EQ(dialog_.State().caption, "File types");
}

TEST_F(FileTypes, WithNoBoxTickedAreLeftAlone) {
    ClickOn(dialog_.Command2);
    ClickOn(dialog_.Command1);
    EXPECT_EQ(calls_, Calls{});
}

TEST_F(FileTypes, AreRegisteredRowByRow) {
    Tick({5, 4});
    ClickOn(dialog_.Command2);
    EXPECT_EQ(calls_, (Calls{std::string("Register .mp3") + kCommand,
                             std::string("Register .wav") + kCommand}));
}

TEST_F(FileTypes, AreTakenBackRowByRow) {
    Tick({0, 1, 2, 3, 4, 5, 6, 7});
    Tick({2});
    ClickOn(dialog_.Command1);
    EXPECT_EQ(calls_,
              (Calls{"UnRegister .asf", "UnRegister .asx", "UnRegister .avi", "UnRegister .mp3",
                     "UnRegister .wav", "UnRegister .mpeg", "UnRegister .wmv"}));
}

TEST_F(FileTypes, AreWorkedOnByANewObjectEachTime) {
    const int before = player_.associations.created;
    ClickOn(dialog_.Command2);
    ClickOn(dialog_.Command2);
    ClickOn(dialog_.Command1);
    EXPECT_EQ(player_.associations.created, before + 3);
}

TEST_F(FileTypes, AfterOneThatIsRefusedAreLeftAlone) {
    player_.associations.refused = ".mp3";
    Tick({3, 4, 5});
    ClickOn(dialog_.Command2);
    EXPECT_EQ(calls_, Calls{std::string("Register .avi") + kCommand});
    EXPECT_EQ(last_error, ".mp3 is refused.");
    EXPECT_TRUE(OnScreen(dialog_));
}

TEST_F(FileTypes, StartWithoutATickEachTime) {
    Tick({0, 3});
    dialog_.Unload();
    dialog_.Show();
    ClickOn(dialog_.Command2);
    EXPECT_EQ(calls_, Calls{});
}

TEST_F(FileTypes, CloseWithEscape) {
    PressKey(dialog_, base::kKeyEscape);
    EXPECT_FALSE(dialog_.Loaded());
}

}  // namespace
}  // namespace nqp::test
