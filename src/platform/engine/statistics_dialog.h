#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "platform/engine/dialog_window.h"
#include "platform/engine/engine_dialogs.h"

namespace nqp::platform {

// What is known about the clip and its playback, renewed twice a second.
class StatisticsDialog final : public DialogWindow {
public:
    StatisticsDialog(HWND owner, const ClipInformation& clip);

    void Refresh();

private:
    struct Row {
        const wchar_t* label;
        std::string value;
    };
    struct FrameMark {
        int frames;
        std::chrono::steady_clock::time_point time;
    };

    void OnTimer() override { Refresh(); }
    std::vector<Row> Rows();
    std::optional<double> CurrentFrameRate(const PlaybackFigures& figures);

    const ClipInformation& clip_;
    std::vector<HWND> values_;
    std::optional<FrameMark> lastMark_;
};

}  // namespace nqp::platform
