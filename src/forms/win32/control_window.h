#pragma once

#include <windows.h>

#include "forms/backend.h"
#include "forms/win32/winapi/gdi.h"

namespace nqp::forms::win32 {

class Window;

// The window behind a control: one of the platform's own controls, or one that is drawn here
// ("nqp.Label", "nqp.Line", "nqp.PictureBox").
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
    void Retire() override;

    // A notification that the control sent to its window.
    virtual void Notify(UINT message, WORD code) = 0;

protected:
    ControlWindow(const ControlState& state, ControlEvents& events, Window& window);

    void Create(const wchar_t* className, DWORD style, DWORD extendedStyle = 0);
    HWND Hwnd() const { return hwnd_; }
    HFONT Font() const { return static_cast<HFONT>(font_.get()); }
    int Dpi() const;
    ControlEvents* Events() const { return events_; }
    // Shows what is particular to the kind.
    virtual void UpdateKind() = 0;

private:
    void Place();
    void UpdateFont();

    const ControlState& state_;
    ControlEvents* events_;  // null once retired
    Window& window_;
    HWND hwnd_ = nullptr;
    winapi::GdiObject font_;
    int fontDpi_ = 0;
    float fontScale_ = 0;
    bool fontBold_ = false;
    std::string toolTip_;
};

}  // namespace nqp::forms::win32
