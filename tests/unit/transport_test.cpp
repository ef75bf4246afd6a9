#include "remote/transport.h"

#include <gtest/gtest.h>

#include "fake_remote.h"
#include "scripted_engine.h"

namespace nqp::remote {
namespace {

using Calls = std::vector<std::string>;

class WatchedRemote final : public test::FakeRemote {
public:
    explicit WatchedRemote(test::ScriptedEngine& engine) : engine_(engine) {}
    void ShowRemoteOnTop() override { engine_.calls.emplace_back("remote on top"); }

private:
    test::ScriptedEngine& engine_;
};

class TransportTest : public testing::Test {
protected:
    void OpenClip() {
        engine_.Attach(nullptr, 1);
        engine_.Open("a.avi");
        engine_.ForgetCalls();
    }

    test::ScriptedEngine engine_;
    WatchedRemote remote_{engine_};
    Transport transport_{engine_, remote_};
};

TEST_F(TransportTest, PlayWithNothingLoadedOnlySetsTheFlags) {
    transport_.stopped = true;
    transport_.bPause = true;
    transport_.Play();
    EXPECT_TRUE(transport_.ready_to_play);
    EXPECT_FALSE(transport_.bPause);
    EXPECT_FALSE(transport_.stopped);
    EXPECT_FALSE(transport_.loading);
    EXPECT_EQ(engine_.calls, Calls{});
}

TEST_F(TransportTest, PlayShowsThePictureFirst) {
    OpenClip();
    transport_.Play();
    EXPECT_EQ(engine_.calls, (Calls{"Visible = true", "Play"}));
    EXPECT_TRUE(transport_.loading);
}

TEST_F(TransportTest, PlaySwitchesToFullScreenWhenThatIsSet) {
    OpenClip();
    remote_.settings.auto_fullscreen = true;
    transport_.Play();
    EXPECT_EQ(engine_.calls, (Calls{"Visible = true", "DisplaySize = 3", "Play"}));
}

TEST_F(TransportTest, TheRemoteStaysAboveTheFullScreenWhenThatIsSet) {
    OpenClip();
    remote_.settings.auto_fullscreen = true;
    remote_.settings.control_at_fullscreen = true;
    transport_.Play();
    EXPECT_EQ(engine_.calls, (Calls{"Visible = true", "DisplaySize = 3", "remote on top", "Play"}));
}

TEST_F(TransportTest, PauseTogglesBetweenPausedAndPlaying) {
    OpenClip();
    transport_.Play();
    engine_.ForgetCalls();
    transport_.TogglePause();
    EXPECT_EQ(engine_.calls, Calls{"Pause"});
    EXPECT_TRUE(transport_.bPause);
    EXPECT_FALSE(transport_.ready_to_play);
    engine_.ForgetCalls();
    transport_.loading = false;
    transport_.TogglePause();
    EXPECT_EQ(engine_.calls, (Calls{"Visible = true", "Play"}));
    EXPECT_FALSE(transport_.bPause);
    EXPECT_TRUE(transport_.ready_to_play);
    EXPECT_TRUE(transport_.loading);
}

TEST_F(TransportTest, PauseWithNothingLoadedDoesNothing) {
    transport_.ready_to_play = true;
    transport_.TogglePause();
    EXPECT_TRUE(transport_.ready_to_play);
    EXPECT_EQ(engine_.calls, Calls{});
}

TEST_F(TransportTest, ResetClearsEveryFlag) {
    transport_.ready_to_play = transport_.bPause = transport_.stopped = transport_.loading = true;
    transport_.Reset();
    EXPECT_FALSE(transport_.ready_to_play || transport_.bPause || transport_.stopped ||
                 transport_.loading);
}

TEST_F(TransportTest, StopPausesHidesAndGoesBackToTheBeginning) {
    OpenClip();
    transport_.Play();
    engine_.position = 40;
    engine_.ForgetCalls();
    EXPECT_TRUE(transport_.Stop());
    EXPECT_EQ(engine_.calls, (Calls{"Pause", "Visible = false", "CurrentPosition = 0"}));
    EXPECT_TRUE(transport_.stopped);
    EXPECT_FALSE(transport_.ready_to_play);
    EXPECT_FALSE(transport_.bPause);
}

TEST_F(TransportTest, StopWhilePausedDoesNothing) {
    OpenClip();
    transport_.Play();
    transport_.TogglePause();
    engine_.ForgetCalls();
    EXPECT_FALSE(transport_.Stop());
    EXPECT_EQ(engine_.calls, Calls{});
    EXPECT_FALSE(transport_.stopped);
}

TEST_F(TransportTest, StopWithNothingLoadedDoesNothing) {
    transport_.Play();
    EXPECT_FALSE(transport_.Stop());
    EXPECT_EQ(engine_.calls, Calls{});
    EXPECT_TRUE(transport_.ready_to_play);
}

TEST_F(TransportTest, StopTwiceDoesNothingTheSecondTime) {
    OpenClip();
    transport_.Play();
    EXPECT_TRUE(transport_.Stop());
    EXPECT_FALSE(transport_.Stop());
}

TEST_F(TransportTest, PauseAfterStopDoesNothing) {
    OpenClip();
    transport_.Play();
    transport_.Stop();
    engine_.ForgetCalls();
    transport_.TogglePause();
    EXPECT_EQ(engine_.calls, Calls{});
}

TEST_F(TransportTest, PlayAfterStopStartsAtTheBeginning) {
    OpenClip();
    transport_.Play();
    engine_.position = 40;
    transport_.Stop();
    transport_.Play();
    EXPECT_EQ(engine_.State(), core::PlayState::Playing);
    EXPECT_EQ(engine_.position, 0);
    EXPECT_TRUE(engine_.Visible());
    EXPECT_FALSE(transport_.stopped);
}

}  // namespace
}  // namespace nqp::remote
