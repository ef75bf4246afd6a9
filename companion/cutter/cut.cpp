#include "cutter/cut.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <new>
#include <string>

#include "base/file.h"
#include "cutter/job_parts.h"

namespace nqp::companion {
namespace {

constexpr std::int32_t kWholeWay = 1000;

bool IsTime(double seconds) {
    return seconds >= 0 && seconds <= kMostSeconds;
}

bool NeedsRange(const CutJob& job) {
    return job.mode != core::JobMode::Image;
}

void CheckRange(const CutJob& job) {
    if (!IsTime(job.begin)) throw CutError("The begin of the fragment is no time.");
    if (!NeedsRange(job)) return;
    if (!IsTime(job.end)) throw CutError("The end of the fragment is no time.");
    if (job.end > job.begin) return;
    const bool empty = job.end == job.begin;
    throw CutError("The fragment " +
                   std::string(empty ? "is empty: it begins and ends at "
                                     : "ends before it begins: it begins at ") +
                   ClockText(job.begin) +
                   (empty ? "." : " and ends at " + ClockText(job.end) + "."));
}

void CheckPicture(const core::PicturePlacement& picture) {
    if (picture.path.empty()) throw CutError("No picture was chosen to be laid over the fragment.");
    const auto onTheWay = [](std::int32_t place) { return place >= 0 && place <= kWholeWay; };
    if (onTheWay(picture.x) && onTheWay(picture.y)) return;
    throw CutError("The place of the picture must lie between 0 and 1000 in both directions.");
}

void CheckFiles(const CutJob& job) {
    if (job.source.empty()) throw CutError("There is no clip to cut a fragment out of.");
    if (job.output.empty()) throw CutError("There is no name for the fragment.");
    std::error_code ignored;
    if (job.source == job.output || std::filesystem::equivalent(job.source, job.output, ignored)) {
        throw CutError("The fragment cannot be written over the clip that it is cut out of.");
    }
}

void CheckBegin(const CutJob& job, const Source& source) {
    const auto duration = source.Duration();
    if (!NeedsRange(job) || !duration || job.begin < *duration) return;
    throw CutError("The fragment begins at " + ClockText(job.begin) + ", behind the end of " +
                   source.Name() + " at " + ClockText(*duration) + ".");
}

CutReport DoJob(const CutJob& job, Source& source, TemporaryOutput& output) {
    switch (job.mode) {
        case core::JobMode::Audio:
            return CutSound(job, source, output);
        case core::JobMode::Image:
            return GrabStill(job, source, output);
        case core::JobMode::Video:
        case core::JobMode::VideoWithPicture:
            break;
    }
    const bool copied = job.video == VideoFormat::Copy;
    return copied ? CopyVideo(job, source, output) : CutVideo(job, source, output);
}

// A fragment that reaches beyond the clip ends with it; so does its progress.
CutJob WithinClip(CutJob job, const Source& source) {
    const auto duration = source.Duration();
    if (NeedsRange(job) && duration && *duration > job.begin && job.end > *duration + 1) {
        job.end = *duration + 1;
    }
    return job;
}

CutReport CutUnguarded(const CutJob& job, CutWatch& watch) {
    Source source(job.source, watch);
    CheckBegin(job, source);
    TemporaryOutput output(job.output);
    const CutReport report = DoJob(WithinClip(job, source), source, output);
    source.ThrowIfCancelled();
    output.PutInPlace();
    watch.Progress(kAllPercent);
    return report;
}

// The library's own remarks are for its developers.
void Silence() {
    av_log_set_callback([](void*, int, const char*, va_list) {});
}

// What the libraries answer becomes a sentence; a cancelled job becomes `cancelled`.
template <class Result, class Work>
Result Guarded(const Result& cancelled, Work&& work) {
    Silence();
    try {
        return work();
    } catch (const Interrupted&) {
        return cancelled;
    } catch (const std::bad_alloc&) {
        throw CutError("There is not enough memory for this fragment.");
    } catch (const LibraryError& error) {
        throw CutError(std::string("The fragment could not be made (") + error.what() + ").");
    } catch (const std::filesystem::filesystem_error& error) {
        throw CutError(std::string("The fragment could not be made (") + error.what() + ").");
    }
}

}  // namespace

std::string ClockText(double seconds) {
    constexpr int kSixty = 60;
    const auto milliseconds = std::llround(seconds * 1000);
    const auto whole = milliseconds / 1000;
    std::array<char, 64> text{};
    const int length = std::snprintf(text.data(), text.size(), "%lld:%02lld:%02lld.%03lld",
                                     static_cast<long long>(whole / (kSixty * kSixty)),
                                     static_cast<long long>(whole / kSixty % kSixty),
                                     static_cast<long long>(whole % kSixty),
                                     static_cast<long long>(milliseconds % 1000));
    std::string clock(text.data(), static_cast<std::size_t>(length));
    clock.erase(clock.find_last_not_of('0') + 1);
    return clock.ends_with('.') ? clock.substr(0, clock.size() - 1) : clock;
}

void CheckValues(const CutJob& job) {
    CheckFiles(job);
    CheckRange(job);
    if (job.percentage < 1 || job.percentage > kAllPercent) {
        throw CutError("The share of the frames must lie between 1 and 100 percent, not " +
                       std::to_string(job.percentage) + ".");
    }
    if (job.mode == core::JobMode::VideoWithPicture) CheckPicture(job.picture);
}

CutReport Cut(const CutJob& job, CutWatch& watch) {
    CheckValues(job);
    return Guarded(CutReport{.result = CutResult::Cancelled},
                   [&] { return CutUnguarded(job, watch); });
}

std::optional<double> CopyBegin(const CutJob& job, CutWatch& watch) {
    CheckValues(job);
    return Guarded(std::optional<double>(), [&]() -> std::optional<double> {
        Source source(job.source, watch);
        CheckBegin(job, source);
        return FitsCopy(job, source) ? KeyFrameBefore(source, job.begin) : std::nullopt;
    });
}

}  // namespace nqp::companion
