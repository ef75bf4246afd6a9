#include "server/job_signals.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "temp_folder.h"

namespace nqp::companion {
namespace {

class JobSignalsTest : public testing::Test {
protected:
    // As a cutter asks: all the time.
    static bool IsCancelledSoon(JobSignals& signals) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (!signals.Cancelled() && std::chrono::steady_clock::now() < deadline)
            std::this_thread::yield();
        return signals.Cancelled();
    }

    test::TempFolder folder_;
    JobSignals signals_{folder_.Path() / "flag.txt"};
};

TEST_F(JobSignalsTest, CancelWhenTheFileAppears) {
    EXPECT_FALSE(signals_.Cancelled());
    folder_.Put("flag.txt", "");
    EXPECT_TRUE(IsCancelledSoon(signals_));
}

TEST_F(JobSignalsTest, StayCancelledWhenTheFileHasGone) {
    folder_.Put("flag.txt", "");
    ASSERT_TRUE(signals_.Cancelled());
    std::filesystem::remove(folder_.Path() / "flag.txt");
    EXPECT_TRUE(signals_.Cancelled());
}

TEST_F(JobSignalsTest, NeverCancelWithoutAFile) {
    JobSignals signals({});
    EXPECT_FALSE(signals.Cancelled());
}

TEST_F(JobSignalsTest, KeepHowFarTheJobIs) {
    EXPECT_EQ(signals_.Percent(), 0);
    signals_.Progress(42);
    EXPECT_EQ(signals_.Percent(), 42);
}

}  // namespace
}  // namespace nqp::companion
