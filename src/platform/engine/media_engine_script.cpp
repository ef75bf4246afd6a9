// The script interface of the media player's window; the numbers are in script_messages.h.

#include <cmath>
#include <limits>

#include "platform/engine/media_engine_impl.h"
#include "platform/engine/script_messages.h"

namespace nqp::platform {

namespace {

constexpr double kThousandths = 1000.0;

std::intptr_t ToThousandths(double value) {
    return static_cast<std::intptr_t>(std::llround(value * kThousandths));
}

int ToInt(std::intptr_t value) {
    using Limits = std::numeric_limits<int>;
    if (value < Limits::min()) return Limits::min();
    return value > Limits::max() ? Limits::max() : static_cast<int>(value);
}

}  // namespace

std::intptr_t MediaEngineImpl::OnScriptMessage(int number, std::intptr_t value) {
    return ObeyScript(number, value) ? 1 : ReadProperty(number);
}

std::intptr_t MediaEngineImpl::ReadProperty(int number) const {
    switch (number) {
        case script::kPlayState:
            return static_cast<std::intptr_t>(state_);
        case script::kCurrentPosition:
            return graph_ ? ToThousandths(CurrentPosition()) : std::intptr_t{-1};
        case script::kDuration:
            return ToThousandths(duration_);
        case script::kVolume:
            return volume_;
        case script::kRate:
            return ToThousandths(rate_);
        case script::kReadiness:
            return Readiness();
        case script::kVisible:
            return visible_ ? 1 : 0;
        case script::kDisplaySize:
            return DisplaySize();
        case script::kFramesDrawn:
            return Figures().framesDrawn.value_or(-1);
        default:
            return 0;
    }
}

bool MediaEngineImpl::ObeyScript(int number, std::intptr_t value) {
    switch (number) {
        case script::kSetCurrentPosition:
            SetCurrentPosition(static_cast<double>(value) / kThousandths);
            return true;
        case script::kSetVolume:
            SetVolume(ToInt(value));
            return true;
        case script::kSetRate:
            SetRate(static_cast<double>(value) / kThousandths);
            return true;
        case script::kSetDisplaySize:
            SetDisplaySize(ToInt(value));
            return true;
        case script::kPlay:
            Play();
            return true;
        case script::kPause:
            Pause();
            return true;
        case script::kShowDialog:
            ShowDialog(ToInt(value));
            return true;
        default:
            return false;
    }
}

}  // namespace nqp::platform
