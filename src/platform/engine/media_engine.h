#pragma once

#include <memory>

#include "core/media_engine.h"

namespace nqp::platform {

// The media player control on the platform's own media stack: DirectShow first, and Media
// Foundation for what DirectShow cannot open. Create, use and destroy it on the window thread;
// destroy it, or at least Detach it, before that thread ends.
std::unique_ptr<core::MediaEngine> CreateMediaEngine();

}  // namespace nqp::platform
