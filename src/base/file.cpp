#include "base/file.h"

#include <fstream>
#include <system_error>

namespace nqp::base {
namespace {

bool Write(std::ofstream file, std::span<const char> bytes) {
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    return !file.fail();
}

bool WriteWhole(const std::filesystem::path& path, std::span<const char> bytes) {
    return Write(std::ofstream(path, std::ios::binary | std::ios::trunc), bytes);
}

// For a file that may be written where no other may take its place: a folder that is read-only, or
// another program that has the file open. The file does not become shorter.
bool OverwriteExisting(const std::filesystem::path& path, std::span<const char> bytes) {
    if (!IsFile(path)) return false;
    return Write(std::ofstream(path, std::ios::binary | std::ios::in | std::ios::out), bytes);
}

}  // namespace

std::filesystem::path PathFromUtf8(std::string_view text) {
    return {std::u8string(text.begin(), text.end())};
}

std::string Utf8FromPath(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

std::vector<char> ReadFile(const std::filesystem::path& path, std::size_t from) {
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    std::ifstream file(path, std::ios::binary);
    if (error || !file || size <= from) return {};
    file.seekg(static_cast<std::streamoff>(from));
    std::vector<char> bytes(static_cast<std::size_t>(size) - from);
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

bool CanRead(const std::filesystem::path& path) {
    return !IsFile(path) || std::ifstream(path, std::ios::binary).good();
}

bool PutFileInPlace(const std::filesystem::path& path, std::span<const char> bytes) {
    std::filesystem::path next = path;
    next += ".new";
    std::error_code error;
    if (WriteWhole(next, bytes)) {
        std::filesystem::rename(next, path, error);
        if (!error) return true;
    }
    std::error_code ignored;
    std::filesystem::remove(next, ignored);
    return OverwriteExisting(path, bytes);
}

bool IsFile(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored);
}

}  // namespace nqp::base
