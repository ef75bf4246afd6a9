#include "platform/engine/directshow/frame_counter.h"

#include <algorithm>
#include <cmath>

#include "platform/engine/directshow/filters.h"

namespace nqp::platform::directshow {

namespace {

constexpr CLSID kSampleGrabber = {
    0xC1F400A0, 0x3F08, 0x11D3, {0x9F, 0x0B, 0x00, 0x60, 0x08, 0x03, 0x9E, 0x37}};
constexpr long kCallSampleCB = 0;
constexpr double kMillisecondsPerSecond = 1000.0;

LONGLONG Ticks() {
    LARGE_INTEGER now{};
    QueryPerformanceCounter(&now);
    return now.QuadPart;
}

double TicksToSeconds(LONGLONG ticks) {
    LARGE_INTEGER perSecond{};
    QueryPerformanceFrequency(&perSecond);
    return static_cast<double>(ticks) / static_cast<double>(perSecond.QuadPart);
}

bool Connect(IGraphBuilder* graph, IPin* from, IPin* to, const AM_MEDIA_TYPE* type) {
    return from != nullptr && to != nullptr && SUCCEEDED(graph->ConnectDirect(from, to, type));
}

}  // namespace

winapi::ComPtr<FrameCounter> FrameCounter::InsertBefore(IBaseFilter* renderer,
                                                        IGraphBuilder* graph) {
    const auto rendererPin = ConnectedInput(renderer);
    if (!rendererPin) return {};
    winapi::ComPtr<IPin> upstream;
    MediaType type;
    rendererPin->ConnectedTo(upstream.Put());
    if (!upstream || FAILED(rendererPin->ConnectionMediaType(type.Put()))) return {};

    auto grabber = winapi::ComPtr<IBaseFilter>::Create(kSampleGrabber);
    const auto settings = grabber.As<ISampleGrabber>();
    if (!settings || FAILED(graph->AddFilter(grabber.Get(), L"Frame counter"))) return {};
    auto counter = winapi::MakeCom<FrameCounter>();
    settings->SetMediaType(type.Get());
    settings->SetBufferSamples(FALSE);
    settings->SetOneShot(FALSE);
    settings->SetCallback(counter.Get(), kCallSampleCB);

    graph->Disconnect(upstream.Get());
    graph->Disconnect(rendererPin.Get());
    const auto in = FirstPin(grabber.Get(), PINDIR_INPUT);
    const auto out = FirstPin(grabber.Get(), PINDIR_OUTPUT);
    if (Connect(graph, upstream.Get(), in.Get(), type.Get()) &&
        Connect(graph, out.Get(), rendererPin.Get(), type.Get())) {
        return counter;
    }
    settings->SetCallback(nullptr, kCallSampleCB);
    graph->RemoveFilter(grabber.Get());
    graph->ConnectDirect(upstream.Get(), rendererPin.Get(), type.Get());
    return {};
}

FrameCount FrameCounter::Count() const {
    const std::lock_guard lock(mutex_);
    FrameCount count{.frames = frames_, .averageRate = {}, .jitter = {}};
    if (gaps_ == 0 || gapSum_ <= 0) return count;
    const double mean = gapSum_ / gaps_;
    const double variance = std::max(0.0, gapSquareSum_ / gaps_ - mean * mean);
    count.averageRate = 1.0 / mean;
    count.jitter = std::sqrt(variance) * kMillisecondsPerSecond;
    return count;
}

void FrameCounter::ForgetLastArrival() {
    const std::lock_guard lock(mutex_);
    lastArrival_.reset();
}

HRESULT FrameCounter::SampleCB(double, IMediaSample*) {
    const LONGLONG now = Ticks();
    const std::lock_guard lock(mutex_);
    ++frames_;
    if (lastArrival_) {
        const double gap = TicksToSeconds(now - *lastArrival_);
        ++gaps_;
        gapSum_ += gap;
        gapSquareSum_ += gap * gap;
    }
    lastArrival_ = now;
    return S_OK;
}

HRESULT FrameCounter::BufferCB(double, BYTE*, LONG) {
    return S_OK;
}

}  // namespace nqp::platform::directshow
