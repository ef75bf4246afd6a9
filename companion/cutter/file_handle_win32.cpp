#include <windows.h>

#include <algorithm>
#include <memory>
#include <string>
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

// The system takes names of more than 259 characters in one spelling only: whole, and without
// anything to work out.
std::wstring Spelled(const std::filesystem::path& path) {
    constexpr std::size_t kShort = 240;
    std::error_code error;
    const std::filesystem::path whole = std::filesystem::absolute(path, error);
    if (error || whole.native().size() < kShort || whole.native().starts_with(L"\\\\?\\")) {
        return path.native();
    }
    const std::wstring plain = whole.lexically_normal().make_preferred().native();
    if (plain.starts_with(L"\\\\")) return L"\\\\?\\UNC\\" + plain.substr(2);
    return L"\\\\?\\" + plain;
}

struct SearchCloser {
    void operator()(HANDLE search) const { FindClose(search); }
};

DWORD AtOnce(std::size_t bytes) {
    return static_cast<DWORD>(std::min(bytes, kMostBytesAtOnce));
}

}  // namespace

// Others may write to it, move it and remove it meanwhile, as they could before.
FileHandle FileHandle::OpenToRead(const std::filesystem::path& path, std::error_code& error) {
    const HANDLE file = CreateFileW(Spelled(path).c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    error = file == INVALID_HANDLE_VALUE ? LastError() : std::error_code();
    return FileHandle(reinterpret_cast<std::intptr_t>(file));
}

FileHandle FileHandle::CreateNew(const std::filesystem::path& path, std::error_code& error) {
    const HANDLE file =
        CreateFileW(Spelled(path).c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                    CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
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

PathKind KindOf(const std::filesystem::path& path) {
    const DWORD attributes = GetFileAttributesW(Spelled(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return PathKind::Nothing;
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? PathKind::Folder : PathKind::File;
}

void RemoveFile(const std::filesystem::path& path) {
    DeleteFileW(Spelled(path).c_str());
}

std::vector<std::filesystem::path> FilesIn(const std::filesystem::path& folder) {
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW(Spelled(folder / L"*").c_str(), &found);
    std::vector<std::filesystem::path> names;
    if (search == INVALID_HANDLE_VALUE) return names;
    const std::unique_ptr<void, SearchCloser> closed(search);
    do {
        names.emplace_back(found.cFileName);
    } while (FindNextFileW(search, &found));
    return names;
}

std::error_code CanGiveWay(const std::filesystem::path& path) {
    const std::wstring name = Spelled(path);
    const DWORD attributes = GetFileAttributesW(name.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return {};
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        return {ERROR_WRITE_PROTECT, std::system_category()};
    }
    const HANDLE file =
        CreateFileW(name.c_str(), DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return LastError();
    CloseHandle(file);
    return {};
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
    constexpr ULONGLONG kPatience = 3000;  // milliseconds, these two
    constexpr DWORD kLook = 50;
    const ULONGLONG deadline = GetTickCount64() + kPatience;
    for (;;) {
        if (MoveFileExW(Spelled(file).c_str(), Spelled(newName).c_str(),
                        MOVEFILE_REPLACE_EXISTING)) {
            return {};
        }
        const std::error_code error = LastError();
        const bool held =
            error.value() == ERROR_SHARING_VIOLATION || error.value() == ERROR_ACCESS_DENIED;
        if (!held || GetTickCount64() >= deadline) return error;
        Sleep(kLook);
    }
}

bool IsDiskFull(const std::error_code& error) {
    return error.value() == ERROR_DISK_FULL || error.value() == ERROR_HANDLE_DISK_FULL ||
           error.value() == ERROR_FILE_TOO_LARGE;
}

}  // namespace nqp::companion
