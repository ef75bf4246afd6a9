#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "forms/state.h"

namespace nqp::remote {

// What is missing or wrong in a skin's folder, a sentence each; nothing for a whole one. The folder
// is not changed.
std::vector<std::string> CheckSkin(const std::filesystem::path& folder);

// The ratio of the lighter colour's relative luminance to the darker one's, 1 to 21, as web pages
// are measured.
double Contrast(forms::Color one, forms::Color other);

}  // namespace nqp::remote
