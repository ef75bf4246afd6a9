#pragma once

#include <cstddef>

namespace nqp::core {

// A skin is a folder in this one, inside the program folder; its name is put behind it as it is.
inline constexpr char kSkinsFolder[] = "Skins/";
// Its colours, in records.
inline constexpr char kSkinColorsName[] = "nqp_colors.cfg";
inline constexpr std::size_t kSkinColorRecordBytes = 128;

}  // namespace nqp::core
