#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "cutter/cut.h"

namespace nqp::companion {
namespace {

CutJob GoodJob() {
    CutJob job;
    job.source = "clip.avi";
    job.output = "fragment.avi";
    job.begin = 2;
    job.end = 5;
    return job;
}

std::string Complaint(const std::function<void(CutJob&)>& change) {
    CutJob job = GoodJob();
    change(job);
    try {
        CheckValues(job);
    } catch (const CutError& error) {
        return error.what();
    }
    return {};
}

TEST(CutValues, GoodOnesPass) {
    EXPECT_NO_THROW(CheckValues(GoodJob()));
}

TEST(CutValues, ARangeThatIsNoneIsTold) {
    EXPECT_EQ(Complaint([](CutJob& job) { job.end = job.begin; }),
              "The fragment is empty: it begins and ends at 0:00:02.");
    EXPECT_EQ(Complaint([](CutJob& job) { job.end = 1.5; }),
              "The fragment ends before it begins: it begins at 0:00:02 and ends at 0:00:01.5.");
    EXPECT_NE(Complaint([](CutJob& job) { job.begin = -1; }), "");
    EXPECT_NE(Complaint([](CutJob& job) { job.end = std::numeric_limits<double>::infinity(); }),
              "");
    EXPECT_NE(Complaint([](CutJob& job) { job.begin = std::numeric_limits<double>::quiet_NaN(); }),
              "");
}

TEST(CutValues, AStillHasNoEnd) {
    EXPECT_EQ(Complaint([](CutJob& job) {
                  job.mode = core::JobMode::Image;
                  job.end = 0;
              }),
              "");
}

TEST(CutValues, AShareOutsideOfItsRangeIsTold) {
    for (const int percentage : {-1, 0, 101, 1'000'000}) {
        EXPECT_EQ(Complaint([&](CutJob& job) { job.percentage = percentage; }),
                  "The share of the frames must lie between 1 and 100 percent, not " +
                      std::to_string(percentage) + ".");
    }
}

TEST(CutValues, MissingNamesAreTold) {
    EXPECT_NE(Complaint([](CutJob& job) { job.source.clear(); }), "");
    EXPECT_NE(Complaint([](CutJob& job) { job.output.clear(); }), "");
}

TEST(CutValues, APictureNeedsANameAndAPlace) {
    const auto with = [](core::PicturePlacement picture) {
        return Complaint([&](CutJob& job) {
            job.mode = core::JobMode::VideoWithPicture;
            job.picture = picture;
        });
    };
    EXPECT_EQ(with({.x = 0, .y = 1000, .path = "p.bmp"}), "");
    EXPECT_NE(with({.x = 0, .y = 0, .path = ""}), "");
    EXPECT_NE(with({.x = 1001, .y = 0, .path = "p.bmp"}), "");
    EXPECT_NE(with({.x = 0, .y = -1, .path = "p.bmp"}), "");
}

TEST(ClockTextOf, ShowsNoMoreThanIsThere) {
    EXPECT_EQ(ClockText(0), "0:00:00");
    EXPECT_EQ(ClockText(10), "0:00:10");
    EXPECT_EQ(ClockText(62.5), "0:01:02.5");
    EXPECT_EQ(ClockText(3600.0625), "1:00:00.063");
}

}  // namespace
}  // namespace nqp::companion
