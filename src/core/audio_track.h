#pragma once

#include <functional>
#include <string>

#include "base/input.h"

namespace nqp::core {

struct AudioTrackRequest {
    base::NativeWindow owner = nullptr;  // of the compression dialog; may be of another process
    std::string source;                  // a clip
    std::string target;                  // a WAVE file; one that is there is written over
};

enum class AudioTrackResult {
    Saved,
    NotConfirmed,  // the person closed the compression dialog; nothing is written
    Aborted,       // the progress callback asked for it; the target may be there in part
    Failed,
};

// Takes the first sound track out of a clip.
class AudioTrackWriter {
public:
    // Per cent done; true stops the copy. It may run the message loop.
    using Progress = std::function<bool(int percent)>;

    // Asks for the compression first, in the system's own dialog, and returns when all is written.
    virtual AudioTrackResult Save(const AudioTrackRequest& request, const Progress& progress) = 0;

protected:
    ~AudioTrackWriter() = default;
};

}  // namespace nqp::core
