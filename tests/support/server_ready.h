#pragma once

#include <windows.h>

#include "platform/handle.h"

namespace nqp::test {

// Set by a server that was started beforehand, when its class can be reached: the system is slow to
// notice a server that it starts itself.
inline constexpr wchar_t kServerReady[] = L"Local\\nqp-test-server-ready";

inline void SayReady() {
    const platform::Handle ready(OpenEventW(EVENT_MODIFY_STATE, FALSE, kServerReady));
    if (ready) SetEvent(ready.get());
}

}  // namespace nqp::test
