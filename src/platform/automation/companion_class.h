#pragma once

namespace nqp::platform {

// The number of the class behind core::kCompanionProgId; the companion's program serves it.
inline constexpr wchar_t kCompanionClass[] = L"{20149CC1-4C8C-4D27-BDDF-752721E79395}";

}  // namespace nqp::platform
