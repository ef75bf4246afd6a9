#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

#include "core/companion.h"
#include "cutter/formats.h"

namespace nqp::companion {

inline constexpr std::int32_t kAllPercent = 100;

// One piece of work: what is cut out of which clip, and what becomes of it.
struct CutJob {
    core::JobMode mode = core::JobMode::Video;
    std::filesystem::path source;
    std::filesystem::path output;
    double begin = 0;  // seconds from the clip's own beginning
    double end = 0;    // a still has none; one behind the clip's end means that end
    std::int32_t percentage = kAllPercent;  // share of the source's frames that is kept, 1 to 100
    core::PicturePlacement picture;         // with VideoWithPicture only
    VideoFormat video = VideoFormat::PlaysEverywhere;
    SoundFormat sound = SoundFormat::AviPcm;  // with Audio only
    std::int32_t mp3Rate = kUsualMp3Rate;     // hertz; the nearest one that MP3 knows is taken
    Quality quality = Quality::Good;
};

// Why a job cannot be done: a sentence for the person who asked for it.
class CutError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Whoever has a job done. Called on the thread that does it, many times a second.
class CutWatch {
public:
    // Of the job in whole percent, never falling; 100 once the output stands in its place.
    virtual void Progress(int percent) = 0;
    virtual bool Cancelled() = 0;

protected:
    ~CutWatch() = default;
};

enum class CutResult { Done, Cancelled };

struct CutReport {
    CutResult result = CutResult::Done;
    std::int64_t frames = 0;   // that were written
    double seconds = 0;        // length of what was written
    std::int64_t damaged = 0;  // pieces of the source that could not be read
};

// "1:02:03.5" of seconds, with thousandths at most.
std::string ClockText(double seconds);

// Times behind it, a little more than a hundred years, are slips of the pen. Seconds.
inline constexpr double kMostSeconds = 4e9;

// What can be seen from the values alone. Throws CutError.
void CheckValues(const CutJob& job);

// Does the job. The output appears in its place when it is whole; a job that ends in any other way
// leaves nothing behind, and an old file of that name as it was. Temporary files that earlier jobs
// left beside the output, because they were killed, go. Throws CutError.
CutReport Cut(const CutJob& job, CutWatch& watch);

// Where a copy without encoding would begin, in seconds: at the key frame before. Nothing when the
// source's streams, or the job, leave no choice but to encode. Throws CutError when the source
// cannot be read; also nothing when it was cancelled.
std::optional<double> CopyBegin(const CutJob& job, CutWatch& watch);

}  // namespace nqp::companion
