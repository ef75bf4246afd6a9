#include "platform/engine/media_foundation/player_events.h"

namespace nqp::platform::media_foundation {

namespace {

constexpr ULONGLONG kAnswerDeadline = 5000;  // milliseconds

}  // namespace

PlayerEvents::PlayerEvents(HWND window, UINT message) : window_(window), message_(message) {
    for (Mark& mark : marks_)
        mark.arrived = CreateEventW(nullptr, TRUE, FALSE, nullptr);
}

PlayerEvents::~PlayerEvents() {
    for (const Mark& mark : marks_)
        CloseHandle(mark.arrived);
}

void PlayerEvents::Expect(Answer answer) {
    ResetEvent(MarkOf(answer).arrived);
}

bool PlayerEvents::WaitFor(Answer answer) {
    Mark& mark = MarkOf(answer);
    const ULONGLONG end = GetTickCount64() + kAnswerDeadline;
    for (ULONGLONG now = GetTickCount64(); now < end; now = GetTickCount64()) {
        const auto left = static_cast<DWORD>(end - now);
        const DWORD woken =
            MsgWaitForMultipleObjects(1, &mark.arrived, FALSE, left, QS_SENDMESSAGE);
        if (woken == WAIT_OBJECT_0) {
            const std::lock_guard lock(mutex_);
            return SUCCEEDED(mark.result);
        }
        if (woken != WAIT_OBJECT_0 + 1) return false;
        // Looking into the queue lets the sent messages in; nothing is taken out of it.
        MSG message{};
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | (QS_SENDMESSAGE << 16));
    }
    return false;
}

GraphEvent PlayerEvents::Take() {
    const std::lock_guard lock(mutex_);
    if (waiting_.empty()) return GraphEvent::None;
    const GraphEvent first = waiting_.front();
    waiting_.erase(waiting_.begin());
    return first;
}

void PlayerEvents::Silence() {
    const std::lock_guard lock(mutex_);
    window_ = nullptr;
    waiting_.clear();
}

void PlayerEvents::OnMediaPlayerEvent(MFP_EVENT_HEADER* event) {
    switch (event->eEventType) {
        case MFP_EVENT_TYPE_MEDIAITEM_SET:
            Arrived(Answer::ItemSet, event->hrEvent);
            break;
        case MFP_EVENT_TYPE_PLAY:
            Arrived(Answer::Playing, event->hrEvent);
            break;
        case MFP_EVENT_TYPE_PAUSE:
            Arrived(Answer::Paused, event->hrEvent);
            break;
        case MFP_EVENT_TYPE_POSITION_SET:
            Arrived(Answer::PositionSet, event->hrEvent);
            break;
        case MFP_EVENT_TYPE_RATE_SET:
            Arrived(Answer::RateSet, event->hrEvent);
            break;
        case MFP_EVENT_TYPE_PLAYBACK_ENDED:
            Post(GraphEvent::Completed);
            break;
        case MFP_EVENT_TYPE_ERROR:
            Post(GraphEvent::Failed);
            break;
        default:
            break;
    }
}

void PlayerEvents::Arrived(Answer answer, HRESULT result) {
    const std::lock_guard lock(mutex_);
    MarkOf(answer).result = result;
    SetEvent(MarkOf(answer).arrived);
}

void PlayerEvents::Post(GraphEvent event) {
    const std::lock_guard lock(mutex_);
    if (window_ == nullptr) return;
    waiting_.push_back(event);
    PostMessageW(window_, message_, 0, 0);
}

}  // namespace nqp::platform::media_foundation
