#include <windows.h>

#include <algorithm>
#include <utility>

#include "cutter/file_handle.h"

namespace nqp::companion {
namespace {

// One call of the system takes no more.
constexpr std::size_t kMostBytesAtOnce = std::size_t{1} << 30U;

std::error_code LastError() {
    return {static_cast<int>(GetLastError()), std::system_category()};
}

HANDLE System(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

DWORD AtOnce(std::size_t bytes) {
    return static_cast<DWORD>(std::min(bytes, kMostBytesAtOnce));
}

}  // namespace

// Others may write to it, move it and remove it meanwhile, as they could before.
FileHandle FileHandle::OpenToRead(const std::filesystem::path& path, std::error_code& error) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    error = file == INVALID_HANDLE_VALUE ? LastError() : std::error_code();
    return FileHandle(reinterpret_cast<std::intptr_t>(file));
}

FileHandle FileHandle::CreateNew(const std::filesystem::path& path, std::error_code& error) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ,
                                    nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    error = file == INVALID_HANDLE_VALUE ? LastError() : std::error_code();
    return FileHandle(reinterpret_cast<std::intptr_t>(file));
}

FileHandle::FileHandle(FileHandle&& other) noexcept
    : handle_(std::exchange(other.handle_, kNone)) {}

FileHandle& FileHandle::operator=(FileHandle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
}

bool FileHandle::Flush() {
    return FlushFileBuffers(System(handle_)) != 0;
}

void FileHandle::Close() {
    if (IsOpen()) CloseHandle(System(std::exchange(handle_, kNone)));
}

std::optional<std::size_t> FileHandle::Read(std::span<std::uint8_t> bytes) {
    DWORD count = 0;
    if (!ReadFile(System(handle_), bytes.data(), AtOnce(bytes.size()), &count, nullptr)) {
        return std::nullopt;
    }
    return count;
}

std::error_code FileHandle::Write(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        DWORD count = 0;
        if (!WriteFile(System(handle_), bytes.data(), AtOnce(bytes.size()), &count, nullptr)) {
            return LastError();
        }
        if (count == 0) return {ERROR_DISK_FULL, std::system_category()};
        bytes = bytes.subspan(count);
    }
    return {};
}

bool FileHandle::Seek(std::int64_t place) {
    LARGE_INTEGER wanted;
    wanted.QuadPart = place;
    return SetFilePointerEx(System(handle_), wanted, nullptr, FILE_BEGIN) != 0;
}

std::optional<std::int64_t> FileHandle::Size() const {
    LARGE_INTEGER size;
    if (!GetFileSizeEx(System(handle_), &size)) return std::nullopt;
    return size.QuadPart;
}

std::uint32_t ProcessNumber() {
    return GetCurrentProcessId();
}

bool IsRunning(std::uint32_t process) {
    const HANDLE opened = OpenProcess(SYNCHRONIZE, FALSE, process);
    if (opened == nullptr) return GetLastError() != ERROR_INVALID_PARAMETER;
    const bool running = WaitForSingleObject(opened, 0) == WAIT_TIMEOUT;
    CloseHandle(opened);
    return running;
}

std::error_code MoveOver(const std::filesystem::path& file, const std::filesystem::path& newName) {
    const bool moved = MoveFileExW(file.c_str(), newName.c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
    return moved ? std::error_code() : LastError();
}

bool IsDiskFull(const std::error_code& error) {
    return error.value() == ERROR_DISK_FULL || error.value() == ERROR_HANDLE_DISK_FULL ||
           error.value() == ERROR_FILE_TOO_LARGE;
}

}  // namespace nqp::companion
