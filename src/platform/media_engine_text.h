#pragma once

#include <string>
#include <string_view>

namespace nqp::platform {

// Text crosses between UTF-8 (the program) and UTF-16 (the platform) here. What is no valid text
// comes out with U+FFFD in its place.
std::wstring ToWide(std::string_view utf8);
std::string ToUtf8(std::wstring_view wide);

}  // namespace nqp::platform
