#pragma once

#include <windows.h>

#include "forms/backend.h"
#include "forms/win32/winapi/gdi.h"

namespace nqp::forms::win32 {

class Window;

// Sent to a control's window: press the control, as a click would.
inline constexpr UINT kPress = WM_APP + 1;

// The window behind a control: one of the platform's own controls, or one that is drawn here
// ("nqp.Label", "nqp.PictureBox").
class ControlWindow : public ControlPeer {
public:
    // The control behind a handle; null for one that is none of ours.
    static ControlWindow* Of(HWND hwnd);

    ~ControlWindow() override;
    ControlWindow(const ControlWindow&) = delete;
    ControlWindow& operator=(const ControlWindow&) = delete;

    const ControlState& State() const { return state_; }

    void Update() override;
    void SetFocus() override;
    bool HasFocus() const override;
    void Retire() override;

    // A notification that the control sent to its window.
    virtual void Notify(UINT message, WORD code) = 0;
    // A button or a list whose drawing is left to its window.
    virtual void DrawItem(const DRAWITEMSTRUCT&) {}
    // An assistive tool, or a tool outside the program, presses the control.
    void Press();

protected:
    ControlWindow(const ControlState& state, ControlEvents& events, Window& window);

    void Create(const wchar_t* className, DWORD style, DWORD extendedStyle = 0);
    HWND Hwnd() const { return hwnd_; }
    HFONT Font() const { return static_cast<HFONT>(font_.get()); }
    int Dpi() const;
    // Tells assistive tools of a value that a person has changed; what changes by itself is not
    // worth an interruption.
    void TellValue();
    Window& Parent() const { return window_; }
    ControlEvents* Events() const { return events_; }
    // Every message of the window once it is made; answers what DefaultAnswer does not.
    virtual LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    // What the platform's class does with a message.
    LRESULT DefaultAnswer(UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    // Shows what is particular to the kind.
    virtual void UpdateKind() = 0;
    virtual void BecameVisible() {}
    // In pixels of the window.
    virtual RECT PlaceOnScreen() const;

private:
    static LRESULT CALLBACK Procedure(HWND hwnd, UINT message, WPARAM wParam,
                                      LPARAM lParam) noexcept;
    void Place();
    void UpdateFont();
    winapi::GdiObject FittingFont() const;
    void UpdateVisibility();
    void UpdateAccessibility();

    const ControlState& state_;
    ControlEvents* events_;  // null once retired
    Window& window_;
    HWND hwnd_ = nullptr;
    WNDPROC classProcedure_ = nullptr;
    RECT place_{};
    winapi::GdiObject font_;
    int fontDpi_ = 0;
    float fontScale_ = 0;
    bool fontBold_ = false;
    std::string toolTip_;
    std::string accessibleName_;
    std::string accessibleValue_;
};

}  // namespace nqp::forms::win32
