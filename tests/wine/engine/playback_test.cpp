#include <gtest/gtest.h>

#include <cmath>

#include "engine_window.h"

namespace nqp::test {
namespace {

constexpr double kOneFrame = 0.04;  // seconds, at 25 frames per second

double SecondsUntil(const std::function<bool()>& condition) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(PumpUntil(condition, 20s));
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

class EveryFormat : public testing::TestWithParam<const char*> {};

TEST_P(EveryFormat, PlaysToItsEndAndStopsThereOnce) {
    EngineWindow window;
    window.engine().Open(Clip(GetParam()));
    ASSERT_NE(window.engine().Readiness(), 0);
    EXPECT_EQ(window.engine().State(), PlayState::Stopped);
    EXPECT_EQ(window.engine().CurrentPosition(), 0.0);
    const double duration = window.engine().Duration();
    EXPECT_GT(duration, 0.5);
    window.engine().SetVisible(true);
    window.engine().Play();
    double highest = 0;
    ASSERT_TRUE(PumpUntil([&] {
        highest = std::max(highest, window.engine().CurrentPosition());
        return window.CountOf(kClipEnded) > 0;
    }));
    PumpFor(300ms);
    EXPECT_EQ(window.CountOf(kClipEnded), 1);
    EXPECT_EQ(window.raised.size(), 2U);
    EXPECT_EQ(window.raised.back().position, window.raised.back().duration);
    EXPECT_EQ(window.engine().CurrentPosition(), window.engine().Duration());
    EXPECT_EQ(window.engine().Duration(), duration);
    EXPECT_LE(highest, duration);
}

TEST_P(EveryFormat, EndsOnceAfterASeek) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip(GetParam()));
    const double target = window.engine().Duration() * 0.6;
    window.engine().SetCurrentPosition(target);
    EXPECT_NEAR(window.engine().CurrentPosition(), target, 0.25);
    ASSERT_TRUE(window.WaitForEnd());
    PumpFor(300ms);
    EXPECT_EQ(window.CountOf(kClipEnded), 1);
    EXPECT_EQ(window.engine().CurrentPosition(), window.engine().Duration());
}

TEST_P(EveryFormat, EndsOnceAtDoubleAndAtFourfoldRate) {
    for (const double rate : {2.0, 4.0}) {
        EngineWindow window;
        window.engine().SetRate(rate);
        window.engine().SetAutoStart(true);
        window.engine().Open(Clip(GetParam()));
        ASSERT_TRUE(window.WaitForEnd());
        PumpFor(200ms);
        EXPECT_EQ(window.CountOf(kClipEnded), 1);
        EXPECT_EQ(window.engine().CurrentPosition(), window.engine().Duration());
    }
}

TEST_P(EveryFormat, PlaysAgainFromTheBeginningAfterItsEnd) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip(GetParam()));
    window.engine().SetCurrentPosition(window.engine().Duration() - 0.3);
    ASSERT_TRUE(window.WaitForEnd());
    window.engine().Play();
    EXPECT_EQ(window.engine().State(), PlayState::Playing);
    EXPECT_LT(window.engine().CurrentPosition(), 0.3);
    ASSERT_TRUE(PumpUntil([&] { return window.CountOf(kClipEnded) == 2; }));
    EXPECT_EQ(window.engine().CurrentPosition(), window.engine().Duration());
}

std::string NameOfClip(const testing::TestParamInfo<const char*>& info) {
    std::string name = info.param;
    for (char& letter : name) {
        if (std::isalnum(static_cast<unsigned char>(letter)) == 0) letter = '_';
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(Clips, EveryFormat,
                         testing::Values("mpeg4-mp3.avi", "mjpeg-pcm.avi", "raw-pcm.avi",
                                         "mpeg1.mpg", "mpeg2.mpg", "wmv2.wmv", "h264-aac.mp4",
                                         "tone.mp3", "tone.wav", "tone.au", "tone-mulaw.au",
                                         "silent.avi", "odd-size.avi", "full-hd.mp4",
                                         "variable-rate.mp4", "wide-pixels.mpg", "short-sound.avi",
                                         "short-picture.avi", "truncated.avi"),
                         NameOfClip);

TEST(Rate, TwoHalvesTheTime) {
    EngineWindow window;
    window.engine().Open(Clip("timecode.avi"));
    window.engine().SetVisible(true);
    window.engine().SetRate(2.0);
    window.engine().Play();
    const double taken = SecondsUntil([&] { return window.CountOf(kClipEnded) > 0; });
    RecordProperty("seconds", std::to_string(taken));
    EXPECT_NEAR(taken, 5.0, 0.5);
}

TEST(Rate, AQuarterTakesFourTimesAsLong) {
    EngineWindow window;
    window.engine().SetRate(0.25);
    window.engine().Open(Clip("full-hd.mp4"));
    window.engine().Play();
    const double taken = SecondsUntil([&] { return window.CountOf(kClipEnded) > 0; });
    EXPECT_NEAR(taken, 4.0, 1.0);
}

TEST(Rate, ChangesWhileTheClipPlaysAndKeepsThePosition) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("timecode.avi"));
    PumpUntil([&] { return window.engine().CurrentPosition() > 1.0; });
    const double before = window.engine().CurrentPosition();
    window.engine().SetRate(4.0);
    EXPECT_EQ(window.engine().State(), PlayState::Playing);
    EXPECT_NEAR(window.engine().CurrentPosition(), before, 0.3);
    EXPECT_NEAR(SecondsUntil([&] { return window.engine().CurrentPosition() > before + 4.0; }), 1.0,
                0.2);
    window.engine().SetRate(1.0);
    const double normal = window.engine().CurrentPosition();
    EXPECT_NEAR(SecondsUntil([&] { return window.engine().CurrentPosition() > normal + 1.0; }), 1.0,
                0.2);
}

