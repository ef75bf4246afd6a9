#include "platform/engine/video_view.h"

#include <windowsx.h>

#include "base/geometry.h"
#include "core/media_engine.h"
#include "forms/win32/winapi/mouse.h"
#include "platform/engine/script_messages.h"

namespace nqp::platform {

namespace {

constexpr UINT_PTR kPictureTimer = 1;
constexpr UINT kPictureDelay = 100;  // milliseconds

}  // namespace

base::MouseEvent ToMouseEvent(HWND receiver, HWND origin, UINT message, WPARAM wParam,
                              LPARAM lParam) {
    POINT point{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    MapWindowPoints(receiver, origin, &point, 1);
    const auto mouse = winapi::ReadMouse(message, wParam, MAKELPARAM(point.x, point.y),
                                         static_cast<int>(GetDpiForWindow(origin)));
    return mouse ? mouse->event : base::MouseEvent{};
}

VideoView::VideoView(HWND parent, int controlId, VideoViewClient& client)
    : client_(client),
      scriptMessage_(RegisterWindowMessageW(script::kMessageName)),
      cursorType_(core::kNormalCursor) {
    Create({.className = script::kWindowClass,
            .classStyle = CS_DBLCLKS,
            .style = WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
            .place = {},
            .parentOrOwner = parent,
            .controlId = controlId});
}

void VideoView::Resize(PixelSize size) {
    SetWindowPos(Handle(), nullptr, 0, 0, size.width, size.height,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void VideoView::SetVisible(bool visible) {
    ShowWindow(Handle(), visible ? SW_SHOWNA : SW_HIDE);
}

void VideoView::AskForPicture() {
    SetTimer(Handle(), kPictureTimer, kPictureDelay, nullptr);
}

LRESULT VideoView::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == scriptMessage_) {
        return client_.OnScriptMessage(static_cast<int>(wParam), lParam);
    }
    switch (message) {
        case kGraphEventMessage:
            client_.OnGraphEvent();
            return 0;
        case WM_TIMER:
            KillTimer(Handle(), kPictureTimer);
            client_.OnPictureWanted();
            return 0;
        case WM_ERASEBKGND:
            return 1;  // WM_PAINT covers everything: no flicker
        case WM_PAINT:
            PaintBlack(Handle());
            return 0;
        case WM_SIZE:
            client_.OnPictureAreaChanged();
            return 0;
        case WM_SETCURSOR:
            if (LOWORD(lParam) != HTCLIENT) break;
            ShowCursor();
            return TRUE;
        default:
            if (message >= WM_MOUSEFIRST && message <= WM_MBUTTONDBLCLK) {
                return OnMouseMessage(message, wParam, lParam);
            }
    }
    return MessageWindow::OnMessage(message, wParam, lParam);
}

LRESULT VideoView::OnMouseMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const base::MouseEvent mouse = ToMouseEvent(Handle(), Handle(), message, wParam, lParam);
    switch (message) {
        case WM_MOUSEMOVE:
            client_.OnMouseMove(mouse);
            break;
        case WM_LBUTTONUP:
        case WM_RBUTTONUP:
        case WM_MBUTTONUP:
            client_.OnMouseUp(mouse);
            break;
        default:
            client_.OnMouseDown(mouse);
            break;  // a double click is one more press
    }
    return 0;
}

void VideoView::SetCursorType(int type) {
    if (cursorType_ == type) return;
    cursorType_ = type;
    // The system asks for the shape before it reports the move that changed it.
    POINT position{};
    GetCursorPos(&position);
    if (WindowFromPoint(position) == Handle()) ShowCursor();
}

void VideoView::ShowCursor() const {
    const bool sizing = cursorType_ == core::kSizingCursor;
    SetCursor(SystemCursor(sizing ? IDC_SIZENWSE : IDC_ARROW));
}

}  // namespace nqp::platform
