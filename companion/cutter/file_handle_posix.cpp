#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <utility>

#include "cutter/file_handle.h"

namespace nqp::companion {
namespace {

constexpr mode_t kNewFileMode = 0666;

std::error_code LastError() {
    return {errno, std::generic_category()};
}

int Descriptor(std::intptr_t handle) {
    return static_cast<int>(handle);
}

}  // namespace

FileHandle FileHandle::OpenToRead(const std::filesystem::path& path, std::error_code& error) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    error = file < 0 ? LastError() : std::error_code();
    return FileHandle(file);
}

FileHandle FileHandle::CreateNew(const std::filesystem::path& path, std::error_code& error) {
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode);
    error = file < 0 ? LastError() : std::error_code();
    return FileHandle(file);
}

FileHandle::FileHandle(FileHandle&& other) noexcept
    : handle_(std::exchange(other.handle_, kNone)) {}

FileHandle& FileHandle::operator=(FileHandle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
}

bool FileHandle::Flush() {
    return fsync(Descriptor(handle_)) == 0;
}

void FileHandle::Close() {
    if (IsOpen()) close(Descriptor(std::exchange(handle_, kNone)));
}

std::optional<std::size_t> FileHandle::Read(std::span<std::uint8_t> bytes) {
    const ssize_t count = read(Descriptor(handle_), bytes.data(), bytes.size());
    if (count < 0) return std::nullopt;
    return static_cast<std::size_t>(count);
}

std::error_code FileHandle::Write(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(Descriptor(handle_), bytes.data(), bytes.size());
        if (count < 0) return LastError();
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return {};
}

bool FileHandle::Seek(std::int64_t place) {
    return lseek(Descriptor(handle_), place, SEEK_SET) == place;
}

std::optional<std::int64_t> FileHandle::Size() const {
    struct stat facts {};
    if (fstat(Descriptor(handle_), &facts) != 0 || !S_ISREG(facts.st_mode)) return std::nullopt;
    return facts.st_size;
}

PathKind KindOf(const std::filesystem::path& path) {
    std::error_code ignored;
    const auto status = std::filesystem::status(path, ignored);
    if (!std::filesystem::exists(status)) return PathKind::Nothing;
    return std::filesystem::is_directory(status) ? PathKind::Folder : PathKind::File;
}

void RemoveFile(const std::filesystem::path& path) {
    unlink(path.c_str());
}

std::vector<std::filesystem::path> FilesIn(const std::filesystem::path& folder) {
    std::error_code error;
    std::vector<std::filesystem::path> names;
    for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end;
         it.increment(error)) {
        names.push_back(it->path().filename());
    }
    return names;
}

// The folder alone decides.
std::error_code CanGiveWay(const std::filesystem::path&) {
    return {};
}

std::uint32_t ProcessNumber() {
    return static_cast<std::uint32_t>(getpid());
}

bool IsRunning(std::uint32_t process) {
    return kill(static_cast<pid_t>(process), 0) == 0 || errno != ESRCH;
}

std::error_code MoveOver(const std::filesystem::path& file, const std::filesystem::path& newName) {
    std::error_code error;
    std::filesystem::rename(file, newName, error);
    return error;
}

bool IsDiskFull(const std::error_code& error) {
    return error == std::errc::no_space_on_device || error == std::errc::file_too_large ||
           error.value() == EDQUOT;
}

}  // namespace nqp::companion
