#include "cutter/temporary_output.h"

#include <charconv>
#include <string>
#include <vector>

#include "base/file.h"
#include "cutter/cut.h"

namespace nqp::companion {
namespace {

// Of a file that is being written; in front of it are the process that does so and a number.
constexpr char kEnding[] = ".framewright-part";
constexpr int kMostNames = 100;

std::filesystem::path FolderOf(const std::filesystem::path& target) {
    return target.has_parent_path() ? target.parent_path() : std::filesystem::path(".");
}

std::filesystem::path NameOf(int number) {
    return std::to_string(ProcessNumber()) + "-" + std::to_string(number) + kEnding;
}

// A process does one job at a time: a file with our own number is that of another one, which had it
// before. A number that some other process has now keeps its file for this time.
bool IsLeftover(const std::filesystem::path& path) {
    if (path.extension() != kEnding) return false;
    const std::string name = base::Utf8FromPath(path.stem());
    std::uint32_t process = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), process);
    const bool ours = error == std::errc() && end != name.data() + name.size() && *end == '-';
    return ours && (process == ProcessNumber() || !IsRunning(process));
}

void RemoveLeftovers(const std::filesystem::path& folder) {
    for (const auto& name : FilesIn(folder)) {
        if (IsLeftover(name)) RemoveFile(folder / name);
    }
}

// Without what a sentence of the system ends with.
std::string Reason(const std::error_code& error) {
    std::string text = error.message();
    text.erase(text.find_last_not_of(". \r\n") + 1);
    return text;
}

std::string Sentence(const std::filesystem::path& target, const std::error_code& error) {
    const std::string path = base::Utf8FromPath(target);
    if (IsDiskFull(error)) return "There is no room left on the disk to write " + path + ".";
    return path + " cannot be written: " + Reason(error) + ".";
}

}  // namespace

TemporaryOutput::TemporaryOutput(const std::filesystem::path& target) : target_(target) {
    const std::filesystem::path folder = FolderOf(target);
    if (KindOf(folder) != PathKind::Folder) {
        throw CutError("There is no folder " + base::Utf8FromPath(folder) + ".");
    }
    if (KindOf(target) == PathKind::Folder) {
        throw CutError(base::Utf8FromPath(target) + " is a folder.");
    }
    failure_ = CanGiveWay(target);
    ThrowIfFailed();
    RemoveLeftovers(folder);
    for (int number = 1; number <= kMostNames; ++number) {
        path_ = folder / NameOf(number);
        file_ = FileHandle::CreateNew(path_, failure_);
        if (file_.IsOpen()) return;
        if (failure_ != std::errc::file_exists) break;
    }
    ThrowIfFailed();
}

TemporaryOutput::~TemporaryOutput() {
    if (!file_.IsOpen()) return;
    file_.Close();
    RemoveFile(path_);
}

bool TemporaryOutput::Write(std::span<const std::uint8_t> bytes) {
    if (!failure_) failure_ = file_.Write(bytes);
    return !failure_;
}

bool TemporaryOutput::Seek(std::int64_t place) {
    return file_.Seek(place);
}

void TemporaryOutput::ThrowIfFailed() const {
    if (failure_) throw CutError(Sentence(target_, failure_));
}

void TemporaryOutput::PutInPlace() {
    ThrowIfFailed();
    // An old file goes only when the new one is on the disk.
    const bool safe = KindOf(target_) == PathKind::Nothing || file_.Flush();
    file_.Close();
    failure_ = safe ? MoveOver(path_, target_) : std::make_error_code(std::errc::io_error);
    if (!failure_) return;
    RemoveFile(path_);
    ThrowIfFailed();
}

}  // namespace nqp::companion
