#include "dialog/format_choice.h"

#include <gtest/gtest.h>

#include "base/record_file.h"
#include "temp_folder.h"

namespace nqp::companion {
namespace {

constexpr FormatChoice kNeverChosen{VideoFormat::PlaysEverywhere, true};

class FormatChoiceTest : public testing::Test {
protected:
    FormatChoice Read() const { return ReadFormatChoice(folder_.Path()); }

    test::TempFolder folder_;
};

TEST_F(FormatChoiceTest, IsKept) {
    for (const VideoFormat format :
         {VideoFormat::PlaysEverywhere, VideoFormat::Smaller, VideoFormat::MotionJpeg,
          VideoFormat::Lossless, VideoFormat::Copy}) {
        for (const bool ask : {false, true}) {
            ASSERT_TRUE(WriteFormatChoice(folder_.Path(), {format, ask}));
            EXPECT_EQ(Read(), (FormatChoice{format, ask}));
        }
    }
}

TEST_F(FormatChoiceTest, IsMissingBeforeTheFirstTime) {
    EXPECT_EQ(Read(), kNeverChosen);
    EXPECT_FALSE(folder_.Has("framewright.cfg"));
}

TEST_F(FormatChoiceTest, DamagedCountsAsNeverChosen) {
    folder_.Put("framewright.cfg", std::string(150, '\xff'));
    EXPECT_EQ(Read(), kNeverChosen);
    base::RecordFile file(folder_.Path() / "framewright.cfg", 100);
    ASSERT_TRUE(file.Write(1, "betamax") && file.Write(2, "1") && file.Commit());
    EXPECT_EQ(Read(), kNeverChosen) << "nobody chose that without being asked";
}

TEST_F(FormatChoiceTest, CannotBeKeptWithoutAFolder) {
    EXPECT_FALSE(WriteFormatChoice(folder_.Path() / "gone", kNeverChosen));
    EXPECT_EQ(ReadFormatChoice(folder_.Path() / "gone"), kNeverChosen);
}

}  // namespace
}  // namespace nqp::companion
