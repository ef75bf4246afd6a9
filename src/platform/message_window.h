#pragma once

#include <windows.h>

#include "platform/pixels.h"

namespace nqp::platform {

// A window that lives as long as its object, and hands its messages to a member function. Nothing
// is thrown out of its window procedure. A handler may destroy the object while it handles a
// message, if it does not touch the object afterwards.
class MessageWindow {
public:
    MessageWindow() = default;
    MessageWindow(const MessageWindow&) = delete;
    MessageWindow& operator=(const MessageWindow&) = delete;
    virtual ~MessageWindow() { Destroy(); }

    // Null after the window was destroyed, be it from outside together with its parent.
    HWND Handle() const { return handle_; }
    PixelSize ClientSize() const;
    int Dpi() const;

protected:
    struct Description {
        const wchar_t* className = nullptr;
        const wchar_t* title = L"";
        UINT classStyle = 0;
        HBRUSH background = nullptr;
        DWORD style = 0;
        DWORD extendedStyle = 0;
        PixelRect place;
        HWND parentOrOwner = nullptr;
        int controlId = 0;  // of a child window
    };

    bool Create(const Description& description);
    // For destructors of derived classes: from here on no message arrives.
    void Destroy();
    virtual LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
        return DefWindowProcW(handle_, message, wParam, lParam);
    }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam,
                                      LPARAM lParam) noexcept;

    HWND handle_ = nullptr;
};

// One of the system's own cursors, by its IDC_ name.
HCURSOR SystemCursor(LPCTSTR name);

// Paints the invalid part of the window black.
void PaintBlack(HWND window);

}  // namespace nqp::platform
