#pragma once

#include "forms/win32/winapi/com.h"

#include <mutex>
#include <optional>

#include <dshow.h>
#include <qedit.h>

namespace nqp::platform::directshow {

struct FrameCount {
    int frames = 0;
    std::optional<double> averageRate;  // frames per second
    std::optional<double> jitter;       // milliseconds
};

// Counts the frames that pass by on their way into a renderer that keeps no figures itself. The
// renderer holds a frame back until it is time to draw it, so the gaps between two arrivals are
// the gaps between two drawings.
class FrameCounter final : public winapi::ComObject<ISampleGrabberCB> {
public:
    // Puts the counter in front of the renderer, while the graph is stopped. Answers nothing, and
    // leaves the graph as it was, when that does not work.
    static winapi::ComPtr<FrameCounter> InsertBefore(IBaseFilter* renderer, IGraphBuilder* graph);

    FrameCount Count() const;
    // The next gap says nothing: the graph was held still.
    void ForgetLastArrival();

    HRESULT STDMETHODCALLTYPE SampleCB(double sampleTime, IMediaSample* sample) override;
    HRESULT STDMETHODCALLTYPE BufferCB(double sampleTime, BYTE* buffer, LONG length) override;

private:
    mutable std::mutex mutex_;
    int frames_ = 0;
    std::optional<LONGLONG> lastArrival_;  // ticks of the performance counter
    int gaps_ = 0;
    double gapSum_ = 0;        // seconds
    double gapSquareSum_ = 0;  // seconds squared
};

}  // namespace nqp::platform::directshow
