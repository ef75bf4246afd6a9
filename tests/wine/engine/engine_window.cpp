#include "engine_window.h"

#include <algorithm>
#include <cstdlib>

#include "platform/engine/media_engine.h"
#include "platform/engine/script_messages.h"

namespace nqp::test {

namespace {

constexpr wchar_t kClassName[] = L"nqp.EngineTest";
constexpr DWORD kPumpSlice = 5;  // milliseconds

void RegisterTestClass() {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = kClassName;
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH));
    RegisterClassW(&windowClass);
}

void PumpOnce() {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, kPumpSlice, QS_ALLINPUT);
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        const HWND root = GetAncestor(message.hwnd, GA_ROOT);
        const bool dialog = (GetWindowLongPtrW(root, GWL_EXSTYLE) & WS_EX_CONTROLPARENT) != 0;
        if (dialog && IsDialogMessageW(root, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

}  // namespace

std::string Clip(const std::string& name) {
    const char* folder = std::getenv("NQP_TEST_CLIPS");
    return (folder != nullptr ? std::string(folder) : std::string("clips")) + "\\" + name;
}

bool PumpUntil(const std::function<bool()>& condition, std::chrono::milliseconds deadline) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        PumpOnce();
    }
    return true;
}

void PumpFor(std::chrono::milliseconds time) {
    PumpUntil([] { return false; }, time);
}

EngineWindow::EngineWindow() : EngineWindow(platform::CreateMediaEngine()) {}

EngineWindow::EngineWindow(std::unique_ptr<core::MediaEngine> mediaEngine)
    : engine_(std::move(mediaEngine)) {
    RegisterTestClass();
    window_ = CreateWindowExW(0, kClassName, L"engine test", WS_POPUP | WS_CLIPCHILDREN, 100, 100,
                              640, 360, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
    ShowWindow(window_, SW_SHOW);
    engine_->PlayStateChange.calls<&EngineWindow::OnStateChange>(this);
    engine_->MouseMove.calls<&EngineWindow::OnMove>(this);
    engine_->MouseDown.calls<&EngineWindow::OnPress>(this);
    engine_->MouseUp.calls<&EngineWindow::OnRelease>(this);
    engine_->Attach(window_, kControlId);
    ResizeClient(640, 360);
}

EngineWindow::~EngineWindow() {
    onStateChange = nullptr;
    engine_->Detach();
    DestroyWindow(window_);
}

HWND EngineWindow::View() const {
    return FindWindowExW(window_, nullptr, platform::script::kWindowClass, nullptr);
}

void EngineWindow::ResizeClient(int width, int height) {
    SetWindowPos(window_, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER);
    const int dpi = static_cast<int>(GetDpiForWindow(window_));
    engine_->SetWidth(base::PixelsToTwips(width, dpi));
    engine_->SetHeight(base::PixelsToTwips(height, dpi));
}

int EngineWindow::CountOf(const Transition& transition) const {
    return static_cast<int>(std::count_if(raised.begin(), raised.end(), [&](const Raised& entry) {
        return entry.transition == transition;
    }));
}

bool EngineWindow::WaitForEnd(std::chrono::milliseconds deadline) {
    return PumpUntil([&] { return CountOf(kClipEnded) > 0; }, deadline);
}

void EngineWindow::OnStateChange(PlayState from, PlayState to) {
    raised.push_back({{from, to}, engine_->CurrentPosition(), engine_->Duration()});
    if (onStateChange) onStateChange(from, to);
}

void EngineWindow::OnPress(const base::MouseEvent& mouse) {
    presses.push_back(mouse);
    if (onPress) onPress(mouse);
}

COLORREF ScreenPixel(int x, int y) {
    const HDC screen = GetDC(nullptr);
    const COLORREF colour = GetPixel(screen, x, y);
    ReleaseDC(nullptr, screen);
    return colour;
}

COLORREF PixelOf(HWND window, int x, int y) {
    POINT point{x, y};
    ClientToScreen(window, &point);
    return ScreenPixel(point.x, point.y);
}

bool IsNear(COLORREF colour, COLORREF expected) {
    constexpr int kTolerance = 48;
    const auto close = [](int a, int b) { return std::abs(a - b) <= kTolerance; };
    return close(GetRValue(colour), GetRValue(expected)) &&
           close(GetGValue(colour), GetGValue(expected)) &&
           close(GetBValue(colour), GetBValue(expected));
}

}  // namespace nqp::test
