#include "platform/engine/statistics_dialog.h"

#include <array>
#include <cstdio>
#include <utility>

#include "forms/win32/winapi/text.h"

namespace nqp::platform {

namespace {

constexpr UINT_PTR kRefreshTimer = 1;
constexpr UINT kRefreshInterval = 500;  // milliseconds
constexpr int kFirstValueId = 100;

// Pixels at 96 dpi.
constexpr int kMargin = 12;
constexpr int kLabelWidth = 130;
constexpr int kValueWidth = 330;
constexpr int kLineHeight = 19;
constexpr int kFilterLines = 7;
constexpr int kButtonWidth = 84;
constexpr int kButtonHeight = 26;

std::string Number(const char* format, double value) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), format, value);
    return text.data();
}

std::string Available(const char* format, const std::optional<double>& value) {
    return value ? Number(format, *value) : "not available";
}

std::string Available(const std::optional<int>& value) {
    return value ? std::to_string(*value) : "not available";
}

std::string Available(const std::string& text) {
    return text.empty() ? "not available" : text;
}

std::string TimeText(double seconds) {
    constexpr int kHundredthsPerSecond = 100;
    constexpr int kSecondsPerMinute = 60;
    constexpr int kMinutesPerHour = 60;
    if (seconds < 0) return "not available";
    const auto hundredths = static_cast<long long>(seconds * kHundredthsPerSecond);
    const long long whole = hundredths / kHundredthsPerSecond;
    const long long minutes = whole / kSecondsPerMinute;
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%lld:%02lld:%02lld.%02lld", minutes / kMinutesPerHour,
                  minutes % kMinutesPerHour, whole % kSecondsPerMinute,
                  hundredths % kHundredthsPerSecond);
    return text.data();
}

std::string SizeText(PixelSize size) {
    if (size.width <= 0 || size.height <= 0) return "not available";
    return std::to_string(size.width) + " x " + std::to_string(size.height) + " pixels";
}

std::string Lines(const std::vector<std::string>& texts) {
    std::string lines;
    for (const std::string& text : texts)
        lines += (lines.empty() ? "" : "\r\n") + text;
    return lines;
}

std::string StateText(core::PlayState state) {
    switch (state) {
        case core::PlayState::Playing:
            return "playing";
        case core::PlayState::Paused:
            return "paused";
        default:
            return "stopped";
    }
}

}  // namespace

StatisticsDialog::StatisticsDialog(HWND owner, const ClipInformation& clip) : clip_(clip) {
    const auto rows = Rows();
    const int lines = static_cast<int>(rows.size()) - 1 + kFilterLines;
    const int width = 2 * kMargin + kLabelWidth + kValueWidth;
    const int height = 3 * kMargin + lines * kLineHeight + kButtonHeight;
    if (!CreateDialogWindow(L"nqp.Statistics", L"Statistics", owner, {width, height})) return;
    int top = kMargin;
    for (const Row& row : rows) {
        const bool last = &row == &rows.back();
        const int rowHeight = last ? kFilterLines * kLineHeight : kLineHeight;
        const DWORD style = SS_NOPREFIX | (last ? SS_LEFT : SS_ENDELLIPSIS);
        const int id = kFirstValueId + static_cast<int>(values_.size());
        AddControl(L"STATIC", row.label, SS_LEFT, -1, {kMargin, top, kLabelWidth, rowHeight});
        values_.push_back(AddControl(L"STATIC", L"", style, id,
                                     {kMargin + kLabelWidth, top, kValueWidth, rowHeight}));
        top += rowHeight;
    }
    const HWND close =
        AddControl(L"BUTTON", L"Close", WS_TABSTOP | BS_DEFPUSHBUTTON, IDCANCEL,
                   {width - kMargin - kButtonWidth, top + kMargin, kButtonWidth, kButtonHeight});
    Refresh();
    SetTimer(Handle(), kRefreshTimer, kRefreshInterval, nullptr);
    BringToFront();
    SetFocus(close);
}

void StatisticsDialog::Refresh() {
    const auto rows = Rows();
    for (std::size_t i = 0; i < values_.size(); ++i)
        UpdateText(values_[i], winapi::Utf16(rows[i].value));
}

std::vector<StatisticsDialog::Row> StatisticsDialog::Rows() {
    const core::MediaEngine& engine = clip_.Engine();
    const PlaybackFigures figures = clip_.Figures();
    const bool loaded = engine.Readiness() != 0;
    const char* counted = figures.drawnMeansDelivered ? " (delivered to the renderer)" : "";
    return {
        {L"File", loaded ? engine.FileName() : "nothing is loaded"},
        {L"State", StateText(engine.State())},
        {L"Position", TimeText(engine.CurrentPosition())},
        {L"Duration", loaded ? TimeText(engine.Duration()) : "not available"},
        {L"Playback rate", Number("%.2f", engine.Rate())},
        {L"Picture size", SizeText(figures.pictureSize)},
        {L"Picture format", Available(figures.pictureFormat)},
        {L"Sound format", Available(figures.soundFormat)},
        {L"Frame rate of the clip", Available("%.2f frames/s", figures.nominalFrameRate)},
        {L"Current frame rate", Available("%.1f frames/s", CurrentFrameRate(figures))},
        {L"Average frame rate", Available("%.2f frames/s", figures.averageFrameRate)},
        {L"Frames drawn", Available(figures.framesDrawn) + counted},
        {L"Frames dropped", Available(figures.framesDropped)},
        {L"Jitter", Available("%.1f ms", figures.jitter)},
        {L"Filters", Available(Lines(figures.filters))},
    };
}

// Counted by the dialog itself from one renewal to the next.
std::optional<double> StatisticsDialog::CurrentFrameRate(const PlaybackFigures& figures) {
    const bool playing = clip_.Engine().State() == core::PlayState::Playing;
    const auto before = std::exchange(lastMark_, std::nullopt);
    if (!playing || !figures.framesDrawn) return {};
    const auto now = std::chrono::steady_clock::now();
    lastMark_ = FrameMark{*figures.framesDrawn, now};
    if (!before || before->frames > *figures.framesDrawn) return {};
    const double elapsed = std::chrono::duration<double>(now - before->time).count();
    return elapsed > 0 ? std::optional((*figures.framesDrawn - before->frames) / elapsed)
                       : std::nullopt;
}

}  // namespace nqp::platform
