#pragma once

#include <algorithm>

#include "cutter/cut.h"
#include "cutter/source.h"
#include "cutter/temporary_output.h"

namespace nqp::companion {

// How far a job is, told to its watch in whole percent below 100.
class Meter {
public:
    // `seconds` is the length of all that is to be done, above 0.
    Meter(CutWatch& watch, double seconds) : watch_(watch), seconds_(seconds) {}

    void Reached(double seconds) {
        const int percent = static_cast<int>(std::clamp(seconds / seconds_ * 100, 0.0, 99.0));
        if (percent <= percent_) return;
        percent_ = percent;
        watch_.Progress(percent_);
    }

private:
    CutWatch& watch_;
    double seconds_;
    int percent_ = 0;
};

// The kinds of jobs. Each writes the whole output, which is then put in its place. They throw
// CutError and Interrupted.
CutReport CutVideo(const CutJob& job, Source& source, TemporaryOutput& output);
CutReport CopyVideo(const CutJob& job, Source& source, TemporaryOutput& output);
CutReport CutSound(const CutJob& job, Source& source, TemporaryOutput& output);
CutReport GrabStill(const CutJob& job, Source& source, TemporaryOutput& output);

// Whether the source's streams, and the job, allow a copy; where it begins.
bool FitsCopy(const CutJob& job, const Source& source);
std::optional<double> KeyFrameBefore(Source& source, double time);

}  // namespace nqp::companion
