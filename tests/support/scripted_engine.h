#pragma once

#include <string>
#include <vector>

#include "core/media_engine.h"

namespace nqp::test {

// An engine without media, as strict as a real one: it records what it is told ("Open b.avi",
// "CurrentPosition = 50") and a test sets what it reports. Any path opens, but those that begin
// with "bad".
class ScriptedEngine final : public core::MediaEngine {
public:
    std::vector<std::string> calls;
    double duration = 100.0;  // seconds, of every clip
    double position = 0.0;    // seconds, while a clip is loaded

    // As if the clip had played to its end.
    void PlayToEnd();
    // As if playing had stopped at the position that is set.
    void StopHere();
    void ForgetCalls() { calls.clear(); }

    void Attach(base::NativeWindow, int controlId) override;
    void Detach() override;
    std::int32_t Readiness() const override { return fileName_.empty() ? 0 : 1; }
    std::string FileName() const override { return fileName_; }
    core::PlayState State() const override { return state_; }
    void Open(const std::string& path) override;
    void Play() override;
    void Pause() override;
    double CurrentPosition() const override;
    void SetCurrentPosition(double seconds) override;
    double Duration() const override { return fileName_.empty() ? 0.0 : duration; }
    std::int32_t Volume() const override { return volume_; }
    void SetVolume(std::int32_t hundredthsOfDecibel) override;
    double Rate() const override { return rate_; }
    void SetRate(double rate) override;
    bool AutoStart() const override { return autoStart_; }
    void SetAutoStart(bool on) override;
    int DisplaySize() const override { return displaySize_; }
    void SetDisplaySize(int size) override;
    int CursorType() const override { return cursorType_; }
    void SetCursorType(int type) override { cursorType_ = type; }
    void ShowDialog(int dialog) override;
    bool Visible() const override { return visible_; }
    void SetVisible(bool visible) override;
    base::Twips Width() const override { return width_; }
    void SetWidth(base::Twips width) override;
    base::Twips Height() const override { return height_; }
    void SetHeight(base::Twips height) override;

private:
    void Enter(core::PlayState state);

    bool attached_ = false;
    std::string fileName_;
    core::PlayState state_ = core::PlayState::Stopped;
    std::int32_t volume_ = 0;
    double rate_ = 1.0;
    bool autoStart_ = false;
    int displaySize_ = core::kWindowDisplay;
    int cursorType_ = core::kNormalCursor;
    bool visible_ = false;
    base::Twips width_ = 0;
    base::Twips height_ = 0;
};

}  // namespace nqp::test
