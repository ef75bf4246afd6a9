#pragma once

#include <filesystem>

namespace nqp::core {

inline constexpr char kDefaultSkin[] = "Daylight";

// Puts what a program folder starts with beside the program: the marker of an ordinary start, an
// empty playlist and settings of first choices. A file that is there already is left as it is.
// False when one could not be written.
bool FillFirstFolder(const std::filesystem::path& programFolder);

}  // namespace nqp::core
