#include "fragments/job_watch.h"

#include <gtest/gtest.h>

#include "core/program_folder.h"
#include "temp_folder.h"

namespace nqp::fragments {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::seconds;
using Verdict = JobWatch::Verdict;

class JobWatchTest : public testing::Test {
protected:
    void Cancel() const { folder_.Put(core::kFlagFileName, ""); }

    test::TempFolder folder_;
    Moment begin_ = Moment() + hours(1);
};

TEST_F(JobWatchTest, JobThatNobodyCancelsMayTakeHours) {
    JobWatch watch(folder_.Path(), JobKind::Video, begin_);
    EXPECT_EQ(watch.Look(begin_), Verdict::Wait);
    EXPECT_EQ(watch.Look(begin_ + hours(30)), Verdict::Wait);
    EXPECT_FALSE(watch.Cancelled());
}

TEST_F(JobWatchTest, CancelledCompanionHasSomeTimeAndIsEndedThen) {
    JobWatch watch(folder_.Path(), JobKind::Video, begin_);
    const Moment cancelled = begin_ + seconds(60);
    EXPECT_EQ(watch.Look(cancelled - seconds(1)), Verdict::Wait);
    Cancel();
    EXPECT_EQ(watch.Look(cancelled), Verdict::Wait);
    EXPECT_TRUE(watch.Cancelled());
    EXPECT_EQ(watch.Look(cancelled + kCancelPatience - milliseconds(1)), Verdict::Wait);
    EXPECT_EQ(watch.Look(cancelled + kCancelPatience), Verdict::EndProcess);
    EXPECT_FALSE(watch.TookTooLong());
}

TEST_F(JobWatchTest, IsGivenUpWhenTheEndedProcessIsNotNoticed) {
    JobWatch watch(folder_.Path(), JobKind::Audio, begin_);
    Cancel();
    watch.Look(begin_);
    const Moment ended = begin_ + kCancelPatience;
    EXPECT_EQ(watch.Look(ended), Verdict::EndProcess);
    EXPECT_EQ(watch.Look(ended + kEndPatience - milliseconds(1)), Verdict::Wait);
    EXPECT_EQ(watch.Look(ended + kEndPatience), Verdict::GiveUp);
}

TEST_F(JobWatchTest, StillIsEndedByItselfBecauseNobodyCanCancelIt) {
    JobWatch watch(folder_.Path(), JobKind::Image, begin_);
    EXPECT_EQ(watch.Look(begin_ + kImagePatience - milliseconds(1)), Verdict::Wait);
    EXPECT_FALSE(watch.TookTooLong());
    EXPECT_EQ(watch.Look(begin_ + kImagePatience), Verdict::EndProcess);
    EXPECT_TRUE(watch.TookTooLong());
}

TEST_F(JobWatchTest, CancelAtTheLastMomentCounts) {
    JobWatch watch(folder_.Path(), JobKind::Audio, begin_);
    watch.Look(begin_);
    Cancel();
    EXPECT_TRUE(watch.Cancelled());
}

}  // namespace
}  // namespace nqp::fragments
