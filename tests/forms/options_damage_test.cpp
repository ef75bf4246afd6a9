#include <gtest/gtest.h>

#include "player.h"

// Not run on a screen, where every opening of a dialog takes its time.
namespace nqp::test {
namespace {

// Each record in turn: empty, no number, too large, no text at all, as long as a record.
TEST(DamagedOptions, OpenAndAreAccepted) {
    const std::vector<std::string> damages = {
        "", "x", "99", "99999999999", std::string("\0\xFF\x80", 3), std::string(998, '9')};
    for (int record = 1; record <= core::kSettingsRecordCount; ++record) {
        for (const std::string& damage : damages) {
            Player damaged;
            for (int other = 1; other <= core::kSettingsRecordCount; ++other)
                damaged.PutSetting(other, "1");
            damaged.PutSetting(record, damage);
            for (const int kept : {22, 23, 24, 25, 26, 28, 29}) {
                if (kept != record) damaged.PutSetting(kept, std::to_string(15 * kept));
            }
            damaged.Start();
            damaged.ChangeOptions();
            EXPECT_FALSE(damaged.form2.Loaded()) << record << ": " << damage;
            EXPECT_TRUE(OnScreen(damaged.form4)) << record << ": " << damage;
            for (int other = 1; other <= core::kSettingsRecordCount; ++other) {
                if (other == record || other == core::kSkinName) continue;
                const bool ofWindows = (other >= 22 && other <= 26) || other >= 28;
                EXPECT_EQ(damaged.Setting(other), ofWindows ? std::to_string(15 * other) : "1")
                    << "record " << other << " beside " << record << ": " << damage;
            }
        }
    }
}

}  // namespace
}  // namespace nqp::test
