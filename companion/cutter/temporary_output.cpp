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

// Short, so that it fits wherever the target fits.
std::filesystem::path NameOf(int number) {
    return std::to_string(ProcessNumber()) + "-" + std::to_string(number) + kEnding;
}

// A number that the system has given to another process meanwhile keeps its file for now.
bool IsLeftover(const std::filesystem::path& path) {
    if (path.extension() != kEnding) return false;
    const std::string name = base::Utf8FromPath(path.stem());
    std::uint32_t process = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), process);
    const bool ours = error == std::errc() && end != name.data() + name.size() && *end == '-';
    return ours && !IsRunning(process);
}

void RemoveLeftovers(const std::filesystem::path& folder) {
    std::error_code error;
    std::vector<std::filesystem::path> leftovers;
    for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end;
         it.increment(error)) {
        if (IsLeftover(it->path())) leftovers.push_back(it->path());
    }
    for (const auto& path : leftovers)
        std::filesystem::remove(path, error);
}

std::string Sentence(const std::filesystem::path& target, const std::error_code& error) {
    const std::string path = base::Utf8FromPath(target);
    if (IsDiskFull(error)) return "There is no room left on the disk to write " + path + ".";
    return path + " cannot be written: " + error.message() + ".";
}

}  // namespace

TemporaryOutput::TemporaryOutput(const std::filesystem::path& target) : target_(target) {
    const std::filesystem::path folder = FolderOf(target);
    if (!std::filesystem::is_directory(folder, failure_)) {
        throw CutError("There is no folder " + base::Utf8FromPath(folder) + ".");
    }
    if (std::filesystem::is_directory(target, failure_)) {
        throw CutError(base::Utf8FromPath(target) + " is a folder.");
    }
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
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
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
    file_.Close();
    failure_ = MoveOver(path_, target_);
    if (!failure_) return;
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
    ThrowIfFailed();
}

}  // namespace nqp::companion
