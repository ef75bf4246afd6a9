#pragma once

#include <span>
#include <string>
#include <vector>

namespace nqp::forms {

// The paths of one drop, in its order; a source writes them in one of the two encodings.
struct DropList {
    std::vector<std::u16string> wide;
    std::vector<std::string> narrow;  // in the code page of this program
};

// Reads what the clipboard format for dropped files holds: a header that tells where the paths
// begin and how they are encoded, then every path with a NUL behind it, and one more NUL. A list
// that is cut off has the paths up to there. Takes as long as it has bytes.
DropList ReadDropList(std::span<const char> bytes);

}  // namespace nqp::forms
