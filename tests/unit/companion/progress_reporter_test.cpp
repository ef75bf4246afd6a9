#include "server/progress_reporter.h"

#include <gtest/gtest.h>

#include <optional>

#include "fake_wizard.h"
#include "temp_folder.h"

namespace nqp::companion {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Texts = std::vector<std::string>;

class ProgressReporterTest : public testing::Test {
protected:
    // Quick, so that tests are.
    static constexpr ReportingRules kRules{.between = 5ms, .lastReport = 300ms, .target = 200ms};

    void Begin() { reporter_.emplace(wizard_.Finder(), StatusFile(), signals_, kRules); }
    std::filesystem::path StatusFile() const { return folder_.Path() / "status.txt"; }

    test::TempFolder folder_;
    FakeWizard wizard_;
    std::shared_ptr<JobSignals> signals_ =
        std::make_shared<JobSignals>(folder_.Path() / "flag.txt");
    std::optional<ProgressReporter> reporter_;
};

TEST_F(ProgressReporterTest, TellsTheWizardAgainAndAgain) {
    signals_->Progress(37);
    Begin();
    ASSERT_TRUE(wizard_.WaitForTexts(3));
    EXPECT_EQ(wizard_.Texts()[2], "37 % copied");
    EXPECT_EQ(folder_.Content("status.txt"), "37 % copied");
}

TEST_F(ProgressReporterTest, EndsADoneJobWithAHundredPercent) {
    Begin();
    ASSERT_TRUE(wizard_.WaitForTexts(1));
    signals_->Progress(99);
    reporter_->Finish();
    EXPECT_EQ(wizard_.Texts().back(), "100 % copied");
    EXPECT_EQ(folder_.Content("status.txt"), "100 % copied");
    const std::size_t told = wizard_.Texts().size();
    reporter_.reset();
    EXPECT_EQ(wizard_.Texts().size(), told);
}

TEST_F(ProgressReporterTest, ThatIsNotFinishedClaimsNothing) {
    signals_->Progress(12);
    Begin();
    ASSERT_TRUE(wizard_.WaitForTexts(1));
    reporter_.reset();
    EXPECT_EQ(wizard_.Texts().back(), "12 % copied");
    EXPECT_EQ(folder_.Content("status.txt"), "12 % copied");
}

TEST_F(ProgressReporterTest, WritesTheStatusFileWithoutAWizard) {
    wizard_.there = false;
    Begin();
    reporter_->Finish();
    EXPECT_EQ(folder_.Content("status.txt"), "100 % copied");
    EXPECT_EQ(wizard_.Searches(), 1);
}

TEST_F(ProgressReporterTest, DoesNotLookForAWizardThatHasGone) {
    wizard_.goesAfter = 2;
    Begin();
    ASSERT_TRUE(wizard_.WaitForTexts(2));
    signals_->Progress(50);
    reporter_->Finish();
    EXPECT_EQ(wizard_.Texts().size(), 2U);
    EXPECT_EQ(wizard_.Searches(), 1);
    EXPECT_EQ(folder_.Content("status.txt"), "100 % copied");
}

TEST_F(ProgressReporterTest, HoldsUpNobodyWhenTheWizardHangs) {
    Begin();
    ASSERT_TRUE(wizard_.WaitForTexts(1));
    wizard_.Hang();
    const auto begin = Clock::now();
    reporter_->Finish();
    reporter_.reset();
    EXPECT_LT(Clock::now() - begin, 2s);
    wizard_.GoOn();
}

TEST_F(ProgressReporterTest, AsksForTheTarget) {
    wizard_.target = std::string("C:\\a.mp3\0\0", 10);
    Begin();
    EXPECT_EQ(reporter_->TargetPath(), wizard_.target);
}

TEST_F(ProgressReporterTest, HasNoTargetWithoutAWizard) {
    wizard_.there = false;
    Begin();
    EXPECT_EQ(reporter_->TargetPath(), std::nullopt);
}

TEST_F(ProgressReporterTest, DoesNotWaitForATargetForEver) {
    wizard_.Hang();
    Begin();
    EXPECT_EQ(reporter_->TargetPath(), std::nullopt);
    reporter_.reset();
    wizard_.GoOn();
}

TEST_F(ProgressReporterTest, StopsWaitingForTheTargetWhenTheJobIsCancelled) {
    wizard_.Hang();
    auto rules = kRules;
    rules.target = 1h;
    reporter_.emplace(wizard_.Finder(), StatusFile(), signals_, rules);
    folder_.Put("flag.txt", "");
    EXPECT_EQ(reporter_->TargetPath(), std::nullopt);
    reporter_.reset();
    wizard_.GoOn();
}

}  // namespace
}  // namespace nqp::companion
