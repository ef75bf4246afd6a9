#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/media_engine.h"

namespace nqp::test {

using core::PlayState;
using Transition = std::pair<PlayState, PlayState>;
using namespace std::chrono_literals;

inline constexpr int kControlId = 321;
inline constexpr Transition kClipEnded{PlayState::Playing, PlayState::Stopped};

// Full path of one of the test clips (UTF-8).
std::string Clip(const std::string& name);

// Lets the window thread work until the condition holds; false when the deadline passes first.
bool PumpUntil(const std::function<bool()>& condition, std::chrono::milliseconds deadline = 10s);
void PumpFor(std::chrono::milliseconds time);

// A top-level window with a media engine in it, and a record of what the engine raised.
class EngineWindow {
public:
    explicit EngineWindow(std::unique_ptr<core::MediaEngine> mediaEngine);
    EngineWindow();
    EngineWindow(const EngineWindow&) = delete;
    EngineWindow& operator=(const EngineWindow&) = delete;
    ~EngineWindow();

    HWND Window() const { return window_; }
    // The control's own window.
    HWND View() const;
    void ResizeClient(int width, int height);

    core::MediaEngine& engine() { return *engine_; }

    struct Raised {
        Transition transition;
        double position;
        double duration;
    };
    std::vector<Raised> raised;
    std::vector<base::MouseEvent> moves;
    std::vector<base::MouseEvent> presses;
    std::vector<base::MouseEvent> releases;
    // Called for every change of state, after it is recorded.
    std::function<void(PlayState, PlayState)> onStateChange;
    std::function<void(const base::MouseEvent&)> onPress;

    int CountOf(const Transition& transition) const;
    bool WaitForEnd(std::chrono::milliseconds deadline = 10s);

private:
    void OnStateChange(PlayState from, PlayState to);
    void OnMove(const base::MouseEvent& mouse) { moves.push_back(mouse); }
    void OnPress(const base::MouseEvent& mouse);
    void OnRelease(const base::MouseEvent& mouse) { releases.push_back(mouse); }

    HWND window_ = nullptr;
    std::unique_ptr<core::MediaEngine> engine_;
};

// Colour of a pixel of the screen, 0xBBGGRR.
COLORREF ScreenPixel(int x, int y);
// Colour at a place of the window's client area as the screen shows it.
COLORREF PixelOf(HWND window, int x, int y);
bool IsNear(COLORREF colour, COLORREF expected);

}  // namespace nqp::test
