#pragma once

#include <string>
#include <vector>

#include "forms/win32/winapi/gdi.h"
#include "platform/message_window.h"

namespace nqp::platform {

// A modeless dialog built in code: the message font, sizes in pixels at 96 dpi that follow the
// monitor's resolution, Escape closes. Handle() is null once it is closed. It is marked as a parent
// of controls, by which the message loop knows that Tab and Enter move and press in it.
class DialogWindow : public MessageWindow {
public:
    ~DialogWindow() override;

    void BringToFront() const;

protected:
    bool CreateDialogWindow(const wchar_t* className, const wchar_t* title, HWND owner,
                            PixelSize designSize);
    HWND AddControl(const wchar_t* className, const wchar_t* text, DWORD style, int id,
                    const PixelRect& designPlace);
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    virtual void OnCommand(int /*id*/, int /*notification*/) {}
    virtual void OnTimer() {}

private:
    struct Control {
        HWND window;
        PixelRect designPlace;
    };

    int Scaled(int designPixels) const;
    PixelRect CentredOver(HWND owner, PixelSize designSize) const;
    void ApplyResolution();

    std::vector<Control> controls_;
    winapi::GdiObject font_;
};

// Sets the text only where it differs, so that nothing flickers.
void UpdateText(HWND control, const std::wstring& text);

}  // namespace nqp::platform
