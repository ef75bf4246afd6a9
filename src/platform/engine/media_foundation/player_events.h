#pragma once

#include "forms/win32/winapi/com.h"

#include <array>
#include <mutex>
#include <utility>
#include <vector>

#include <mfplay.h>

#include "platform/engine/playback_graph.h"

namespace nqp::platform::media_foundation {

// What a player asked for and is answered with later; each has its own mark.
enum class Answer { ItemSet, Playing, Paused, PositionSet, RateSet, Count };

// Receives the player's events on its own thread, keeps the ones that matter for the window thread,
// and marks the answers that the window thread may be waiting for.
class PlayerEvents final : public winapi::ComObject<IMFPMediaPlayerCallback> {
public:
    PlayerEvents(HWND window, UINT message);
    ~PlayerEvents() override;

    // To be called before the request that is answered.
    void Expect(Answer answer);
    // Waits for the answer, while messages that other threads send to this one get through. False
    // when it does not come in time or is a failure.
    bool WaitFor(Answer answer);
    GraphEvent Take();
    // No message is posted from now on.
    void Silence();

    void STDMETHODCALLTYPE OnMediaPlayerEvent(MFP_EVENT_HEADER* event) override;

private:
    struct Mark {
        HANDLE arrived = nullptr;
        HRESULT result = S_OK;
    };

    Mark& MarkOf(Answer answer) { return marks_[static_cast<std::size_t>(answer)]; }
    void Arrived(Answer answer, HRESULT result);
    void Post(GraphEvent event);

    mutable std::mutex mutex_;
    HWND window_;
    const UINT message_;
    std::array<Mark, static_cast<std::size_t>(Answer::Count)> marks_;
    std::vector<GraphEvent> waiting_;
};

}  // namespace nqp::platform::media_foundation
