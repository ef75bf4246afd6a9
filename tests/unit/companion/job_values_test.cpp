#include "server/job_values.h"

#include <gtest/gtest.h>

#include "base/file.h"

namespace nqp::companion {
namespace {

using core::JobMode;

TEST(JobValues, BecomeTheJobThatTheyDescribe) {
    const JobValues values{.mode = 3,
                           .imageX = 250,
                           .imageY = 1000,
                           .imagePath = "C:\\图.bmp",
                           .percentage = 50,
                           .statusFile = {},
                           .cancelFile = {},
                           .outputFile = "C:\\片段.avi",
                           .sourceFile = "C:\\clip.avi",
                           .fragmentStart = 1.5,
                           .fragmentEnd = 70};
    const CutJob job = JobOf(values);
    EXPECT_EQ(job.mode, JobMode::VideoWithPicture);
    EXPECT_EQ(job.picture.x, 250);
    EXPECT_EQ(job.picture.y, 1000);
    EXPECT_EQ(job.picture.path, "C:\\图.bmp");
    EXPECT_EQ(job.percentage, 50);
    EXPECT_EQ(base::Utf8FromPath(job.output), "C:\\片段.avi");
    EXPECT_EQ(base::Utf8FromPath(job.source), "C:\\clip.avi");
    EXPECT_EQ(job.begin, 1.5);
    EXPECT_EQ(job.end, 70.0);
}

TEST(JobValues, PathsEndWithTheirFirstNul) {
    JobValues values;
    values.mode = 3;
    values.outputFile = std::string("C:\\a.avi") + std::string(249, '\0');
    values.sourceFile = std::string("C:\\b.avi\0x", 10);
    values.imagePath = std::string("C:\\c.bmp\0", 9);
    const CutJob job = JobOf(values);
    EXPECT_EQ(base::Utf8FromPath(job.output), "C:\\a.avi");
    EXPECT_EQ(base::Utf8FromPath(job.source), "C:\\b.avi");
    EXPECT_EQ(job.picture.path, "C:\\c.bmp");
}

TEST(JobValues, APictureIsForItsOwnModeOnly) {
    JobValues values;
    values.imagePath = "C:\\c.bmp";
    EXPECT_EQ(JobOf(values).picture.path, "");
}

TEST(JobValues, AllModesAreKnownAndNoOther) {
    JobValues values;
    for (const int mode : {0, 1, 2, 3}) {
        values.mode = mode;
        EXPECT_EQ(JobOf(values).mode, static_cast<JobMode>(mode));
    }
    for (const int mode : {-1, 4, 1000000}) {
        values.mode = mode;
        try {
            JobOf(values);
            ADD_FAILURE() << mode;
        } catch (const CutError& error) {
            const std::string begin = "There is no mode " + std::to_string(mode) + ":";
            EXPECT_EQ(std::string(error.what()).substr(0, begin.size()), begin);
        }
    }
}

TEST(JobValues, SoundIsWrittenByTheOutputsExtension) {
    JobValues values;
    values.mode = 1;
    const std::pair<const char*, SoundFormat> outputs[] = {
        {"C:\\a.mp3", SoundFormat::Mp3},        {"C:\\a.MP3", SoundFormat::Mp3},
        {"C:\\a.Wav", SoundFormat::Wave},       {"C:\\a!.avi", SoundFormat::AviPcm},
        {"C:\\a.mp3.avi", SoundFormat::AviPcm}, {"C:\\mp3", SoundFormat::AviPcm}};
    for (const auto& [output, format] : outputs) {
        values.outputFile = output + std::string(3, '\0');
        EXPECT_EQ(JobOf(values).sound, format) << output;
    }
}

}  // namespace
}  // namespace nqp::companion
