#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <system_error>
#include <vector>

namespace nqp::companion {

// An open file of any size, read and written without a buffer of its own. Closed by the destructor.
class FileHandle {
public:
    // Neither is thrown for: `error` says what went wrong.
    static FileHandle OpenToRead(const std::filesystem::path& path, std::error_code& error);
    // A new file, which nobody else may write to. An error when there is one of that name.
    static FileHandle CreateNew(const std::filesystem::path& path, std::error_code& error);

    FileHandle() = default;
    FileHandle(FileHandle&& other) noexcept;
    FileHandle& operator=(FileHandle&& other) noexcept;
    ~FileHandle() { Close(); }

    bool IsOpen() const { return handle_ != kNone; }
    // All that is left to write reaches the disk.
    bool Flush();
    void Close();

    // How many bytes were read, 0 at the end of the file; nothing when it cannot be read.
    std::optional<std::size_t> Read(std::span<std::uint8_t> bytes);
    // Of all bytes.
    std::error_code Write(std::span<const std::uint8_t> bytes);
    // From the beginning of the file.
    bool Seek(std::int64_t place);
    // Nothing when it is not known.
    std::optional<std::int64_t> Size() const;

private:
    static constexpr std::intptr_t kNone = -1;

    explicit FileHandle(std::intptr_t handle) : handle_(handle) {}

    std::intptr_t handle_ = kNone;
};

enum class PathKind { Nothing, File, Folder };
PathKind KindOf(const std::filesystem::path& path);
void RemoveFile(const std::filesystem::path& path);
// Their names, without the folder.
std::vector<std::filesystem::path> FilesIn(const std::filesystem::path& folder);
// No error when a file of that name can give way to another one, or there is none.
std::error_code CanGiveWay(const std::filesystem::path& path);

// Of this process, and whether there is one of that number.
std::uint32_t ProcessNumber();
bool IsRunning(std::uint32_t process);

// In one step, also when there is a file of the new name. A file that another program, one that
// looks for viruses say, holds for a moment is waited for.
std::error_code MoveOver(const std::filesystem::path& file, const std::filesystem::path& newName);

// The disk has no room for more.
bool IsDiskFull(const std::error_code& error);

}  // namespace nqp::companion
