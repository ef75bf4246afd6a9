#include "base/file.h"

#include <fstream>
#include <system_error>

namespace nqp::base {

std::filesystem::path PathFromUtf8(std::string_view text) {
    return {std::u8string(text.begin(), text.end())};
}

std::string Utf8FromPath(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

std::vector<char> ReadFile(const std::filesystem::path& path) {
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    std::ifstream file(path, std::ios::binary);
    if (error || !file) return {};
    std::vector<char> bytes(static_cast<std::size_t>(size));
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

bool PutFileInPlace(const std::filesystem::path& path, std::span<const char> bytes) {
    std::filesystem::path next = path;
    next += ".new";
    {
        std::ofstream file(next, std::ios::binary | std::ios::trunc);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        file.close();
        std::error_code ignored;
        if (!file) {
            std::filesystem::remove(next, ignored);
            return false;
        }
    }
    std::error_code error;
    std::filesystem::rename(next, path, error);
    if (!error) return true;
    std::error_code ignored;
    std::filesystem::remove(next, ignored);
    return false;
}

bool IsFile(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored);
}

}  // namespace nqp::base
