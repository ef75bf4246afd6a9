#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace nqp::options {

struct SkinList {
    std::vector<std::string> names;
    int selected = -1;
};

// The skins in the program folder in the order of their names: the folders whose file of colours is
// not empty. A folder without one gets an empty one. A present skin that is not listed itself
// selects the one before it.
SkinList ListSkins(const std::filesystem::path& programFolder, const std::string& presentSkin);

}  // namespace nqp::options