TEST(Rate, IsClampedAndKeptForLaterClips) {
    EngineWindow window;
    window.engine().SetRate(17.0);
    EXPECT_EQ(window.engine().Rate(), core::kFastestRate);
    window.engine().SetRate(0.001);
    EXPECT_EQ(window.engine().Rate(), core::kSlowestRate);
    window.engine().SetRate(std::nan(""));
    EXPECT_EQ(window.engine().Rate(), core::kSlowestRate);
    window.engine().SetRate(2.0);
    window.engine().Open(Clip("mjpeg-pcm.avi"));
    window.engine().Open(Clip("silent.avi"));
    EXPECT_EQ(window.engine().Rate(), 2.0);
    window.engine().Play();
    EXPECT_NEAR(SecondsUntil([&] { return window.CountOf(kClipEnded) > 0; }), 1.0, 0.25);
}

TEST(Pause, KeepsThePosition) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("timecode.avi"));
    PumpUntil([&] { return window.engine().CurrentPosition() > 0.5; });
    window.engine().Pause();
    EXPECT_EQ(window.engine().State(), PlayState::Paused);
    const double position = window.engine().CurrentPosition();
    PumpFor(500ms);
    EXPECT_EQ(window.engine().CurrentPosition(), position);
    window.engine().Play();
    EXPECT_NEAR(window.engine().CurrentPosition(), position, kOneFrame * 3);
    EXPECT_EQ(window.raised.size(), 3U);
}

TEST(Pause, DoesNothingUnlessPlaying) {
    EngineWindow window;
    window.engine().Pause();
    window.engine().Open(Clip("silent.avi"));
    window.engine().Pause();
    EXPECT_EQ(window.engine().State(), PlayState::Stopped);
    EXPECT_TRUE(window.raised.empty());
}

TEST(Pause, OneMomentBeforeTheEndIsNoEndOfTheClip) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("mjpeg-pcm.avi"));
    PumpUntil([&] { return window.engine().CurrentPosition() > 1.8; });
    window.engine().Pause();
    window.engine().SetCurrentPosition(0);
    PumpFor(300ms);
    EXPECT_EQ(window.CountOf(kClipEnded), 0);
    EXPECT_EQ(window.engine().State(), PlayState::Paused);
    EXPECT_EQ(window.engine().CurrentPosition(), 0.0);
}

TEST(Seek, IsClampedToTheClip) {
    EngineWindow window;
    window.engine().Open(Clip("timecode.avi"));
    window.engine().SetCurrentPosition(-3);
    EXPECT_EQ(window.engine().CurrentPosition(), 0.0);
    window.engine().SetCurrentPosition(99);
    EXPECT_EQ(window.engine().CurrentPosition(), window.engine().Duration());
    EXPECT_TRUE(window.raised.empty());
}

TEST(Seek, ToTheEndWhilePlayingEndsTheClipOnce) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("timecode.avi"));
    window.engine().SetCurrentPosition(window.engine().Duration());
    ASSERT_TRUE(window.WaitForEnd());
    PumpFor(300ms);
    EXPECT_EQ(window.CountOf(kClipEnded), 1);
    EXPECT_EQ(window.engine().CurrentPosition(), window.engine().Duration());
}

TEST(Seek, BackAfterTheEndLeavesTheEndAndStaysStopped) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("mjpeg-pcm.avi"));
    ASSERT_TRUE(window.WaitForEnd());
    window.engine().SetCurrentPosition(1.0);
    EXPECT_EQ(window.engine().State(), PlayState::Stopped);
    EXPECT_EQ(window.engine().CurrentPosition(), 1.0);
    window.engine().Play();
    EXPECT_NEAR(window.engine().CurrentPosition(), 1.0, 0.2);
    ASSERT_TRUE(PumpUntil([&] { return window.CountOf(kClipEnded) == 2; }));
}

TEST(Volume, ReadsBackWhatWasSetWithAndWithoutAClip) {
    EngineWindow window;
    for (const int volume : {-10000, -9999, -2500, -1, 0}) {
        window.engine().SetVolume(volume);
        EXPECT_EQ(window.engine().Volume(), volume);
    }
    window.engine().SetVolume(-1234);
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("tone.wav"));
    EXPECT_EQ(window.engine().Volume(), -1234);
    window.engine().SetVolume(5);
    EXPECT_EQ(window.engine().Volume(), 0);
    window.engine().SetVolume(-20000);
    EXPECT_EQ(window.engine().Volume(), -10000);
}

}  // namespace
}  // namespace nqp::test
