#include "server/job_values.h"

#include <filesystem>

#include "base/file.h"
#include "base/text.h"
#include "server/sound_target.h"

namespace nqp::companion {
namespace {

using core::JobMode;

JobMode ModeOf(std::int32_t number) {
    switch (const auto mode = static_cast<JobMode>(number)) {
        case JobMode::Video:
        case JobMode::Audio:
        case JobMode::Image:
        case JobMode::VideoWithPicture:
            return mode;
    }
    throw CutError("There is no mode " + std::to_string(number) +
                   ": 0 is a video, 1 a sound, 2 a still, 3 a video with a picture on it.");
}

}  // namespace

CutJob JobOf(const JobValues& values) {
    CutJob job;
    job.mode = ModeOf(values.mode);
    job.source = base::PathFromUtf8(base::UpToNul(values.sourceFile));
    job.output = base::PathFromUtf8(base::UpToNul(values.outputFile));
    job.begin = values.fragmentStart;
    job.end = values.fragmentEnd;
    job.percentage = values.percentage;
    job.sound = SoundFormatOf(values.outputFile);
    if (job.mode == JobMode::VideoWithPicture)
        job.picture = {values.imageX, values.imageY, base::UpToNul(values.imagePath)};
    return job;
}

}  // namespace nqp::companion
