#pragma once

#include "forms/win32/winapi/com.h"

#include <mutex>

#include <dshow.h>

namespace nqp::platform::directshow {

// The system clock, running faster or slower. A graph that keeps its time by it plays at that rate
// although its filters know nothing of rates.
class ScaledClock final : public winapi::ComObject<IReferenceClock> {
public:
    explicit ScaledClock(winapi::ComPtr<IReferenceClock> systemClock);

    // To be called while no graph that uses the clock is running; the time goes on without a jump.
    void SetRate(double rate);

    HRESULT STDMETHODCALLTYPE GetTime(REFERENCE_TIME* time) override;
    HRESULT STDMETHODCALLTYPE AdviseTime(REFERENCE_TIME base, REFERENCE_TIME offset, HEVENT event,
                                         DWORD_PTR* cookie) override;
    HRESULT STDMETHODCALLTYPE AdvisePeriodic(REFERENCE_TIME start, REFERENCE_TIME period,
                                             HSEMAPHORE semaphore, DWORD_PTR* cookie) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD_PTR cookie) override;

private:
    REFERENCE_TIME SystemTime() const;
    REFERENCE_TIME ToScaled(REFERENCE_TIME system) const;
    REFERENCE_TIME ToSystem(REFERENCE_TIME scaled) const;

    const winapi::ComPtr<IReferenceClock> system_;
    mutable std::mutex mutex_;
    double rate_ = 1.0;
    REFERENCE_TIME systemAnchor_ = 0;
    REFERENCE_TIME scaledAnchor_ = 0;
    REFERENCE_TIME latest_ = 0;
};

// The system's clock, one for the whole process; empty when there is none. It is never let go:
// its end waits for its thread, and a thread of Wine's that is about to sleep misses the request
// and is waited for for ever.
winapi::ComPtr<IReferenceClock> SharedSystemClock();

}  // namespace nqp::platform::directshow
