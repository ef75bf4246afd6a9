#include "server/server_life.h"

#include <gtest/gtest.h>

namespace nqp::companion {
namespace {

using namespace std::chrono_literals;

class ServerLifeTest : public testing::Test {
protected:
    static constexpr ServerLife::Moment kBegin{1h};

    ServerLife life_{kBegin};
};

TEST_F(ServerLifeTest, WaitsSomeTimeForItsClient) {
    EXPECT_FALSE(life_.IsOver(kBegin + 19s));
    EXPECT_TRUE(life_.IsOver(kBegin + 20s));
}

TEST_F(ServerLifeTest, EndsOnceTheLastAnswerHasArrivedAfterTheRelease) {
    life_.Held(kBegin);
    life_.Held(kBegin);
    life_.Released(kBegin + 1min);
    EXPECT_FALSE(life_.IsOver(kBegin + 2min)) << "something is still held";
    life_.Released(kBegin + 3min);
    EXPECT_FALSE(life_.IsOver(kBegin + 3min + 99ms));
    EXPECT_TRUE(life_.IsOver(kBegin + 3min + 100ms));
}

TEST_F(ServerLifeTest, EndsWhenAClientThatHoldsItIsSilent) {
    life_.Held(kBegin);
    life_.Called(kBegin + 9min);
    EXPECT_FALSE(life_.IsOver(kBegin + 18min));
    EXPECT_TRUE(life_.IsOver(kBegin + 19min));
}

TEST_F(ServerLifeTest, StaysAsLongAsAJobIsUnderWay) {
    life_.Held(kBegin);
    life_.JobBegan();
    EXPECT_FALSE(life_.IsOver(kBegin + 24h));
    life_.Released(kBegin + 24h);
    EXPECT_FALSE(life_.IsOver(kBegin + 25h)) << "the client has gone, the job has not";
    life_.JobEnded(false, kBegin + 26h);
    EXPECT_TRUE(life_.IsOver(kBegin + 26h + 100ms));
}

TEST_F(ServerLifeTest, EndsSoonAfterAJobThatWasWaitedForThoughItIsHeld) {
    life_.Held(kBegin);
    life_.JobBegan();
    life_.JobEnded(false, kBegin + 1h);
    life_.Called(kBegin + 1h);
    EXPECT_FALSE(life_.IsOver(kBegin + 1h + 9s));
    EXPECT_TRUE(life_.IsOver(kBegin + 1h + 10s));
}

TEST_F(ServerLifeTest, EndsWithAJobBesideItsClientThoughItIsHeld) {
    life_.Held(kBegin);
    life_.JobBegan();
    life_.JobEnded(true, kBegin + 1h);
    EXPECT_FALSE(life_.IsOver(kBegin + 1h + 99ms)) << "the answer is on its way";
    EXPECT_TRUE(life_.IsOver(kBegin + 1h + 100ms));
}

}  // namespace
}  // namespace nqp::companion
