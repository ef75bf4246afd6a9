#include "base/text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "base/geometry.h"

namespace nqp::base {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view Trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::optional<double> ParseNumber(std::string_view text) {
    std::string_view digits = Trimmed(text);
    if (digits.starts_with('+')) {
        digits.remove_prefix(1);
        if (digits.starts_with('-')) return std::nullopt;
    }
    double value = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    if (error != std::errc{} || stop != end || !std::isfinite(value)) return std::nullopt;
    return value;
}

}  // namespace

std::optional<std::int32_t> ParseWholeNumber(std::string_view text) {
    constexpr double kLimit = std::numeric_limits<std::int32_t>::max();
    const std::optional<double> value = ParseNumber(text);
    if (!value || *value > kLimit || *value < -kLimit) return std::nullopt;
    return RoundHalfEven(*value);
}

std::optional<float> ParseSingle(std::string_view text) {
    constexpr double kLimit = std::numeric_limits<float>::max();
    const std::optional<double> value = ParseNumber(text);
    if (!value || *value > kLimit || *value < -kLimit) return std::nullopt;
    return static_cast<float>(*value);
}

std::string ShortestDecimal(float value) {
    std::array<char, 128> text{};
    const auto [end, error] =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    return error == std::errc{} ? std::string(text.data(), end) : std::string("0");
}

std::string FileNameOf(std::string_view path) {
    const auto separator = path.rfind('\\');
    return std::string(separator == std::string_view::npos ? path : path.substr(separator + 1));
}

std::string UpToNul(std::string_view text) {
    return std::string(text.substr(0, text.find('\0')));
}

std::string TitleOf(std::string_view fileName) {
    return std::string(fileName.substr(0, fileName.find('.')));
}

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    for (char& letter : lower) {
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    }
    return lower;
}

std::string WithDoubledAmpersands(std::string_view text) {
    std::string doubled;
    for (const char letter : text)
        doubled.append(letter == '&' ? 2 : 1, letter);
    return doubled;
}

std::string WithoutQuotes(std::string_view text) {
    const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"' &&
                        text.find('"', 1) == text.size() - 1;
    return std::string(quoted ? text.substr(1, text.size() - 2) : text);
}

}  // namespace nqp::base
