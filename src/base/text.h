#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace nqp::base {

// A decimal number in a text, rounded to a whole one, halves to the even neighbour. Blanks around
// it are allowed; nothing where the text is empty, holds anything else, or leaves 32 bits.
std::optional<std::int32_t> ParseWholeNumber(std::string_view text);

// The same as a single-precision number, not rounded.
std::optional<float> ParseSingle(std::string_view text);

// The shortest decimal text that reads back as the same single-precision number ("3090", "0.5").
std::string ShortestDecimal(float value);

// The part behind the last "\"; the whole text when there is none.
std::string FileNameOf(std::string_view path);

// The part before the first "."; the whole text when there is none.
std::string TitleOf(std::string_view fileName);

// The part before the first NUL character; the whole text when there is none.
std::string UpToNul(std::string_view text);

// Of the 26 plain letters; all others stay.
std::string LowerCase(std::string_view text);

// For texts in which a single "&" marks an access key.
std::string WithDoubledAmpersands(std::string_view text);

// Removes one pair of double quotes around the whole text; a path cannot contain them.
std::string WithoutQuotes(std::string_view text);

}  // namespace nqp::base
