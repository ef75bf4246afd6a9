#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "cutter/cut.h"

namespace nqp::companion {

// A command line that cannot be understood: a sentence for whoever wrote it.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct CutOptions {
    CutJob job;
    bool overwrite = false;
    bool quiet = false;
};

// "70.5", "1:10.5" or "0:01:10.5" in seconds; nothing for any other text.
std::optional<double> ParseTime(std::string_view text);

// What follows "cut". Throws UsageError.
CutOptions ParseCutOptions(const std::vector<std::string>& arguments);

}  // namespace nqp::companion
