#pragma once

#include <memory>
#include <string>
#include <vector>

#include "forms/backend.h"

namespace nqp::forms {

class Control;
class TimerControl;

// A window. The object lives as long as the program and may be loaded and unloaded many times; the
// window itself, its controls on the screen and its timers exist from load to unload. Positions are
// twips of the whole screen, sizes twips at the window's own resolution.
//
// A window class overrides the handlers it needs. What a handler throws ends that handler only.
class Form : private WindowEvents {
public:
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const WindowState& State() const { return state_; }
    const std::vector<Control*>& Controls() const { return controls_; }

    // Creates the window, hidden, and runs Form_Load; a loaded window is left as it is.
    void Load();
    // Loads, shows and activates.
    void Show();
    // Shows the window before the others of the program, which take no input meanwhile, and returns
    // when it has been hidden or unloaded. To be called inside a handler of another window, which
    // may itself be gone afterwards.
    void ShowModal();
    // Loads and shows, and leaves the window active that is; ShowOnTop above all others.
    void ShowInactive();
    void ShowOnTop();
    void Hide();
    // Runs Form_Unload, then the window goes. Safe inside a handler of this window.
    void Unload();
    bool Loaded() const { return peer_ != nullptr; }
    bool Visible() const { return visible_; }

    base::Twips Left() const { return state_.bounds.left; }
    base::Twips Top() const { return state_.bounds.top; }
    base::Twips Width() const { return state_.bounds.width; }
    base::Twips Height() const { return state_.bounds.height; }
    const base::Rect& Bounds() const { return state_.bounds; }
    void Move(const base::Rect& bounds);
    // Of the area inside the frame, twips of the window; empty while it is not loaded.
    base::Size ClientSize() const;
    // Covers the whole monitor that it is on, from now on or as soon as it is shown.
    void Maximize();
    bool Maximized() const { return peer_ && peer_->Maximized(); }
    const std::string& Caption() const { return state_.caption; }
    void SetCaption(const std::string& caption);
    // Of this window; meaningful while it is loaded.
    base::Twips TwipsPerPixel() const;
    // A point inside the window, and its whole extent, in twips of the screen.
    base::Point PointOnScreen(const base::Point& inWindow) const;
    base::Size ExtentOnScreen() const;

    // In the middle of an area of the screen, and whole on its monitor.
    void CentreOver(const base::Rect& area);

    // Changes neither place nor size.
    void SetTopmost(bool topmost);
    void BringToFront();
    void SetMousePointer(Pointer pointer);
    const Picture& BackgroundPicture() const { return state_.backdrop.picture; }
    // The design size and the stretch point stay those that the window was made with.
    void SetPicture(const Picture& picture);
    // Hands the held mouse button to the platform's move or size loop and returns when it ends.
    void Drag(HitCode code);
    // At the pointer, or at a place inside the window.
    void PopupMenu(Menu& menu);
    void PopupMenuAt(Menu& menu, base::Point inWindow);

    // To be called before Load: the window stays above its opener and goes with it, and a return
    // from it to its opener is no activation.
    void SetOpener(Form& opener) { opener_ = &opener; }

    // The window of the platform; null while unloaded and in tests without windows.
    base::NativeWindow Handle() const { return peer_ ? peer_->Handle() : nullptr; }

protected:
    explicit Form(const WindowState& state);
    ~Form();

    virtual void Form_Load() {}
    // The window came to the front of the program: it was shown, or a person came to it from
    // another window of the program that this one had not opened. A return from another program is
    // none.
    virtual void Form_Activate() {}
    virtual void Form_Deactivate() {}
    virtual void Form_Resize() {}
    virtual void Form_Unload() {}
    virtual void Form_MouseDown(const base::MouseEvent&) {}
    virtual void Form_MouseMove(const base::MouseEvent&) {}
    virtual void Form_MouseUp(const base::MouseEvent&) {}
    // Sees every key before the control that has the focus; true when it used the key.
    virtual bool Form_KeyDown(const base::KeyEvent&) { return false; }
    // Full paths, in the order of the drop; only a window whose state takesFiles gets them.
    virtual void Form_OLEDragDrop(const std::vector<std::string>&) {}
    // The system asks for the window to go: its close box, Alt+F4, the end of the log-on.
    virtual void CloseRequested() { Unload(); }

private:
    friend class Control;
    friend class TimerControl;

    void OnBoundsChanged(const base::Rect& bounds) noexcept override;
    void OnActivated() noexcept override;
    void OnDeactivated() noexcept override;
    void OnResolutionChanged() noexcept override;
    void OnCloseRequested() noexcept override;
    void OnMouseDown(const base::MouseEvent& mouse) noexcept override;
    void OnMouseMove(const base::MouseEvent& mouse) noexcept override;
    void OnMouseUp(const base::MouseEvent& mouse) noexcept override;
    bool OnKeyDown(const base::KeyEvent& key) noexcept override;
    void OnFilesDropped(const std::vector<std::string>& paths) noexcept override;
    void OnDestroyed() noexcept override;

    void PlaceOver(const base::Rect& area);
    void CreatePeers();
    void RetirePeers();

    WindowState state_;
    Form* opener_ = nullptr;
    bool visible_ = false;
    bool unloading_ = false;
    std::vector<Control*> controls_;
    std::vector<TimerControl*> timers_;
    std::unique_ptr<WindowPeer> peer_;
};

// Runs when the last loaded window has been unloaded; set once by the program.
void SetLastWindowUnloaded(void (*handler)());

}  // namespace nqp::forms
