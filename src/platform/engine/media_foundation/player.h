#pragma once

#include <memory>
#include <string>

#include "platform/engine/playback_graph.h"

namespace nqp::platform::media_foundation {

// A GraphOpener. Answers nothing where the system has no Media Foundation.
std::unique_ptr<PlaybackGraph> OpenPlayer(const std::wstring& path, base::NativeWindow window,
                                          unsigned message);

}  // namespace nqp::platform::media_foundation
