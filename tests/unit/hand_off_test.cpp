#include "fragments/hand_off.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace nqp::fragments {
namespace {

using core::CompanionMember;
using core::JobMode;
using core::RunMode;

const std::string kPadded = std::string("C:\\a\\b.avi") + std::string(247, '\0');

JobSource SourceOf() {
    return {.programFolder = "C:\\My Player",
            .file = "D:\\films\\sea.mpg",
            .beginSeconds = 2,
            .endSeconds = 5};
}

core::SharedSettings SettingsOf() {
    core::SharedSettings settings;
    settings.fragment_percentage = 40;
    settings.picture_path = "C:\\logo.bmp";
    settings.picture_x = 250;
    settings.picture_y = 1000;
    return settings;
}

std::vector<CompanionMember> Told(JobMode mode, const std::string& output) {
    return {{"Mode", static_cast<std::int32_t>(mode)},
            {"Percentage", 40},
            {"StatusFile", "C:\\My Player\\status.txt"},
            {"CancelFile", "C:\\My Player\\flag.txt"},
            {"OutputFile", output},
            {"SourceFile", "D:\\films\\sea.mpg"},
            {"FragmentStart", 2.0},
            {"FragmentEnd", 5.0}};
}

TEST(HandOff, VideoJobIsToldInItsOrder) {
    const core::FragmentJob job = VideoJob(SourceOf(), SettingsOf(), kPadded);
    EXPECT_EQ(core::MembersInOrder(job), Told(JobMode::Video, kPadded));
    EXPECT_FALSE(job.lastOutputFile.has_value());
}

TEST(HandOff, PictureFollowsTheModeOfAVideoJob) {
    core::SharedSettings settings = SettingsOf();
    settings.insert_picture = true;
    std::vector<CompanionMember> told = Told(JobMode::VideoWithPicture, kPadded);
    told.insert(told.begin() + 1,
                {{"ImageX", 250}, {"ImageY", 1000}, {"ImagePath", "C:\\logo.bmp"}});
    EXPECT_EQ(core::MembersInOrder(VideoJob(SourceOf(), settings, kPadded)), told);
}

TEST(HandOff, StillAndSoundTakeNoPicture) {
    core::SharedSettings settings = SettingsOf();
    settings.insert_picture = true;
    EXPECT_EQ(core::MembersInOrder(ImageJob(SourceOf(), settings, kPadded)),
              Told(JobMode::Image, kPadded));
    const AudioTarget target = AudioTargetOf("C:\\song.wav");
    EXPECT_EQ(core::MembersInOrder(AudioJob(SourceOf(), settings, target, RunMode::Waiting)),
              Told(JobMode::Audio, "C:\\song!.avi"));
}

TEST(HandOff, ShareOfFramesIsWholeWhereNoneWasSet) {
    EXPECT_EQ(VideoJob(SourceOf(), {}, kPadded).percentage, 100);
}

TEST(HandOff, SoundGoesThroughATemporaryClipBesideIt) {
    const AudioTarget target = AudioTargetOf(std::string("C:\\a\\b.mp3") + std::string(246, '\0'));
    EXPECT_EQ(target.path, "C:\\a\\b.mp3");
    EXPECT_EQ(target.temporaryVideo, "C:\\a\\b!.avi");
    EXPECT_EQ(target.format, AudioTarget::Format::Mp3);
    EXPECT_EQ(AudioTargetOf("song.wav").temporaryVideo, "song!.avi");
}

TEST(HandOff, EndingDecidesTheSoundFormat) {
    EXPECT_EQ(AudioTargetOf("a.wav").format, AudioTarget::Format::Wave);
    EXPECT_EQ(AudioTargetOf("A.WAV").format, AudioTarget::Format::Wave);
    EXPECT_EQ(AudioTargetOf("a.Mp3").format, AudioTarget::Format::Mp3);
    EXPECT_EQ(AudioTargetOf("a.ogg").format, AudioTarget::Format::Unknown);
}

TEST(HandOff, TargetOfFewerThanFourCharactersIsAnError) {
    EXPECT_THROW(AudioTargetOf("wav"), std::runtime_error);
    EXPECT_THROW(AudioTargetOf(std::string(257, '\0')), std::runtime_error);
    EXPECT_EQ(AudioTargetOf(".wav").temporaryVideo, "!.avi");
}

TEST(HandOff, SoundJobBesideThePlayerIsToldTheTargetLast) {
    const core::SharedSettings settings = SettingsOf();
    const AudioTarget wave = AudioTargetOf("C:\\song.wav");
    const core::FragmentJob job = AudioJob(SourceOf(), settings, wave, RunMode::Beside);
    EXPECT_EQ(core::MembersInOrder(job), Told(JobMode::Audio, "C:\\song!.avi"));
    EXPECT_EQ(job.lastOutputFile, "C:\\song.wav");
    EXPECT_FALSE(AudioJob(SourceOf(), settings, wave, RunMode::Waiting).lastOutputFile);
    const AudioTarget unknown = AudioTargetOf("C:\\song.ogg");
    EXPECT_FALSE(AudioJob(SourceOf(), settings, unknown, RunMode::Beside).lastOutputFile);
}

TEST(HandOff, InterfaceInTheOptionsDecidesWhetherItWaits) {
    core::SharedSettings settings;
    settings.use_directshow = false;
    EXPECT_EQ(RunModeOf(settings), RunMode::Waiting);
    settings.use_directshow = true;
    EXPECT_EQ(RunModeOf(settings), RunMode::Beside);
}

}  // namespace
}  // namespace nqp::fragments
