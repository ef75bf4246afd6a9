#pragma once

#include <string>
#include <vector>

namespace nqp::platform {

// The spellings under which a media stack may be asked for the file, best first: the path itself,
// and for a path that is longer than the classic limit also its other forms. Empty when there is no
// such file, or when it is a folder.
std::vector<std::wstring> SpellingsOfFile(const std::string& path);

}  // namespace nqp::platform
