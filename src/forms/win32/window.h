#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <vector>

#include "forms/backend.h"
#include "forms/win32/graphics.h"
#include "forms/win32/modal_state.h"

namespace nqp::forms::win32 {

class ControlWindow;
class LineControl;

// A window of the platform behind a form. Its class is "nqp." and the form's name.
class Window final : public WindowPeer {
public:
    Window(const WindowState& state, WindowEvents& events, HWND owner);
    ~Window() override;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    // The window behind a handle; null for one that is none of ours.
    static Window* Of(HWND hwnd);

    HWND Hwnd() const { return hwnd_; }
    int Dpi() const { return dpi_; }
    bool IsDialog() const { return state_.frame == FrameStyle::Dialog; }
    bool TabMoves() const { return state_.tabMoves || IsDialog(); }
    // True when the form used the key.
    bool HandleKey(WPARAM key);
    void SetToolTip(HWND control, const std::string& text);
    // The message loop passes on every message of the mouse in this window.
    void ShowToolTips(MSG message) const;

    // Called by the controls as they come and go.
    void Add(ControlWindow& control) { controls_.push_back(&control); }
    void Remove(ControlWindow& control);
    void Add(LineControl& line) { lines_.push_back(&line); }
    void Remove(LineControl& line);

    // What lies behind the controls, in the window's coordinates: colour, backdrop and lines.
    void DrawFace(HDC target);
    void FaceChanged();

    // Of this window; while another one is active, the control that gets the focus again with it.
    HWND Focus() const;
    void SetFocusTo(HWND control);

    void Retire() override;
    void Show() override;
    void ShowModal(const std::function<void()>& shown) override;
    void ShowInactive() override;
    void ShowOnTop() override;
    void Hide() override;
    void Move(const base::Rect& bounds) override;
    base::Rect Bounds() const override;
    base::Twips TwipsPerPixel() const override;
    float ScreenScale() const override;
    base::Size ClientSize() const override;
    void SetCaption(const std::string& caption) override;
    void Maximize() override;
    bool Maximized() const override { return IsZoomed(hwnd_) != 0; }
    void SetTopmost(bool topmost) override;
    void BringToFront() override;
    void SetPointer(Pointer pointer) override;
    void SetBackdrop(const Backdrop& backdrop) override;
    void Drag(HitCode code) override;
    void PopUp(Menu& menu, const base::Point* at) override;
    base::NativeWindow Handle() const override { return hwnd_; }

private:
    static LRESULT CALLBACK Procedure(HWND hwnd, UINT message, WPARAM wParam,
                                      LPARAM lParam) noexcept;
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    bool HandleMouse(UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    bool HandleNotification(UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    LRESULT ColourOfControl(HWND control, HDC canvas) noexcept;
    void Create(HWND owner);
    void GoToControl(HWND control);
    void Activate();
    int ShowCommand() const;
    void LeaveToOwner();
    void HandleActivation(bool active, HWND other);
    bool Opened(HWND other) const;
    void RememberFocus(bool active);
    void ChangeDpi(int dpi, const RECT& suggested);
    void Paint();
    void Resized();
    const Canvas* DrawnBackdrop();
    LRESULT DefaultButton() const;

    WindowState state_;
    WindowEvents* events_ = nullptr;  // null until created and once retired
    HWND hwnd_ = nullptr;
    int dpi_ = base::kDesignDpi;
    HWND focus_ = nullptr;  // the control that had the focus last
    bool active_ = false;
    bool deactivating_ = false;
    std::optional<ModalState> modal_;  // while it is shown modally
    HWND toolTips_ = nullptr;
    std::vector<ControlWindow*> controls_;
    std::vector<LineControl*> lines_;
    base::Bitmap scaledBackdrop_;  // at its design size and this resolution
    bool backdropIsOpaque_ = true;
    std::unique_ptr<Canvas> backdrop_;  // at the window's size; null until it is drawn
};

}  // namespace nqp::forms::win32
