#include "command/cut_options.h"

#include <gtest/gtest.h>

#include "command/command_line.h"

namespace nqp::companion {
namespace {

using core::JobMode;

class Console final : public CommandConsole {
public:
    void Out(const std::string& text) override { out += text; }
    void Err(const std::string& text) override { err += text; }
    bool Interrupted() const override { return false; }
    bool Interactive() const override { return false; }

    std::string out;
    std::string err;
};

TEST(ParseTime, TakesSecondsMinutesAndHours) {
    EXPECT_EQ(ParseTime("70.5"), 70.5);
    EXPECT_EQ(ParseTime("1:10.5"), 70.5);
    EXPECT_EQ(ParseTime("0:01:10.5"), 70.5);
    EXPECT_EQ(ParseTime("10:00:00"), 36000.0);
    EXPECT_EQ(ParseTime("0"), 0.0);
}

TEST(ParseTime, TakesNothingElse) {
    for (const char* text : {"", ":", "1:", ":1", "1:60", "1.5:00", "1:2:3:4", "-1", "1e3", "nan",
                             "inf", "0x10", "1,5", " 1", "1..5", ".", "99999999999999999999"}) {
        EXPECT_EQ(ParseTime(text), std::nullopt) << text;
    }
}

TEST(CutOptions, TheEndingOfTheOutputSaysWhatIsMade) {
    const auto made = [](const char* output) {
        return ParseCutOptions({"a.mp4", "--from", "1", "--to", "2", "-o", output}).job;
    };
    EXPECT_EQ(made("b.avi").mode, JobMode::Video);
    EXPECT_EQ(made("b.MP3").mode, JobMode::Audio);
    EXPECT_EQ(made("b.MP3").sound, SoundFormat::Mp3);
    EXPECT_EQ(made("b.wav").sound, SoundFormat::Wave);
    EXPECT_EQ(made("b.bmp").mode, JobMode::Image);
}

TEST(CutOptions, SoundInAnAviIsAskedForByName) {
    const auto job =
        ParseCutOptions({"a.mp4", "--sound", "--from", "1", "--to", "2", "-o", "b.avi"}).job;
    EXPECT_EQ(job.mode, JobMode::Audio);
    EXPECT_EQ(job.sound, SoundFormat::AviPcm);
}

TEST(CutOptions, WithoutAnOutputItLiesBesideTheClip) {
    const auto made = [](const char* kind) {
        return ParseCutOptions({"dir/a.mp4", "--from", "1:02", "--to", "1:10.5", kind}).job.output;
    };
    EXPECT_EQ(made("--video"), "dir/a 0.01.02 - 0.01.10.5.avi");
    EXPECT_EQ(made("--sound"), "dir/a 0.01.02 - 0.01.10.5.wav");
    EXPECT_EQ(made("--still"), "dir/a 0.01.02.bmp");
}

TEST(CutOptions, APictureMakesItAVideoWithAPicture) {
    const auto job = ParseCutOptions({"a.mp4", "--from", "1", "--to", "2", "--picture", "p.bmp",
                                      "--picture-x", "10", "--picture-y", "990"})
                         .job;
    EXPECT_EQ(job.mode, JobMode::VideoWithPicture);
    EXPECT_EQ(job.picture.path, "p.bmp");
    EXPECT_EQ(job.picture.x, 10);
    EXPECT_EQ(job.picture.y, 990);
}

TEST(CutOptions, EveryOtherOptionIsTaken) {
    const auto options =
        ParseCutOptions({"a.mp4", "--from", "1", "--to", "2", "--format", "mjpeg", "--quality",
                         "best", "--keep", "50", "--mp3-rate", "22050", "--overwrite", "--quiet"});
    EXPECT_EQ(options.job.video, VideoFormat::MotionJpeg);
    EXPECT_EQ(options.job.quality, Quality::Best);
    EXPECT_EQ(options.job.percentage, 50);
    EXPECT_EQ(options.job.mp3Rate, 22050);
    EXPECT_TRUE(options.overwrite);
    EXPECT_TRUE(options.quiet);
}

TEST(CutOptions, MistakesAreTold) {
    const std::vector<std::vector<std::string>> mistakes = {
        {},
        {"a.mp4"},
        {"a.mp4", "--from", "1"},
        {"a.mp4", "--from"},
        {"a.mp4", "--from", "x", "--to", "2"},
        {"a.mp4", "b.mp4", "--from", "1", "--to", "2"},
        {"a.mp4", "--from", "1", "--to", "2", "--format", "gif"},
        {"a.mp4", "--from", "1", "--to", "2", "--keep", "half"},
        {"a.mp4", "--from", "1", "--to", "2", "--wrong"},
        {"a.mp4", "--from", "1", "--to", "2", "--video", "--sound"},
        {"a.mp4", "--from", "1", "--to", "2", "--sound", "--picture", "p.bmp"},
        {"a.mp4", "--from", "1", "--to", "2", "--format", "copy", "--picture", "p.bmp"},
    };
    for (const auto& arguments : mistakes)
        EXPECT_THROW(ParseCutOptions(arguments), UsageError);
}

TEST(CommandLine, AMistakeHasItsOwnCode) {
    Console console;
    EXPECT_EQ(RunCommandLine({"cut"}, console), kExitBadUsage);
    EXPECT_EQ(RunCommandLine({"carve"}, console), kExitBadUsage);
    EXPECT_NE(console.err.find("--help"), std::string::npos);
    EXPECT_EQ(console.out, "");
}

TEST(CommandLine, HelpNamesEveryOption) {
    Console console;
    EXPECT_EQ(RunCommandLine({"--help"}, console), kExitDone);
    for (const char* option : {"--from", "--to", "--video", "--sound", "--still", "--format",
                               "--quality", "--keep", "--picture", "--picture-x", "--picture-y",
                               "--mp3-rate", "--overwrite", "--quiet", "--help", "--version"}) {
        EXPECT_NE(console.out.find(option), std::string::npos) << option;
    }
}

TEST(CommandLine, AMissingClipIsASentenceAndAFailure) {
    Console console;
    EXPECT_EQ(RunCommandLine({"cut", "/nowhere/a.mp4", "--from", "0", "--to", "1"}, console),
              kExitFailed);
    EXPECT_EQ(console.err, "There is no file /nowhere/a.mp4.\n");
}

}  // namespace
}  // namespace nqp::companion
