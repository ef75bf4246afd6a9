#pragma once

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nqp::base {

// Texts of the program are UTF-8; these two are the only conversions to and from file paths.
std::filesystem::path PathFromUtf8(std::string_view text);
std::string Utf8FromPath(const std::filesystem::path& path);

// The bytes of a file, from this one on; none when it is missing or cannot be read.
std::vector<char> ReadFile(const std::filesystem::path& path, std::size_t from = 0);
// False for a file that is there and cannot be opened, because another program holds it say.
bool CanRead(const std::filesystem::path& path);

// Puts a file with these bytes in the place of the old one in a single step: at every moment the
// path names the complete old file or the complete new one. Where the system does not let another
// file take the place, the old one is written over instead. False when neither was possible.
bool PutFileInPlace(const std::filesystem::path& path, std::span<const char> bytes);
// Writes the bytes of a file, each time anew.
using FileContent = std::function<void(std::ostream&)>;
bool PutFileInPlace(const std::filesystem::path& path, const FileContent& content);

// Makes an empty file; one that is there stays as it is. False when that is not possible.
bool MakeFile(const std::filesystem::path& path);

// False, with both as they were, when there is a file of the new name already.
bool MoveToNewName(const std::filesystem::path& file, const std::filesystem::path& newName);

// True for an existing file that is no folder.
bool IsFile(const std::filesystem::path& path);

}  // namespace nqp::base
