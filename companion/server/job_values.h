#pragma once

#include <cstdint>
#include <string>

#include "cutter/cut.h"

namespace nqp::companion {

// One job as a client has told it, not looked at yet. Texts in UTF-8.
struct JobValues {
    std::int32_t mode = 0;
    std::int32_t imageX = 0;
    std::int32_t imageY = 0;
    std::string imagePath{};
    std::int32_t percentage = 100;
    std::string statusFile{};
    std::string cancelFile{};
    std::string outputFile{};
    std::string sourceFile{};
    double fragmentStart = 0;
    double fragmentEnd = 0;
};

// What the values ask for. A path ends with its first NUL character. Throws CutError for a mode
// that there is not.
CutJob JobOf(const JobValues& values);

}  // namespace nqp::companion
