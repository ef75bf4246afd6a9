#pragma once

#include <string>

namespace nqp::companion {

// In front of all windows; returns when the person has closed it.
void ShowErrorBox(const std::string& sentence);

}  // namespace nqp::companion
