#include <gtest/gtest.h>

#include <cstdlib>

#include "engine_window.h"
#include "platform/engine/media_foundation/player.h"
#include "platform/engine/playback_graph.h"

namespace nqp::test {
namespace {

std::unique_ptr<core::MediaEngine> MediaFoundationAlone() {
    return platform::CreateMediaEngine({platform::media_foundation::OpenPlayer});
}

// These tests need Direct3D, which not every machine that runs the others has; and a media stack
// that was refused it may bring the process down at its end. So they run when they are asked for.
class MediaFoundation : public testing::Test {
protected:
    void SetUp() override {
        if (std::getenv("NQP_TEST_MEDIA_FOUNDATION") == nullptr) {
            GTEST_SKIP() << "NQP_TEST_MEDIA_FOUNDATION is not set";
        }
    }
};

TEST_F(MediaFoundation, PlaysAClipToItsEndAndStopsThereOnce) {
    EngineWindow window(MediaFoundationAlone());
    window.engine().Open(Clip("h264-aac.mp4"));
    ASSERT_NE(window.engine().Readiness(), 0);
    EXPECT_EQ(window.engine().State(), PlayState::Stopped);
    EXPECT_EQ(window.engine().CurrentPosition(), 0.0);
    EXPECT_NEAR(window.engine().Duration(), 2.0, 0.1);
    window.engine().SetVisible(true);
    window.engine().SetVolume(-1000);
    window.engine().Play();
    EXPECT_TRUE(PumpUntil([&] { return window.engine().CurrentPosition() > 0.5; }, 5s));
    ASSERT_TRUE(window.WaitForEnd());
    PumpFor(300ms);
    EXPECT_EQ(window.CountOf(kClipEnded), 1);
    EXPECT_EQ(window.engine().CurrentPosition(), window.engine().Duration());
}

TEST_F(MediaFoundation, PausesAndKeepsThePosition) {
    EngineWindow window(MediaFoundationAlone());
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("timecode.mp4"));
    ASSERT_EQ(window.engine().State(), PlayState::Playing);
    EXPECT_TRUE(PumpUntil([&] { return window.engine().CurrentPosition() > 0.5; }, 5s));
    window.engine().Pause();
    EXPECT_EQ(window.engine().State(), PlayState::Paused);
    const double paused = window.engine().CurrentPosition();
    PumpFor(300ms);
    EXPECT_EQ(window.engine().CurrentPosition(), paused);
}

TEST_F(MediaFoundation, RefusesWhatIsNoClip) {
    EngineWindow window(MediaFoundationAlone());
    for (const char* name : {"text.avi", "empty.avi", "missing.avi", "folder.avi"}) {
        window.engine().Open(Clip(name));
        EXPECT_EQ(window.engine().Readiness(), 0) << name;
    }
    window.engine().Open(Clip("h264-aac.mp4"));
    EXPECT_NE(window.engine().Readiness(), 0);
}

TEST_F(MediaFoundation, TakesOverWhatTheFirstMediaStackRefuses) {
    int asked = 0;
    EngineWindow window(
        platform::CreateMediaEngine({[&](const std::wstring&, base::NativeWindow, unsigned) {
                                         ++asked;
                                         return std::unique_ptr<platform::PlaybackGraph>();
                                     },
                                     platform::media_foundation::OpenPlayer}));
    window.engine().Open(Clip("h264-aac.mp4"));
    EXPECT_EQ(asked, 1);
    EXPECT_NE(window.engine().Readiness(), 0);
}

TEST_F(MediaFoundation, GoesOnPlayingThroughFullScreen) {
    EngineWindow window(MediaFoundationAlone());
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("h264-aac.mp4"));
    window.engine().SetDisplaySize(core::kFullScreenDisplay);
    EXPECT_EQ(window.engine().DisplaySize(), core::kFullScreenDisplay);
    window.engine().SetDisplaySize(core::kWindowDisplay);
    EXPECT_EQ(window.engine().State(), PlayState::Playing);
}

}  // namespace
}  // namespace nqp::test
