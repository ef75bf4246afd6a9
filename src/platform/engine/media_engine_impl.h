#pragma once

#include <memory>
#include <string>
#include <vector>

#include "forms/win32/winapi/com.h"
#include "platform/engine/engine_dialogs.h"
#include "platform/engine/full_screen_window.h"
#include "platform/engine/playback_graph.h"
#include "platform/engine/video_view.h"

namespace nqp::platform {

// The media player control over whichever graph could open the clip. It keeps the play state
// itself; the graph is only told to run and to hold still, so that a pause, a stop at the end and
// a seek all leave it built. A raised event may come back into any member: after raising, nothing
// that was read before counts any more.
class MediaEngineImpl final : public core::MediaEngine,
                              private VideoViewClient,
                              private ClipInformation {
public:
    explicit MediaEngineImpl(std::vector<GraphOpener> openers);

    void Attach(base::NativeWindow parent, int controlId) override;
    void Detach() override;
    std::int32_t Readiness() const override { return graph_ != nullptr ? 1 : 0; }
    std::string FileName() const override { return fileName_; }
    core::PlayState State() const override { return state_; }
    void Open(const std::string& path) override;
    void Play() override;
    void Pause() override;
    double CurrentPosition() const override;
    void SetCurrentPosition(double seconds) override;
    double Duration() const override { return duration_; }
    std::int32_t Volume() const override { return volume_; }
    void SetVolume(std::int32_t hundredthsOfDecibel) override;
    double Rate() const override { return rate_; }
    void SetRate(double rate) override;
    bool AutoStart() const override { return autoStart_; }
    void SetAutoStart(bool on) override { autoStart_ = on; }
    int DisplaySize() const override {
        return fullScreen_ ? core::kFullScreenDisplay : core::kWindowDisplay;
    }
    void SetDisplaySize(int size) override;
    int CursorType() const override { return cursorType_; }
    void SetCursorType(int type) override;
    void ShowDialog(int dialog) override;
    bool Visible() const override { return visible_; }
    void SetVisible(bool visible) override;
    base::Twips Width() const override { return width_; }
    void SetWidth(base::Twips width) override;
    base::Twips Height() const override { return height_; }
    void SetHeight(base::Twips height) override;

private:
    void OnMouseMove(const base::MouseEvent& mouse) override;
    void OnMouseDown(const base::MouseEvent& mouse) override;
    void OnMouseUp(const base::MouseEvent& mouse) override;
    void OnPictureAreaChanged() override { PlacePicture(); }
    void OnPictureWanted() override;
    void OnGraphEvent() override;
    void OnLeaveFullScreen() override { LeaveFullScreen(); }
    std::intptr_t OnScriptMessage(int number, std::intptr_t value) override;

    const core::MediaEngine& Engine() const override { return *this; }
    PlaybackFigures Figures() const override;
    std::vector<FilterEntry> Filters() const override;
    void ShowFilterProperties(std::size_t filter, base::NativeWindow owner) override;

    std::unique_ptr<PlaybackGraph> OpenWithAny(const std::string& path) const;
    void Adopt(std::unique_ptr<PlaybackGraph> graph, const std::string& path);
    void CloseClip();
    bool HoldStill();
    void StopAtEnd();
    void StopAfterFailure();
    void ChangeState(core::PlayState state);
    void ResizeView();
    void PlacePicture();
    void EnterFullScreen();
    void LeaveFullScreen();
    std::intptr_t ReadProperty(int number) const;
    bool ObeyScript(int number, std::intptr_t value);

    const winapi::ComApartment apartment_;
    const std::vector<GraphOpener> openers_;
    std::unique_ptr<VideoView> view_;
    std::unique_ptr<FullScreenWindow> fullScreen_;
    std::unique_ptr<PlaybackGraph> graph_;
    EngineDialogs dialogs_{*this};

    std::string fileName_;
    core::PlayState state_ = core::PlayState::Stopped;
    double duration_ = 0;                            // seconds, fixed when the clip is opened
    double restingPosition_ = core::kNothingLoaded;  // seconds, while not playing
    unsigned openCalls_ = 0;
    unsigned stateChanges_ = 0;
    std::int32_t volume_ = core::kLoudest;
    double rate_ = 1.0;
    bool autoStart_ = false;
    int cursorType_ = core::kNormalCursor;
    bool visible_ = false;
    base::Twips width_ = 0;
    base::Twips height_ = 0;
};

}  // namespace nqp::platform
