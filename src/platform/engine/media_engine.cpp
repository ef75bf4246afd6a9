#include "platform/engine/media_engine.h"

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <utility>

#include "forms/run_time_error.h"
#include "forms/win32/winapi/text.h"
#include "platform/engine/directshow/graph.h"
#include "platform/engine/file_spellings.h"
#include "platform/engine/media_engine_impl.h"
#include "platform/engine/media_foundation/player.h"

namespace nqp::platform {

using core::PlayState;

namespace {

// A person who watches touches neither mouse nor keyboard.
void KeepScreenOn(bool on) {
    constexpr EXECUTION_STATE kAwake = ES_SYSTEM_REQUIRED | ES_DISPLAY_REQUIRED;
    SetThreadExecutionState(ES_CONTINUOUS | (on ? kAwake : 0));
}

// An event's handler may fail; the engine's own work is done by then and goes on.
template <class... Args>
void Raise(forms::Origin origin, const base::Event<Args...>& event,
           std::type_identity_t<Args>... args) noexcept {
    forms::Guarded(origin, [&] { event(args...); });
}

}  // namespace

MediaEngineImpl::MediaEngineImpl(std::vector<GraphOpener> openers) : openers_(std::move(openers)) {}

void MediaEngineImpl::Attach(base::NativeWindow parent, int controlId) {
    Detach();
    VideoViewClient& client = *this;
    view_ = std::make_unique<VideoView>(static_cast<HWND>(parent), controlId, client);
    if (view_->Handle() == nullptr) {
        view_.reset();
        return;
    }
    view_->SetCursorType(cursorType_);
    ResizeView();
    view_->SetVisible(visible_);
}

void MediaEngineImpl::Detach() {
    dialogs_.Close();
    LeaveFullScreen();
    // Out of reach first: a handler of the closing clip must not load another one into it.
    const auto closingView = std::move(view_);
    CloseClip();
}

void MediaEngineImpl::Open(const std::string& path) {
    // A handler of the closing clip may open another one; the latest call then wins.
    const unsigned thisCall = ++openCalls_;
    CloseClip();
    if (thisCall != openCalls_ || !view_) return;
    auto graph = OpenWithAny(path);
    if (!graph) {
        LeaveFullScreen();
        dialogs_.Update();
        return;
    }
    Adopt(std::move(graph), path);
    if (!autoStart_) return;
    SetVisible(true);
    Play();
}

std::unique_ptr<PlaybackGraph> MediaEngineImpl::OpenWithAny(const std::string& path) const {
    std::unique_ptr<PlaybackGraph> partial;
    for (const GraphOpener& open : openers_) {
        for (const std::wstring& spelling : SpellingsOfFile(path)) {
            auto graph = open(spelling, view_->Handle(), kGraphEventMessage);
            if (graph && !graph->LacksPicture()) return graph;
            if (!partial) partial = std::move(graph);
        }
    }
    return partial;
}

void MediaEngineImpl::Adopt(std::unique_ptr<PlaybackGraph> graph, const std::string& path) {
    graph_ = std::move(graph);
    fileName_ = path;
    duration_ = graph_->Duration();
    restingPosition_ = 0;
    graph_->SetVolume(volume_);
    if (rate_ != 1.0 && !graph_->SetRate(rate_)) rate_ = 1.0;
    if (fullScreen_) graph_->MovePictureTo(fullScreen_->Handle());
    PlacePicture();
    graph_->ShowPicture(visible_ || !fullScreen_);
    dialogs_.Update();
}

void MediaEngineImpl::CloseClip() {
    if (!graph_) return;
    graph_.reset();
    fileName_.clear();
    duration_ = 0;
    restingPosition_ = core::kNothingLoaded;
    dialogs_.Update();
    ChangeState(PlayState::Stopped);
}

void MediaEngineImpl::Play() {
    if (!graph_ || state_ == PlayState::Playing) return;
    if (restingPosition_ >= duration_ && duration_ > 0) {
        graph_->Seek(0);
        restingPosition_ = 0;
    }
    if (graph_->Run()) ChangeState(PlayState::Playing);
}

void MediaEngineImpl::Pause() {
    if (!HoldStill()) return;
    ChangeState(PlayState::Paused);
}

// Stops the clip's movement for a pause or a change of rate, and notes where. Answers false when
// there was none, or when the clip turned out to have ended by itself.
bool MediaEngineImpl::HoldStill() {
    if (state_ != PlayState::Playing || !graph_->Pause()) return false;
    restingPosition_ = std::clamp(graph_->Position(), 0.0, duration_);
    const unsigned changesBefore = stateChanges_;
    OnGraphEvent();
    return changesBefore == stateChanges_;
}

double MediaEngineImpl::CurrentPosition() const {
    if (!graph_ || state_ != PlayState::Playing) return restingPosition_;
    return std::clamp(graph_->Position(), 0.0, duration_);
}

void MediaEngineImpl::SetCurrentPosition(double seconds) {
    if (!graph_ || std::isnan(seconds)) return;
    if (state_ == PlayState::Playing) graph_->Pause();
    // An end that was reached before the seek is none any more.
    while (graph_->NextEvent() != GraphEvent::None) {
    }
    PlacePicture();
    const double target = std::clamp(seconds, 0.0, duration_);
    if (graph_->Seek(target)) restingPosition_ = target;
    if (state_ == PlayState::Playing && !graph_->Run()) StopAfterFailure();
}

void MediaEngineImpl::SetVolume(std::int32_t hundredthsOfDecibel) {
    volume_ = std::clamp(hundredthsOfDecibel, core::kSilent, core::kLoudest);
    if (graph_) graph_->SetVolume(volume_);
}

void MediaEngineImpl::SetRate(double rate) {
    if (std::isnan(rate)) return;
    const double wanted = std::clamp(rate, core::kSlowestRate, core::kFastestRate);
    if (wanted == rate_) return;
    const double before = std::exchange(rate_, wanted);
    const bool moving = HoldStill();
    if (!graph_) return;
    if (!graph_->SetRate(wanted)) rate_ = before;
    if (moving && !graph_->Run()) StopAfterFailure();
}

void MediaEngineImpl::OnGraphEvent() {
    while (graph_) {
        switch (graph_->NextEvent()) {
            case GraphEvent::None:
                return;
            case GraphEvent::Completed:
                StopAtEnd();
                break;
            case GraphEvent::Failed:
                StopAfterFailure();
                break;
            case GraphEvent::PictureChanged:
                PlacePicture();
                break;
        }
    }
}

void MediaEngineImpl::StopAtEnd() {
    if (state_ != PlayState::Playing) return;
    graph_->Pause();
    restingPosition_ = duration_;
    ChangeState(PlayState::Stopped);
}

void MediaEngineImpl::StopAfterFailure() {
    if (state_ == PlayState::Stopped) return;
    const double position = CurrentPosition();
    graph_->Pause();
    // Not the end of the clip, so it must not look like it.
    restingPosition_ = std::min(position, std::nextafter(duration_, 0.0));
    ChangeState(PlayState::Stopped);
}

void MediaEngineImpl::ChangeState(PlayState state) {
    if (state == state_) return;
    ++stateChanges_;
    const PlayState old = std::exchange(state_, state);
    KeepScreenOn(state == PlayState::Playing);
    Raise(forms::Origin::Program, PlayStateChange, old, state);
}

void MediaEngineImpl::OnMouseMove(const base::MouseEvent& mouse) {
    Raise(forms::Origin::Program, MouseMove, mouse);
}
void MediaEngineImpl::OnMouseDown(const base::MouseEvent& mouse) {
    Raise(forms::Origin::User, MouseDown, mouse);
}
void MediaEngineImpl::OnMouseUp(const base::MouseEvent& mouse) {
    Raise(forms::Origin::User, MouseUp, mouse);
}

std::unique_ptr<core::MediaEngine> CreateMediaEngine(std::vector<GraphOpener> openers) {
    return std::make_unique<MediaEngineImpl>(std::move(openers));
}

std::unique_ptr<core::MediaEngine> CreateMediaEngine() {
    return CreateMediaEngine({directshow::OpenGraph, media_foundation::OpenPlayer});
}

}  // namespace nqp::platform
