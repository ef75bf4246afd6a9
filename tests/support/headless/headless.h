#pragma once

#include <functional>
#include <string>
#include <vector>

#include "forms/backend.h"

// The backend without windows: it keeps what a screen would show, as whole pixels at 96 dpi.
namespace nqp::test::headless {

class Control;

class Window final : public forms::WindowPeer {
public:
    Window(const forms::WindowState& state, forms::WindowEvents& events, Window* owner);
    ~Window() override;

    void Retire() override;
    void Show() override;
    void ShowModal(const std::function<void()>& shown) override;
    void ShowInactive() override { visible = true; }
    void ShowOnTop() override;
    void Hide() override;
    void Move(const base::Rect& bounds) override;
    base::Rect Bounds() const override { return bounds; }
    base::Twips TwipsPerPixel() const override;
    float ScreenScale() const override { return 1.0F; }
    base::Size ClientSize() const override;
    void SetCaption(const std::string& shown) override { caption = shown; }
    void Maximize() override;
    bool Maximized() const override { return maximized; }
    void SetTopmost(bool on) override;
    void BringToFront() override;
    void SetPointer(forms::Pointer shape) override { pointer = shape; }
    void SetBackdrop(const forms::Backdrop& shown) override { backdrop = shown; }
    void Drag(forms::HitCode code) override;
    void PopUp(forms::Menu& menu, const base::Point* at) override;
    // Not a window of the platform, but as good for telling windows apart.
    base::NativeWindow Handle() const override { return const_cast<Window*>(this); }

    forms::WindowEvents* events;
    Window* owner;
    base::Rect bounds;
    bool visible = false;
    std::string caption;
    bool topmost = false;
    bool maximized = false;
    bool framed = false;
    forms::Pointer pointer;
    forms::Backdrop backdrop;
    Control* focus = nullptr;
    std::function<base::Rect(forms::HitCode)> nextDrag;
    std::string nextMenuChoice;
};

class Control final : public forms::ControlPeer, public forms::ListPeer {
public:
    Control(const forms::ControlState& state, forms::ControlEvents& events, Window& window);
    ~Control() override;

    void Update() override;
    void SetFocus() override;
    bool HasFocus() const override { return window.focus == this; }
    void Retire() override { events = nullptr; }
    forms::ListPeer* AsList() override {
        return state.kind == forms::ControlKind::ListBox ? this : nullptr;
    }
    std::vector<int> SelectedLines() const override { return selected; }
    int FocusedLine() const override { return focusedLine; }
    void SelectLines(std::span<const int> lines) override {
        selected.assign(lines.begin(), lines.end());
    }
    void FocusLine(int line) override { focusedLine = line; }

    forms::ControlEvents* events;
    Window& window;
    const forms::ControlState& state;
    // What was shown last.
    std::string text;
    bool visible = false;
    std::vector<int> selected;
    int focusedLine = -1;
};

// What happens while the next window is shown modally; the last thing must hide or unload it. Or
// while the program waits for a state, which must come of it.
void OnNextModal(std::function<void()> act);
void ActInModalLoop();
// The window that is active; null while another program is.
Window* ActiveWindow();
void MakeActive(Window* window, bool byPerson = false);
// Those that exist and are not retired.
const std::vector<Window*>& Windows();
const std::vector<Control*>& Controls();
void RunPostedTasks();
// A tenth of a second passes.
void TickTimers();

}  // namespace nqp::test::headless
