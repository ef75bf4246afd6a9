#include "headless/headless.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <utility>

#include "forms/menu.h"

namespace nqp {
namespace test::headless {
namespace {

constexpr base::Size kScreen{19200, 14400};  // 1280 x 960 pixels
constexpr base::Twips kTaskBar = 600;
constexpr base::Twips kPixel = 15;
constexpr base::Size kDialogFrame{90, 540};

std::vector<Window*> windows;
std::vector<Control*> controls;
Window* active = nullptr;
std::deque<std::function<void()>> tasks;
std::deque<std::function<void()>> next_modals;
int modal_depth = 0;

base::Twips WholePixels(base::Twips twips) {
    return std::round(twips / kPixel) * kPixel;
}

base::Rect WholePixels(const base::Rect& bounds) {
    return {WholePixels(bounds.left), WholePixels(bounds.top), WholePixels(bounds.width),
            WholePixels(bounds.height)};
}

void RaiseToTop(Window* window) {
    std::erase(windows, window);
    windows.push_back(window);
}

bool OpenedBy(const Window& opened, const Window& opener) {
    for (const Window* owner = opened.owner; owner != nullptr; owner = owner->owner) {
        if (owner == &opener) return true;
    }
    return false;
}

// What the system does when the active window goes: its owner, else the next one down.
void ActivateAnother(const Window& gone) {
    Window* next = gone.owner != nullptr && gone.owner->visible ? gone.owner : nullptr;
    for (Window* window : windows) {
        if (next == nullptr || next != gone.owner) {
            if (window != &gone && window->visible) next = window;
        }
    }
    MakeActive(next);
}

// On a screen the test would wait for ever. An exception would end one handler, and no test.
[[noreturn]] void GiveUp(const char* reason) {
    std::fprintf(stderr, "%s\n", reason);
    std::abort();
}

class Timer;
std::vector<Timer*> timers;

class Timer final : public forms::TimerPeer {
public:
    Timer(int milliseconds, std::function<void()> tick)
        : milliseconds_(milliseconds), tick_(std::move(tick)) {
        timers.push_back(this);
    }
    ~Timer() override { std::erase(timers, this); }
    void LetPass(int milliseconds) {
        passed_ += milliseconds;
        if (passed_ < milliseconds_) return;
        passed_ = 0;
        tick_();
    }

private:
    int milliseconds_;
    int passed_ = 0;
    std::function<void()> tick_;
};

}  // namespace

void ActInModalLoop() {
    const auto act = std::move(next_modals.front());
    next_modals.pop_front();
    ++modal_depth;
    act();
    --modal_depth;
}

void OnNextModal(std::function<void()> act) {
    next_modals.push_back(std::move(act));
}

Window* ActiveWindow() {
    return active;
}

const std::vector<Window*>& Windows() {
    return windows;
}

const std::vector<Control*>& Controls() {
    return controls;
}

void MakeActive(Window* window, bool byPerson) {
    if (active == window) return;
    Window* before = std::exchange(active, window);
    if (window != nullptr) RaiseToTop(window);
    if (before != nullptr && before->events != nullptr) before->events->OnDeactivated();
    if (window == nullptr || window->events == nullptr || !byPerson) return;
    if (before != nullptr && !OpenedBy(*before, *window)) window->events->OnActivated();
}

// Like the platform's loop, not while a dialog is up.
void RunPostedTasks() {
    if (modal_depth > 0) return;
    while (!tasks.empty()) {
        const auto task = std::move(tasks.front());
        tasks.pop_front();
        task();
    }
}

void TickTimers() {
    constexpr int kMilliseconds = 100;
    const std::vector<Timer*> all = timers;
    for (Timer* timer : all)
        timer->LetPass(kMilliseconds);
}

Window::Window(const forms::WindowState& state, forms::WindowEvents& sink, Window* opener)
    : events(&sink),
      owner(opener),
      bounds(WholePixels(state.bounds)),
      caption(state.caption),
      topmost(state.topmost),
      pointer(state.pointer),
      backdrop(state.backdrop) {
    if (state.maximized) {
        maximized = true;
        bounds = {0, 0, kScreen.width, kScreen.height};
    }
    if (state.frame == forms::FrameStyle::Dialog) {
        framed = true;
        bounds.width += kDialogFrame.width;
        bounds.height += kDialogFrame.height;
    }
    windows.push_back(this);
}

Window::~Window() {
    std::erase(windows, this);
    if (active == this) active = nullptr;
}

void Window::Retire() {
    events = nullptr;
    Hide();
    std::erase(windows, this);
}

void Window::Show() {
    visible = true;
    MakeActive(this);
}

void Window::ShowModal(const std::function<void()>& shown) {
    Show();
    shown();
    if (next_modals.empty()) GiveUp("nobody closes the dialog");
    ActInModalLoop();
    if (events != nullptr && visible) GiveUp("the dialog was not closed");
}

base::Size Window::ClientSize() const {
    if (!framed) return {bounds.width, bounds.height};
    return {bounds.width - kDialogFrame.width, bounds.height - kDialogFrame.height};
}

void Window::Maximize() {
    maximized = true;
    Move({0, 0, kScreen.width, kScreen.height});
}

void Window::ShowOnTop() {
    visible = true;
    topmost = true;
}

void Window::Hide() {
    visible = false;
    if (active == this) ActivateAnother(*this);
}

void Window::Move(const base::Rect& to) {
    const base::Rect before = std::exchange(bounds, WholePixels(to));
    if (before != bounds && events != nullptr) events->OnBoundsChanged(bounds);
}

base::Twips Window::TwipsPerPixel() const {
    return kPixel;
}

// The system activates a window on the screen whose place in the order it changes.
void Window::SetTopmost(bool on) {
    topmost = on;
    if (visible) MakeActive(this);
}

void Window::BringToFront() {
    if (visible) MakeActive(this);
}

void Window::Drag(forms::HitCode code) {
    const auto drag = std::exchange(nextDrag, nullptr);
    if (drag) Move(drag(code));
}

void Window::PopUp(forms::Menu& menu, const base::Point*) {
    const std::string choice = std::exchange(nextMenuChoice, {});
    for (forms::MenuItem* item : menu.Items()) {
        if (item->Name() == choice) item->Click();
    }
}

Control::Control(const forms::ControlState& shown, forms::ControlEvents& sink, Window& parent)
    : events(&sink), window(parent), state(shown) {
    controls.push_back(this);
    Update();
}

Control::~Control() {
    std::erase(controls, this);
    if (HasFocus()) window.focus = nullptr;
}

void Control::SetFocus() {
    Control* before = std::exchange(window.focus, this);
    if (before != nullptr && before != this && before->events != nullptr) {
        before->events->OnFocusLost();
    }
}

void Control::Update() {
    text = state.text;
    visible = state.visible;
    if (!visible && HasFocus()) window.focus = nullptr;
}

}  // namespace test::headless

namespace forms {

using namespace test;

std::unique_ptr<WindowPeer> CreateWindowPeer(const WindowState& state, WindowEvents& events,
                                             WindowPeer* opener) {
    return std::make_unique<headless::Window>(state, events,
                                              static_cast<headless::Window*>(opener));
}

std::unique_ptr<ControlPeer> CreateControlPeer(const ControlState& state, ControlEvents& events,
                                               WindowPeer& window) {
    return std::make_unique<headless::Control>(state, events,
                                               static_cast<headless::Window&>(window));
}

std::unique_ptr<TimerPeer> CreateTimerPeer(int milliseconds, std::function<void()> tick) {
    return std::make_unique<headless::Timer>(milliseconds, std::move(tick));
}

void RunMessagesUntil(const std::function<bool()>& condition) {
    if (condition()) return;
    if (headless::next_modals.empty()) headless::GiveUp("nobody ends the wait");
    headless::ActInModalLoop();
    if (!condition()) headless::GiveUp("the wait was not ended");
}

void RunWaitingMessages() {}

void Post(std::function<void()> task) {
    headless::tasks.push_back(std::move(task));
}

base::Size ScreenSize() {
    return headless::kScreen;
}

base::Rect VirtualScreen() {
    return {0, 0, headless::kScreen.width, headless::kScreen.height};
}

base::Point PointerOnScreen() {
    return {headless::kScreen.width, headless::kScreen.height};  // over the notification area
}

base::Rect WorkAreaAt(const base::Point&) {
    return {0, 0, headless::kScreen.width, headless::kScreen.height - headless::kTaskBar};
}

}  // namespace forms
}  // namespace nqp
