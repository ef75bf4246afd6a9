#pragma once

#include <string>
#include <string_view>

namespace nqp::winapi {

// The platform's texts are UTF-16; bytes that are no UTF-8 become replacement characters.
std::wstring Utf16(std::string_view text);
std::string Utf8(std::wstring_view text);

}  // namespace nqp::winapi
