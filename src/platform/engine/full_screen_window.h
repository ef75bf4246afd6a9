#pragma once

#include "platform/engine/video_view.h"

namespace nqp::platform {

// Covers the monitor that holds the video view, in black, and takes the picture as its child.
// Escape, a double click or closing it asks the client to leave. A right press is reported in the
// coordinates of the view, so that a menu opens under the pointer; the left button is not, because
// there is no window to drag.
class FullScreenWindow final : public MessageWindow {
public:
    FullScreenWindow(HWND view, VideoViewClient& client);
    ~FullScreenWindow() override;

private:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    LRESULT OnKeyMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void CoverMonitor();
    void OnPointerMoved();
    void HidePointer();
    void ShowPointer() const;

    const HWND view_;
    VideoViewClient& client_;
    POINT pointer_{};  // on the screen
    bool pointerHidden_ = false;
};

}  // namespace nqp::platform
