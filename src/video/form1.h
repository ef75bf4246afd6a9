#pragma once

#include "core/media_engine.h"
#include "core/remote_window.h"
#include "core/video_window.h"
#include "forms/form.h"
#include "forms/menu.h"

namespace nqp::video {

class Form5;

// The borderless video window: it holds the media player control over its whole client area, is
// moved and sized by dragging its surface, opens the context menu, and reports the end of a clip.
class Form1 final : public forms::Form, public core::VideoWindow {
public:
    explicit Form1(core::MediaEngine& engine);

    // To be called before the window is loaded; both outlive it.
    void Connect(core::RemoteWindow& remote, Form5& contextMenu);

    void open_media();
    void pause_media();
    void play_media();

    core::MediaEngine& MediaPlayer1() override { return MediaPlayer1_; }
    void LoadWindow() override { Load(); }
    void ShowWindow() override { Show(); }
    void HideWindow() override;
    void HideForDrag() override { Hide(); }
    void ShowAfterDrag() override;
    void UnloadWindow() override { Unload(); }
    base::Point VideoPosition() const override { return {Left(), Top()}; }
    base::Rect VideoBounds() const override { return Bounds(); }
    void MoveVideo(base::Point topLeft) override {
        Move({topLeft.x, topLeft.y, Width(), Height()});
    }
    void PlaceWindow() override;
    void MakeTopmost(bool topmost) override { SetTopmost(topmost); }
    void BringForward() override { BringToFront(); }
    void Form_Activate() override;

    // The menu of the icon in the notification area.
    forms::Menu med{"med", "med"};
    forms::MenuItem i1{med, "i1", "Show"};
    forms::MenuItem i2{med, "i2", "Hide"};
    forms::MenuItem i3{med, "i3", "Close"};

    void i1_Click();
    void i2_Click();
    void i3_Click();

private:
    void Form_Load() override;
    void Form_Resize() override;
    void Form_Unload() override;
    void Form_MouseDown(const base::MouseEvent& mouse) override;
    void Form_MouseMove(const base::MouseEvent& mouse) override;
    bool Form_KeyDown(const base::KeyEvent& key) override;
    void CloseRequested() override;

    void MediaPlayer1_MouseDown(const base::MouseEvent& mouse);
    void MediaPlayer1_MouseMove(const base::MouseEvent& mouse);
    void MediaPlayer1_PlayStateChange(core::PlayState oldState, core::PlayState newState);

    forms::HitCode ZoneUnder(const base::MouseEvent& mouse) const;
    void DragFrom(const base::MouseEvent& mouse);
    void RecordGeometry();
    void MoveRemoteAlong();
    void OpenContextMenu(base::Point inWindow);
    bool RunKey(const base::KeyEvent& key);
    void LeaveFullScreen();

    core::MediaEngine& MediaPlayer1_;
    core::RemoteWindow* Form4_ = nullptr;
    Form5* Form5_ = nullptr;
    // Markers that an activation clears.
    bool bFullScreen_ = false;
    bool bmute_ = false;
    forms::HitCode pending_hit_code_ = forms::HitCode::Caption;
};

}  // namespace nqp::video
