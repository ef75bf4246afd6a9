#include "platform/engine/directshow/scaled_clock.h"

#include <cmath>

namespace nqp::platform::directshow {

ScaledClock::ScaledClock(winapi::ComPtr<IReferenceClock> systemClock)
    : system_(std::move(systemClock)) {
    systemAnchor_ = scaledAnchor_ = latest_ = SystemTime();
}

void ScaledClock::SetRate(double rate) {
    const std::lock_guard lock(mutex_);
    const REFERENCE_TIME now = SystemTime();
    scaledAnchor_ = ToScaled(now);
    systemAnchor_ = now;
    rate_ = rate;
}

HRESULT ScaledClock::GetTime(REFERENCE_TIME* time) {
    if (time == nullptr) return E_POINTER;
    const std::lock_guard lock(mutex_);
    const REFERENCE_TIME now = ToScaled(SystemTime());
    // A reference clock never goes back, and says so when it did not move.
    const HRESULT moved = now > latest_ ? S_OK : S_FALSE;
    if (moved == S_OK) latest_ = now;
    *time = latest_;
    return moved;
}

HRESULT ScaledClock::AdviseTime(REFERENCE_TIME base, REFERENCE_TIME offset, HEVENT event,
                                DWORD_PTR* cookie) {
    const std::lock_guard lock(mutex_);
    return system_->AdviseTime(ToSystem(base + offset), 0, event, cookie);
}

HRESULT ScaledClock::AdvisePeriodic(REFERENCE_TIME start, REFERENCE_TIME period,
                                    HSEMAPHORE semaphore, DWORD_PTR* cookie) {
    const std::lock_guard lock(mutex_);
    const auto systemPeriod = static_cast<REFERENCE_TIME>(static_cast<double>(period) / rate_);
    return system_->AdvisePeriodic(ToSystem(start), systemPeriod, semaphore, cookie);
}

HRESULT ScaledClock::Unadvise(DWORD_PTR cookie) {
    return system_->Unadvise(cookie);
}

REFERENCE_TIME ScaledClock::SystemTime() const {
    REFERENCE_TIME now = 0;
    system_->GetTime(&now);
    return now;
}

REFERENCE_TIME ScaledClock::ToScaled(REFERENCE_TIME system) const {
    return scaledAnchor_ + std::llround(static_cast<double>(system - systemAnchor_) * rate_);
}

REFERENCE_TIME ScaledClock::ToSystem(REFERENCE_TIME scaled) const {
    return systemAnchor_ + std::llround(static_cast<double>(scaled - scaledAnchor_) / rate_);
}

winapi::ComPtr<IReferenceClock> SharedSystemClock() {
    static IReferenceClock* const kept = [] {
        // Its code must stay as long, also when the thread leaves COM in between.
        HMODULE pinned = nullptr;
        IReferenceClock* made = nullptr;
        CoCreateInstance(CLSID_SystemClock, nullptr, CLSCTX_INPROC_SERVER, IID_IReferenceClock,
                         reinterpret_cast<void**>(&made));
        GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN, L"quartz.dll", &pinned);
        return made;
    }();
    return winapi::ComPtr<IReferenceClock>::Share(kept);
}

}  // namespace nqp::platform::directshow
