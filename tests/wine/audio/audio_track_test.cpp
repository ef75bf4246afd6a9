#include "core/audio_track.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/file.h"
#include "dialog_answer.h"
#include "forms/win32/winapi/text.h"
#include "owner_process.h"
#include "platform/audio/audio_track_writer.h"
#include "temp_folder.h"
#include "wave_file.h"
#include "win32/handle_count.h"

namespace nqp::test {
namespace {

using core::AudioTrackResult;
using Progress = core::AudioTrackWriter::Progress;

constexpr char kTone[] = "tone 音!.avi";
constexpr char kToneAlone[] = "tone 音!.wav";
constexpr wchar_t kOwnFormat[] = L"44100 Hz; 16 bits; Stereo";

std::string Clip(const std::string& name) {
    const char* folder = std::getenv("NQP_TEST_CLIPS");
    return (folder != nullptr ? std::string(folder) : std::string("clips")) + "\\" + name;
}

class AudioTrackTest : public testing::Test {
protected:
    std::string InFolder(const std::string& name) const {
        return base::Utf8FromPath(folder_.Path() / base::PathFromUtf8(name));
    }

    AudioTrackResult Save(const std::string& source, const Progress& progress) {
        return writer_.Save({owner_, source, target_}, progress);
    }
    AudioTrackResult Save(const std::string& source) {
        return Save(source, [this](int percent) {
            percents_.push_back(percent);
            return false;
        });
    }
    AudioTrackResult SaveAs(const std::wstring& format, const std::wstring& attributes,
                            const std::string& source) {
        const DialogAnswer answer([&](HWND dialog) {
            ChooseFormat(dialog, format, attributes);
            Accept(dialog);
        });
        return Save(source);
    }
    Wave Saved() const { return ReadWave(target_); }
    bool TargetIsThere() const { return std::filesystem::exists(base::PathFromUtf8(target_)); }

