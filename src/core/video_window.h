#pragma once

#include <cstdint>

#include "base/geometry.h"
#include "core/media_engine.h"

namespace nqp::core {

// What the remote window does with the video window.
class VideoWindow {
public:
    // The place and size the window remembers, twips; a width of 0 means that none was ever set.
    std::int32_t mX = 0;
    std::int32_t mY = 0;
    std::int32_t mW = 0;
    std::int32_t mH = 0;
    bool menu_showing = false;  // the context menu is open

    virtual MediaEngine& MediaPlayer1() = 0;

    virtual void LoadWindow() = 0;
    virtual void ShowWindow() = 0;
    virtual void HideWindow() = 0;
    // Out of sight while the remote is dragged, and back as it was, without becoming the active
    // window. The full-screen picture stays.
    virtual void HideForDrag() = 0;
    virtual void ShowAfterDrag() = 0;
    virtual void UnloadWindow() = 0;
    virtual base::Point VideoPosition() const = 0;
    // Of the window, twips of the screen.
    virtual base::Rect VideoBounds() const = 0;
    virtual void MoveVideo(base::Point topLeft) = 0;
    // Goes to the remembered place and size.
    virtual void PlaceWindow() = 0;
    virtual void MakeTopmost(bool topmost) = 0;
    virtual void BringForward() = 0;
    virtual void Form_Activate() = 0;

protected:
    ~VideoWindow() = default;
};

}  // namespace nqp::core
