#pragma once

#include <windows.h>

#include <mmsystem.h>
#include <vfw.h>

namespace nqp::platform {

// What a person chooses in the system's dialog of compressions.
class CompressionChoice {
public:
    CompressionChoice() = default;
    ~CompressionChoice();
    CompressionChoice(const CompressionChoice&) = delete;
    CompressionChoice& operator=(const CompressionChoice&) = delete;

    // Shows the dialog above its owner, which may be a window of another process, and returns when
    // it is closed. Above all windows where there is no owner, or the system lets it have none.
    // False unless the person accepted.
    bool Ask(HWND owner, IAVIStream& stream);

    AVICOMPRESSOPTIONS& Options() { return options_; }

private:
    bool Show(HWND owner, IAVIStream& stream);

    AVICOMPRESSOPTIONS options_{};
};

}  // namespace nqp::platform
