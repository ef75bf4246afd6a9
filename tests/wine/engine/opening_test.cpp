#include <gtest/gtest.h>

#include <filesystem>

#include "engine_window.h"

namespace nqp::test {
namespace {

void ExpectNothingLoaded(core::MediaEngine& engine) {
    EXPECT_EQ(engine.Readiness(), 0);
    EXPECT_EQ(engine.FileName(), "");
    EXPECT_EQ(engine.State(), PlayState::Stopped);
    EXPECT_EQ(engine.CurrentPosition(), core::kNothingLoaded);
    EXPECT_EQ(engine.Duration(), 0.0);
}

TEST(Opening, WaitsAtTheBeginningWithoutAutoStart) {
    EngineWindow window;
    window.engine().Open(Clip("timecode.avi"));
    EXPECT_NE(window.engine().Readiness(), 0);
    EXPECT_EQ(window.engine().FileName(), Clip("timecode.avi"));
    EXPECT_EQ(window.engine().Duration(), 10.0);
    EXPECT_FALSE(window.engine().Visible());
    PumpFor(300ms);
    EXPECT_EQ(window.engine().State(), PlayState::Stopped);
    EXPECT_EQ(window.engine().CurrentPosition(), 0.0);
    EXPECT_TRUE(window.raised.empty());
}

TEST(Opening, PlaysAndShowsThePictureWithAutoStart) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("timecode.avi"));
    EXPECT_TRUE(window.engine().Visible());
    EXPECT_TRUE(IsWindowVisible(window.View()));
    EXPECT_EQ(window.engine().State(), PlayState::Playing);
    EXPECT_TRUE(PumpUntil([&] { return window.engine().CurrentPosition() > 0.3; }));
}

TEST(Opening, ClosesAPlayingClipWithNothingLoadedAtThatTime) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("timecode.avi"));
    window.engine().Open(Clip("tone.wav"));
    ASSERT_EQ(window.raised.size(), 3U);
    EXPECT_EQ(window.raised[1].transition, kClipEnded);
    EXPECT_EQ(window.raised[1].position, core::kNothingLoaded);
    EXPECT_EQ(window.raised[1].duration, 0.0);
    EXPECT_EQ(window.engine().FileName(), Clip("tone.wav"));
}

TEST(Opening, AnotherClipFromInsideTheEndEventWorks) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    int opened = 1;
    window.onStateChange = [&](PlayState, PlayState) {
        auto& engine = window.engine();
        if (engine.State() != PlayState::Stopped) return;
        if (engine.CurrentPosition() != engine.Duration() || opened == 3) return;
        ++opened;
        engine.Open(Clip(opened == 2 ? "tone.mp3" : "silent.avi"));
    };
    window.engine().Open(Clip("mjpeg-pcm.avi"));
    ASSERT_TRUE(PumpUntil([&] { return window.CountOf(kClipEnded) == 3; }));
    EXPECT_EQ(window.engine().FileName(), Clip("silent.avi"));
}

TEST(Opening, FromInsideTheCloseOfAClipTheLatestCallWins) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.engine().Open(Clip("timecode.avi"));
    bool nested = false;
    window.onStateChange = [&](PlayState, PlayState to) {
        if (to != PlayState::Stopped || nested) return;
        nested = true;
        window.engine().Open(Clip("tone.wav"));
    };
    window.engine().Open(Clip("silent.avi"));
    EXPECT_EQ(window.engine().FileName(), Clip("tone.wav"));
    EXPECT_EQ(window.engine().State(), PlayState::Playing);
}

TEST(Opening, LoadsNothingBeforeAttachAndAfterDetach) {
    EngineWindow window;
    window.engine().Detach();
    window.engine().Open(Clip("silent.avi"));
    ExpectNothingLoaded(window.engine());
    window.engine().Attach(window.Window(), kControlId);
    window.engine().Open(Clip("silent.avi"));
    EXPECT_NE(window.engine().Readiness(), 0);
}

TEST(Opening, DetachInsideTheEndEventIsSafe) {
    EngineWindow window;
    window.engine().SetAutoStart(true);
    window.onStateChange = [&](PlayState, PlayState to) {
        if (to == PlayState::Stopped) window.engine().Detach();
    };
    window.engine().Open(Clip("silent.avi"));
    EXPECT_TRUE(window.WaitForEnd());
    ExpectNothingLoaded(window.engine());
}

class NoClip : public testing::TestWithParam<const char*> {};

TEST_P(NoClip, LoadsNothingAndTheNextOneWorks) {
    EngineWindow window;
    window.engine().Open(Clip(GetParam()));
    ExpectNothingLoaded(window.engine());
    window.engine().Play();
    window.engine().Pause();
    window.engine().SetCurrentPosition(1);
    ExpectNothingLoaded(window.engine());
    EXPECT_EQ(GetLastActivePopup(window.Window()), window.Window());
    window.engine().Open(Clip("silent.avi"));
    EXPECT_NE(window.engine().Readiness(), 0);
}

INSTANTIATE_TEST_SUITE_P(Files, NoClip,
                         testing::Values("missing.avi", "folder.avi", "text.avi", "empty.avi", "",
                                         "bad\x01name?.avi"));

class PathOfClip : public testing::Test {
protected:
    void SetUp() override {
        folder_ = std::filesystem::temp_directory_path() / L"nqp-engine-test";
        std::filesystem::create_directories(folder_);
    }
    void TearDown() override {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    static void ExpectOpens(const std::wstring& path) {
        const std::u8string utf8 = std::filesystem::path(path).u8string();
        const std::string text(utf8.begin(), utf8.end());
        EngineWindow window;
        window.engine().Open(text);
        EXPECT_NE(window.engine().Readiness(), 0);
        EXPECT_EQ(window.engine().FileName(), text);
        window.engine().Play();
        EXPECT_TRUE(window.WaitForEnd());
    }

    std::filesystem::path folder_;
};

TEST_F(PathOfClip, MayHoldBlanksAndForeignLetters) {
    const auto path = folder_ / L"a clip \u4e2d\u6587 \u043a\u043b\u0438\u043f.avi";
    std::filesystem::copy_file(Clip("silent.avi"), path);
    ExpectOpens(path.wstring());
}

TEST_F(PathOfClip, MayBeLongerThanTheClassicLimit) {
    std::wstring folder = L"\\\\?\\" + folder_.wstring();
    for (int level = 0; level < 4; ++level) {
        folder += L"\\" + std::wstring(80, static_cast<wchar_t>(L'a' + level));
        ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr)) << GetLastError();
    }
    const std::wstring path = folder + L"\\clip.avi";
    const std::wstring source = std::filesystem::path(Clip("silent.avi")).wstring();
    ASSERT_TRUE(CopyFileW(source.c_str(), path.c_str(), FALSE)) << GetLastError();
    ASSERT_GT(path.size(), static_cast<std::size_t>(MAX_PATH));
    ExpectOpens(path.substr(4));
    DeleteFileW(path.c_str());
    while (folder.size() > folder_.wstring().size() + 4) {
        RemoveDirectoryW(folder.c_str());
        folder.resize(folder.rfind(L'\\'));
    }
}

}  // namespace
}  // namespace nqp::test
