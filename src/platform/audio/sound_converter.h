#pragma once

#include <windows.h>

#include <mmsystem.h>

#include <mmreg.h>
#include <msacm.h>

#include <memory>
#include <optional>
#include <span>
#include <type_traits>
#include <vector>

#include "platform/audio/sound_format.h"

namespace nqp::platform {

// Turns sound into another format with the platform's codecs, part by part. What a codec leaves
// over of one part goes in front of the next.
class SoundConverter {
public:
    // None when no codec makes the one from the other.
    static std::optional<SoundConverter> Between(SoundFormat from, SoundFormat to);

    // All that can be made of the sound so far, valid until the next call; none when the codec
    // fails. The last part may be empty.
    std::optional<std::span<const char>> Convert(std::span<const char> sound, bool last);

private:
    struct Close {
        void operator()(HACMSTREAM stream) const { acmStreamClose(stream, 0); }
    };
    using Stream = std::unique_ptr<std::remove_pointer_t<HACMSTREAM>, Close>;

    explicit SoundConverter(Stream stream) : stream_(std::move(stream)) {}
    bool Run(DWORD flags);

    Stream stream_;
    std::vector<char> waiting_;
    std::vector<char> made_;
    bool begun_ = false;
};

}  // namespace nqp::platform
