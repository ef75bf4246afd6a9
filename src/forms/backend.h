#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "base/input.h"
#include "forms/state.h"

// What stands behind the windows. Two backends implement the functions at the end, one on the
// platform and one without any window for tests; a program links exactly one of them.
namespace nqp::forms {

class Menu;

// Reported by the backend, on the window thread. Nothing comes back out as an exception.
class ControlEvents {
public:
    virtual void OnClick() noexcept = 0;
    virtual void OnDoubleClick() noexcept = 0;
    virtual void OnMouseDown(const base::MouseEvent& mouse) noexcept = 0;
    virtual void OnMouseMove(const base::MouseEvent& mouse) noexcept = 0;
    virtual void OnMouseUp(const base::MouseEvent& mouse) noexcept = 0;
    virtual void OnMouseLeave() noexcept = 0;
    // The control has the focus, and its form did not use the key.
    virtual void OnKeyDown(const base::KeyEvent& key) noexcept = 0;
    virtual void OnTextTyped(const std::string& text) noexcept = 0;
    virtual void OnValueChanged(int value) noexcept = 0;
    virtual void OnFocusLost() noexcept = 0;
    // The person let go of files over the control.
    virtual void OnFilesDropped(const std::vector<std::string>& paths) noexcept = 0;

protected:
    ~ControlEvents() = default;
};

class WindowEvents {
public:
    virtual void OnBoundsChanged(const base::Rect& bounds) noexcept = 0;
    // A person came to the window from another one of the program that this one had not opened.
    virtual void OnActivated() noexcept = 0;
    virtual void OnDeactivated() noexcept = 0;
    // The same twips are other pixels now.
    virtual void OnResolutionChanged() noexcept = 0;
    virtual void OnCloseRequested() noexcept = 0;
    virtual void OnMouseDown(const base::MouseEvent& mouse) noexcept = 0;
    virtual void OnMouseMove(const base::MouseEvent& mouse) noexcept = 0;
    virtual void OnMouseUp(const base::MouseEvent& mouse) noexcept = 0;
    // True when the window used the key; nobody else then gets it.
    virtual bool OnKeyDown(const base::KeyEvent& key) noexcept = 0;
    // The person let go of files over the window, outside of controls that take them.
    virtual void OnFilesDropped(const std::vector<std::string>& paths) noexcept = 0;
    // The platform took the window away without being asked.
    virtual void OnDestroyed() noexcept = 0;

protected:
    ~WindowEvents() = default;
};

// What a list box has beside: which lines are selected is known by the backend alone.
class ListPeer {
public:
    // Ascending.
    virtual std::vector<int> SelectedLines() const = 0;
    // The one the person came to last; -1 for none.
    virtual int FocusedLine() const = 0;
    // These, which ascend, and no others.
    virtual void SelectLines(std::span<const int> lines) = 0;
    // As if the person had come to it; brings it into sight.
    virtual void FocusLine(int line) = 0;

protected:
    ~ListPeer() = default;
};

// The backend's side of a control; lives from its window's load to its unload.
class ControlPeer {
public:
    virtual ~ControlPeer() = default;
    // The state has changed; shows it.
    virtual void Update() = 0;
    virtual void SetFocus() = 0;
    virtual bool HasFocus() const = 0;
    // Null for what is no list box.
    virtual ListPeer* AsList() { return nullptr; }
    // Reports nothing more; its end follows from the message loop.
    virtual void Retire() = 0;
};

// The number a window's move or size loop is started with.
enum class HitCode : int { Caption = 2, Right = 11, Bottom = 15, BottomRight = 17 };

// The backend's side of a window; its creation makes the window, hidden, and its end destroys it.
class WindowPeer {
public:
    virtual ~WindowPeer() = default;
    // Hides the window and reports nothing more; its end follows from the message loop, so that a
    // handler may unload the window whose event it handles.
    virtual void Retire() = 0;
    virtual void Show() = 0;  // and makes it the active window
    // Shows it, calls back, and returns when it is hidden or retired, or the program ends. The
    // other windows of the program take no input meanwhile.
    virtual void ShowModal(const std::function<void()>& shown) = 0;
    virtual void ShowInactive() = 0;
    virtual void ShowOnTop() = 0;  // topmost, without becoming active
    virtual void Hide() = 0;
    virtual void Move(const base::Rect& bounds) = 0;
    // As they are on the screen: whole pixels.
    virtual base::Rect Bounds() const = 0;
    virtual base::Twips TwipsPerPixel() const = 0;
    // Twips of the screen to one twip inside the window; other than 1 where the window's monitor
    // has another resolution than the system.
    virtual float ScreenScale() const = 0;
    // Of the area inside the frame, twips of the window.
    virtual base::Size ClientSize() const = 0;
    virtual void SetCaption(const std::string& caption) = 0;
    // Covers the whole monitor from now on, or as soon as it is shown.
    virtual void Maximize() = 0;
    virtual bool Maximized() const = 0;
    virtual void SetTopmost(bool topmost) = 0;
    virtual void BringToFront() = 0;
    virtual void SetPointer(Pointer pointer) = 0;
    virtual void SetBackdrop(const Backdrop& backdrop) = 0;
    // Runs the platform's own move or size loop; returns when the button is let go.
    virtual void Drag(HitCode code) = 0;
    // Returns when the menu is closed; the chosen item's click has then been handled.
    // At the pointer, or at a place inside the window.
    virtual void PopUp(Menu& menu, const base::Point* at) = 0;
    virtual base::NativeWindow Handle() const = 0;
};

// The opener, when there is one, stays below the new window.
std::unique_ptr<WindowPeer> CreateWindowPeer(const WindowState& state, WindowEvents& events,
                                             WindowPeer* opener);
std::unique_ptr<ControlPeer> CreateControlPeer(const ControlState& state, ControlEvents& events,
                                               WindowPeer& window);

// Calls back every so many milliseconds until it is destroyed.
class TimerPeer {
public:
    virtual ~TimerPeer() = default;
};
std::unique_ptr<TimerPeer> CreateTimerPeer(int milliseconds, std::function<void()> tick);

// Handles messages until the condition holds, which is asked after each of them, or until the
// program is to end. Whoever makes the condition true elsewhere must see to it that a message
// comes.
void RunMessagesUntil(const std::function<bool()>& condition);
// Handles the messages that are waiting.
void RunWaitingMessages();

// Runs the task from the message loop, after the event that is being handled.
void Post(std::function<void()> task);

// The main monitor, its task bar included.
base::Size ScreenSize();
// The smallest rectangle around all monitors, and the part of the monitor around a point that no
// task bar covers.
base::Rect VirtualScreen();
base::Rect WorkAreaAt(const base::Point& point);
// Where the pointer was when the message that is being handled was made.
base::Point PointerOnScreen();

}  // namespace nqp::forms
