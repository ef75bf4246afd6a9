#include "forms/drop_list.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace nqp::forms {
namespace {

// A 32-bit offset, a point of two 32-bit numbers and two 32-bit flags.
constexpr std::size_t kOffsetOfPathsAt = 0;
constexpr std::size_t kIsWideAt = 16;
constexpr std::size_t kHeaderBytes = 20;

std::uint32_t NumberAt(std::span<const char> bytes, std::size_t offset) {
    std::uint32_t number = 0;
    std::memcpy(&number, bytes.data() + offset, sizeof(number));
    return number;
}

template <class Letter>
std::vector<std::basic_string<Letter>> PathsIn(std::span<const char> bytes) {
    std::basic_string<Letter> letters(bytes.size() / sizeof(Letter), Letter{});
    std::memcpy(letters.data(), bytes.data(), letters.size() * sizeof(Letter));
    std::vector<std::basic_string<Letter>> paths;
    for (auto first = letters.cbegin(); first != letters.cend() && *first != Letter{};) {
        const auto end = std::find(first, letters.cend(), Letter{});
        paths.emplace_back(first, end);
        first = end == letters.cend() ? end : end + 1;
    }
    return paths;
}

}  // namespace

DropList ReadDropList(std::span<const char> bytes) {
    if (bytes.size() < kHeaderBytes) return {};
    const std::size_t begin = NumberAt(bytes, kOffsetOfPathsAt);
    if (begin >= bytes.size()) return {};
    const std::span<const char> paths = bytes.subspan(begin);
    if (NumberAt(bytes, kIsWideAt) != 0) return {.wide = PathsIn<char16_t>(paths), .narrow = {}};
    return {.wide = {}, .narrow = PathsIn<char>(paths)};
}

}  // namespace nqp::forms
