#include "scripted_engine.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace nqp::test {
namespace {

template <class Value>
std::string Assigned(const char* property, Value value) {
    std::ostringstream text;
    text << std::boolalpha << property << " = " << value;
    return text.str();
}

}  // namespace

void ScriptedEngine::Enter(core::PlayState state) {
    const core::PlayState before = std::exchange(state_, state);
    if (before != state) PlayStateChange(before, state);
}

void ScriptedEngine::PlayToEnd() {
    position = duration;
    Enter(core::PlayState::Stopped);
}

void ScriptedEngine::StopHere() {
    Enter(core::PlayState::Stopped);
}

void ScriptedEngine::Attach(base::NativeWindow, int controlId) {
    calls.push_back("Attach " + std::to_string(controlId));
    attached_ = true;
}

void ScriptedEngine::Detach() {
    calls.emplace_back("Detach");
    attached_ = false;
    displaySize_ = core::kWindowDisplay;
    fileName_.clear();
    Enter(core::PlayState::Stopped);
}

void ScriptedEngine::Open(const std::string& path) {
    calls.push_back("Open " + path);
    const bool opens = attached_ && !path.starts_with("bad");
    fileName_ = opens ? path : std::string();
    position = 0;
    Enter(core::PlayState::Stopped);
    if (!autoStart_ || fileName_.empty()) return;
    visible_ = true;
    Enter(core::PlayState::Playing);
}

void ScriptedEngine::Play() {
    calls.emplace_back("Play");
    if (!fileName_.empty()) Enter(core::PlayState::Playing);
}

void ScriptedEngine::Pause() {
    calls.emplace_back("Pause");
    if (state_ == core::PlayState::Playing) Enter(core::PlayState::Paused);
}

double ScriptedEngine::CurrentPosition() const {
    return fileName_.empty() ? core::kNothingLoaded : position;
}

void ScriptedEngine::SetCurrentPosition(double seconds) {
    calls.push_back(Assigned("CurrentPosition", seconds));
    if (!fileName_.empty()) position = std::clamp(seconds, 0.0, duration);
}

void ScriptedEngine::SetVolume(std::int32_t hundredthsOfDecibel) {
    calls.push_back(Assigned("Volume", hundredthsOfDecibel));
    volume_ = std::clamp(hundredthsOfDecibel, core::kSilent, core::kLoudest);
}

void ScriptedEngine::SetRate(double rate) {
    calls.push_back(Assigned("Rate", rate));
    rate_ = std::clamp(rate, core::kSlowestRate, core::kFastestRate);
}

void ScriptedEngine::SetAutoStart(bool on) {
    calls.push_back(Assigned("AutoStart", on));
    autoStart_ = on;
}

void ScriptedEngine::SetDisplaySize(int size) {
    calls.push_back(Assigned("DisplaySize", size));
    if (size == core::kWindowDisplay || !fileName_.empty()) displaySize_ = size;
}

void ScriptedEngine::ShowDialog(int dialog) {
    calls.push_back("ShowDialog " + std::to_string(dialog));
}

void ScriptedEngine::SetVisible(bool visible) {
    calls.push_back(Assigned("Visible", visible));
    visible_ = visible;
}

void ScriptedEngine::SetWidth(base::Twips width) {
    calls.push_back(Assigned("Width", width));
    width_ = width;
}

void ScriptedEngine::SetHeight(base::Twips height) {
    calls.push_back(Assigned("Height", height));
    height_ = height;
}

}  // namespace nqp::test
