#pragma once

#include <windows.h>

#include <cstdint>

#include "base/input.h"
#include "platform/message_window.h"

namespace nqp::platform {

// What the video view tells its owner. Each call is the last thing that the view does with a
// message, so the owner may destroy the view in it.
class VideoViewClient {
public:
    virtual void OnMouseMove(const base::MouseEvent& mouse) = 0;
    virtual void OnMouseDown(const base::MouseEvent& mouse) = 0;
    virtual void OnMouseUp(const base::MouseEvent& mouse) = 0;
    virtual void OnPictureAreaChanged() = 0;
    // Some time after the last call of AskForPicture.
    virtual void OnPictureWanted() = 0;
    virtual void OnGraphEvent() = 0;
    virtual void OnLeaveFullScreen() = 0;
    virtual std::intptr_t OnScriptMessage(int number, std::intptr_t value) = 0;

protected:
    ~VideoViewClient() = default;
};

// Posted to the view by the graph when something happened.
inline constexpr UINT kGraphEventMessage = WM_APP + 1;

// The mouse message in the coordinates of `origin`, a window that need not be the receiver.
base::MouseEvent ToMouseEvent(HWND receiver, HWND origin, UINT message, WPARAM wParam,
                              LPARAM lParam);

// The control's own window inside the video window: black, with the picture as its child.
class VideoView final : public MessageWindow {
public:
    VideoView(HWND parent, int controlId, VideoViewClient& client);

    void Resize(PixelSize size);
    void SetVisible(bool visible);
    void SetCursorType(int type);
    // Asks the client for a held picture, once for a whole series of changes such as a resizing.
    void AskForPicture();

private:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    LRESULT OnMouseMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void ShowCursor() const;

    VideoViewClient& client_;
    const UINT scriptMessage_;
    int cursorType_;
};

}  // namespace nqp::platform
