#pragma once

#include <memory>
#include <string>

#include "platform/engine/playback_graph.h"

namespace nqp::platform::directshow {

// A GraphOpener.
std::unique_ptr<PlaybackGraph> OpenGraph(const std::wstring& path, base::NativeWindow window,
                                         unsigned message);

}  // namespace nqp::platform::directshow