    TempFolder folder_;
    platform::AviAudioTrackWriter writer_;
    std::string target_ = InFolder("sound 音!.wav");
    HWND owner_ = nullptr;
    std::vector<int> percents_;
};

TEST_F(AudioTrackTest, CopiesTheSoundAsItIsWhenItsFormatIsKept) {
    ASSERT_EQ(SaveAs(L"PCM", kOwnFormat, Clip(kTone)), AudioTrackResult::Saved);
    const Wave wave = Saved();
    const Wave expected = ReadWave(Clip(kToneAlone));
    ASSERT_EQ(expected.data.size(), 3U * 44100U * 4U);
    EXPECT_TRUE(wave.whole);
    EXPECT_EQ(wave.formatBytes, expected.formatBytes);
    EXPECT_TRUE(wave.data == expected.data);
    EXPECT_NEAR(wave.Frequency(), 1000.0, 1.0);
}

TEST_F(AudioTrackTest, ProgressGoesUpToItsEnd) {
    ASSERT_EQ(SaveAs(L"PCM", kOwnFormat, Clip(kTone)), AudioTrackResult::Saved);
    ASSERT_FALSE(percents_.empty());
    EXPECT_TRUE(std::is_sorted(percents_.begin(), percents_.end()));
    EXPECT_GE(percents_.front(), 0);
    EXPECT_EQ(percents_.back(), 100);
    EXPECT_GT(percents_.size(), 20U);
}

struct Choice {
    const wchar_t* attributes;
    DWORD rate;
    WORD channels;
    WORD bits;
};

std::string NameOfChoice(const testing::TestParamInfo<Choice>& choice) {
    const Choice& made = choice.param;
    return std::to_string(made.rate) + "_" + std::to_string(made.bits) + "_" +
           std::to_string(made.channels);
}

class EveryPcm : public AudioTrackTest, public testing::WithParamInterface<Choice> {};

TEST_P(EveryPcm, HasTheDurationAndTheToneOfTheClip) {
    const Choice& choice = GetParam();
    ASSERT_EQ(SaveAs(L"PCM", choice.attributes, Clip(kTone)), AudioTrackResult::Saved);
    const Wave wave = Saved();
    EXPECT_TRUE(wave.whole);
    EXPECT_FALSE(wave.hasFact);
    const WAVEFORMATEX format = Pcm(choice.rate, choice.channels, choice.bits);
    EXPECT_EQ(wave.formatBytes,
              std::string(reinterpret_cast<const char*>(&format), sizeof(PCMWAVEFORMAT)));
    EXPECT_NEAR(wave.Seconds(), 3.0, 0.001);
    EXPECT_NEAR(wave.Frequency(), 1000.0, 1.0);
}

INSTANTIATE_TEST_SUITE_P(Formats, EveryPcm,
                         testing::Values(Choice{L"8000 Hz; 8 bits; Mono", 8000, 1, 8},
                                         Choice{L"11025 Hz; 16 bits; Mono", 11025, 1, 16},
                                         Choice{L"22050 Hz; 8 bits; Mono", 22050, 1, 8},
                                         Choice{L"22050 Hz; 16 bits; Stereo", 22050, 2, 16},
                                         Choice{L"44100 Hz; 8 bits; Stereo", 44100, 2, 8},
                                         Choice{L"44100 Hz; 16 bits; Mono", 44100, 1, 16}),
                         NameOfChoice);

TEST_F(AudioTrackTest, CompressesWithACodecOfBlocks) {
    ASSERT_EQ(SaveAs(L"IMA ADPCM", L"44100 Hz; 4 bits; Stereo", Clip(kTone)),
              AudioTrackResult::Saved);
    const Wave wave = Saved();
    EXPECT_TRUE(wave.whole);
    EXPECT_EQ(wave.format.wFormatTag, WAVE_FORMAT_IMA_ADPCM);
    EXPECT_EQ(wave.formatBytes.size(), sizeof(WAVEFORMATEX) + wave.format.cbSize);
    EXPECT_TRUE(wave.hasFact);
    EXPECT_EQ(wave.factSamples, 3U * 44100U);
    EXPECT_EQ(wave.data.size() % wave.format.nBlockAlign, 0U);
    constexpr double kBlock = 2041.0 / 44100.0;  // seconds
    EXPECT_NEAR(wave.Seconds(), 3.0, kBlock);
}

TEST_F(AudioTrackTest, CompressesWithACodecOfSingleSamples) {
    ASSERT_EQ(SaveAs(L"A-Law", L"44100 Hz; 8 bits; Stereo", Clip(kTone)), AudioTrackResult::Saved);
    const Wave wave = Saved();
    EXPECT_TRUE(wave.whole);
    EXPECT_EQ(wave.format.wFormatTag, WAVE_FORMAT_ALAW);
    EXPECT_EQ(wave.factSamples, 3U * 44100U);
    EXPECT_EQ(wave.data.size(), 3U * 44100U * 2U);
}

TEST_F(AudioTrackTest, FailsWhereNoCodecMakesWhatWasChosen) {
    folder_.Put("old.wav", "old");
    for (const char* name : {"new.wav", "old.wav"}) {
        target_ = InFolder(name);
        EXPECT_EQ(SaveAs(L"Microsoft ADPCM", L"8000 Hz; 4 bits; Mono", Clip(kTone)),
                  AudioTrackResult::Failed);
    }
    EXPECT_FALSE(folder_.Has("new.wav"));
    EXPECT_EQ(folder_.Content("old.wav"), "old");
}

TEST_F(AudioTrackTest, IsNotConfirmedWhenTheDialogIsCancelled) {
    const DialogAnswer answer(Cancel);
    EXPECT_EQ(Save(Clip(kTone)), AudioTrackResult::NotConfirmed);
    EXPECT_EQ(answer.Dialogs(), 1);
    EXPECT_FALSE(TargetIsThere());
    EXPECT_TRUE(percents_.empty());
}

TEST_F(AudioTrackTest, CancelLeavesAnOldTargetAlone) {
    folder_.Put("old.wav", "old");
    target_ = InFolder("old.wav");
    const DialogAnswer answer(Cancel);
    EXPECT_EQ(Save(Clip(kTone)), AudioTrackResult::NotConfirmed);
    EXPECT_EQ(folder_.Content("old.wav"), "old");
}

TEST_F(AudioTrackTest, WritesOverAnOldTargetThatIsLonger) {
    folder_.Put("old.wav", std::string(2'000'000, 'o'));
    target_ = InFolder("old.wav");
    ASSERT_EQ(SaveAs(L"PCM", kOwnFormat, Clip(kTone)), AudioTrackResult::Saved);
    EXPECT_TRUE(Saved().whole);
    EXPECT_NEAR(Saved().Seconds(), 3.0, 0.001);
}

TEST_F(AudioTrackTest, FailsWithoutSoundThatCanBeRead) {
    const DialogAnswer answer(Cancel);
    folder_.Put("old.wav", "old");
    target_ = InFolder("old.wav");
    for (const char* name : {"silent.avi", "text.avi", "empty.avi", "missing.avi", "folder.avi",
                             "mpeg4-mp3.avi", "truncated.avi"}) {
        EXPECT_EQ(Save(Clip(name)), AudioTrackResult::Failed) << name;
    }
    EXPECT_EQ(Save(""), AudioTrackResult::Failed);
    EXPECT_EQ(answer.Dialogs(), 0);
    EXPECT_EQ(folder_.Content("old.wav"), "old");
    EXPECT_TRUE(percents_.empty());
}

TEST_F(AudioTrackTest, IsAbortedByTheProgress) {
    const DialogAnswer answer([](HWND dialog) {
        ChooseFormat(dialog, L"PCM", kOwnFormat);
        Accept(dialog);
    });
    std::vector<int> told;
    const auto result = Save(Clip(kTone), [&](int percent) {
        told.push_back(percent);
        return percent >= 30;
    });
    EXPECT_EQ(result, AudioTrackResult::Aborted);
    EXPECT_GE(told.back(), 30);
    EXPECT_LT(told.back(), 40);
    EXPECT_TRUE(Saved().whole) << "what is there can be played";
    EXPECT_NEAR(Saved().Seconds(), 0.9, 0.3);
}

TEST_F(AudioTrackTest, LeavesNoEmptyFileWhenItIsAbortedAtOnce) {
    const DialogAnswer answer(Accept);
    EXPECT_EQ(Save(Clip(kTone), [](int) { return true; }), AudioTrackResult::Aborted);
    EXPECT_FALSE(TargetIsThere());
}

TEST_F(AudioTrackTest, FailsWhereTheTargetCannotBeWritten) {
    const DialogAnswer answer(Accept);
    folder_.Put("held.wav", "held");
    const HANDLE held = CreateFileW(winapi::Utf16(InFolder("held.wav")).c_str(), GENERIC_READ,
                                    FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    for (const char* name : {"held.wav", "missing\\sound.wav", ".", "a?b.wav"}) {
        target_ = InFolder(name);
        EXPECT_EQ(Save(Clip(kTone)), AudioTrackResult::Failed) << name;
    }
    target_ = Clip(kTone);
    EXPECT_EQ(Save(Clip(kTone)), AudioTrackResult::Failed) << "the clip itself";
    CloseHandle(held);
    EXPECT_EQ(folder_.Content("held.wav"), "held");
    EXPECT_FALSE(folder_.Has("missing"));
}

TEST_F(AudioTrackTest, AnswersASaveInsideASaveWithoutHarm) {
    std::vector<AudioTrackResult> inner;
    const auto saveAgain = [&] {
        inner.push_back(
            writer_.Save({nullptr, Clip(kTone), InFolder("inner.wav")}, [](int) { return false; }));
    };
    const DialogAnswer answer([&](HWND dialog) {
        saveAgain();
        Accept(dialog);
    });
    const auto result = Save(Clip(kTone), [&](int percent) {
        if (percent == 0 || percent > 50) saveAgain();
        return false;
    });
    EXPECT_EQ(result, AudioTrackResult::Saved);
    EXPECT_GT(inner.size(), 3U);
    for (const AudioTrackResult one : inner)
        EXPECT_EQ(one, AudioTrackResult::Failed);
    EXPECT_FALSE(folder_.Has("inner.wav"));
    EXPECT_NEAR(Saved().Seconds(), 3.0, 0.001);
}

TEST_F(AudioTrackTest, ThrowsOnWhatTheProgressThrows) {
    const DialogAnswer answer(Accept);
    for (const int place : {0, 50}) {
        const auto save = [&] {
            return Save(Clip(kTone), [place](int percent) {
                if (percent >= place) throw std::runtime_error("stop");
                return false;
            });
        };
        EXPECT_THROW(save(), std::runtime_error) << place;
    }
    EXPECT_EQ(Save(Clip(kTone)), AudioTrackResult::Saved);
}

// ---- the dialog ----

TEST_F(AudioTrackTest, ShowsTheDialogAboveAWindowOfAnotherProcess) {
    const OwnerProcess process;
    owner_ = process.Window();
    ASSERT_NE(owner_, nullptr);
    const DialogAnswer answer([&](HWND dialog) {
        EXPECT_TRUE(GetWindowLongPtrW(dialog, GWL_EXSTYLE) & WS_EX_TOPMOST);
        EXPECT_TRUE(IsWindowEnabled(dialog));
        EXPECT_FALSE(IsWindowEnabled(owner_));
        HWND above = dialog;
        while (above != nullptr && above != owner_)
            above = GetWindow(above, GW_HWNDNEXT);
        EXPECT_EQ(above, owner_) << "the dialog is not above its owner";
        Accept(dialog);
    });
    EXPECT_EQ(Save(Clip(kTone)), AudioTrackResult::Saved);
    EXPECT_EQ(answer.Dialogs(), 1);
    EXPECT_TRUE(IsWindowEnabled(owner_));
}

TEST_F(AudioTrackTest, AsksOnceWhenTheDialogOfAnOwnerIsCancelled) {
    const OwnerProcess process;
    owner_ = process.Window();
    const DialogAnswer answer(Cancel);
    EXPECT_EQ(Save(Clip(kTone)), AudioTrackResult::NotConfirmed);
    EXPECT_EQ(answer.Dialogs(), 1);
    EXPECT_TRUE(IsWindowEnabled(owner_));
}

TEST_F(AudioTrackTest, ShowsTheDialogAboveAllWindowsWithoutAnOwner) {
    int topmost = 0;
    const DialogAnswer answer([&](HWND dialog) {
        if ((GetWindowLongPtrW(dialog, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0) ++topmost;
        Accept(dialog);
    });
    EXPECT_EQ(Save(Clip(kTone)), AudioTrackResult::Saved);
    owner_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr,
                             GetModuleHandleW(nullptr), nullptr);
    DestroyWindow(owner_);
    EXPECT_EQ(Save(Clip(kTone)), AudioTrackResult::Saved) << "with an owner that is gone";
    EXPECT_EQ(topmost, 2);
}

// ---- paths, lengths, numbers ----

TEST_F(AudioTrackTest, ReadsAndWritesPathsBeyondTheClassicLimit) {
    std::filesystem::path deep = folder_.Path();
    for (const char letter : {'a', 'b', 'c', 'd', 'e', 'f'})
        deep /= std::string(50, letter);
    const std::filesystem::path verbatim = L"\\\\?\\" + deep.wstring();
    std::filesystem::create_directories(verbatim);
    std::filesystem::copy_file(base::PathFromUtf8(Clip(kTone)), verbatim / "clip.avi");
    const DialogAnswer answer(Accept);
    EXPECT_EQ(Save(base::Utf8FromPath(deep / "clip.avi")), AudioTrackResult::Saved);
    target_ = base::Utf8FromPath(deep / "sound.wav");
    EXPECT_EQ(Save(Clip(kTone)), AudioTrackResult::Saved);
    EXPECT_TRUE(Saved().whole);
}

TEST_F(AudioTrackTest, KeepsAnOddNumberOfBytes) {
    ASSERT_EQ(SaveAs(L"PCM", L"8000 Hz; 8 bits; Mono", Clip("odd-sound.avi")),
              AudioTrackResult::Saved);
    EXPECT_TRUE(Saved().whole);
    EXPECT_EQ(Saved().data.size(), 801U);
    EXPECT_TRUE(Saved().data == ReadWave(Clip("odd-sound.wav")).data);
}

TEST_F(AudioTrackTest, RaisesTheRateOfASound) {
    ASSERT_EQ(SaveAs(L"PCM", L"44100 Hz; 8 bits; Mono", Clip("low-rate.avi")),
              AudioTrackResult::Saved);
    EXPECT_NEAR(Saved().Seconds(), 2.0, 0.001);
    EXPECT_NEAR(Saved().Frequency(), 1000.0, 1.0);
}

TEST_F(AudioTrackTest, SavesTenMinutesInSeconds) {
    const auto begin = std::chrono::steady_clock::now();
    ASSERT_EQ(SaveAs(L"PCM", kOwnFormat, Clip("ten-minutes.avi")), AudioTrackResult::Saved);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    std::cout << "ten minutes: " << taken.count() << " s" << std::endl;
    EXPECT_LT(taken.count(), 10.0);
    EXPECT_NEAR(Saved().Seconds(), 600.0, 0.001);
    EXPECT_GE(percents_.size(), 100U);
    EXPECT_LE(percents_.size(), 110U);
}

TEST_F(AudioTrackTest, AHundredSavesLeaveNoHandleBehind) {
    const DialogAnswer answer(Accept);
    constexpr int kWarmUp = 5;
    constexpr int kRounds = 100;
    std::size_t before = 0;
    for (int round = 0; round < kWarmUp + kRounds; ++round) {
        if (round == kWarmUp) before = CountHandles();
        ASSERT_EQ(Save(Clip("odd-sound.avi")), AudioTrackResult::Saved);
    }
    EXPECT_GT(before, 0);
    EXPECT_LE(CountHandles(), before + 1);
}

}  // namespace
}  // namespace nqp::test
