#include "base/file.h"

#include <fstream>
#include <system_error>

namespace nqp::base {
namespace {

bool Write(std::ofstream file, const FileContent& content) {
    content(file);
    file.close();
    return !file.fail();
}

// For a file that may be written where no other may take its place: a folder that is read-only, or
// another program that has the file open. The file does not become shorter.
bool OverwriteExisting(const std::filesystem::path& path, const FileContent& content) {
    if (!IsFile(path)) return false;
    return Write(std::ofstream(path, std::ios::binary | std::ios::in | std::ios::out), content);
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
    if (!IsFile(path)) return {};  // a folder may open like an endless file
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const std::streamoff size = file.tellg();  // negative when the file did not open
    const auto first = static_cast<std::streamoff>(from);
    if (size <= first) return {};
    file.seekg(first);
    std::vector<char> bytes(static_cast<std::size_t>(size - first));
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

bool MakeFile(const std::filesystem::path& path) {
    return std::ofstream(path, std::ios::binary | std::ios::app).good();
}

bool MoveToNewName(const std::filesystem::path& file, const std::filesystem::path& newName) {
    std::error_code failed;
    if (std::filesystem::exists(newName, failed)) return false;
    std::filesystem::rename(file, newName, failed);
    return !failed;
}

bool CanRead(const std::filesystem::path& path) {
    return !IsFile(path) || std::ifstream(path, std::ios::binary).good();
}

bool PutFileInPlace(const std::filesystem::path& path, const FileContent& content) {
    std::filesystem::path next = path;
    next += ".new";
    std::ofstream file(next, std::ios::binary | std::ios::trunc);
    const bool created = file.is_open();
    const bool complete = created && Write(std::move(file), content);
    std::error_code error;
    if (complete) std::filesystem::rename(next, path, error);
    if (complete && !error) return true;
    std::error_code ignored;
    std::filesystem::remove(next, ignored);
    const bool diskIsFull = created && !complete;
    return !diskIsFull && OverwriteExisting(path, content);
}

bool PutFileInPlace(const std::filesystem::path& path, std::span<const char> bytes) {
    return PutFileInPlace(path, [bytes](std::ostream& file) {
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    });
}

bool IsFile(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored);
}

}  // namespace nqp::base
