#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace nqp::core {

// The program that cuts fragments. It stands in the program folder and serves this class, each
// object in a process of its own, which ends with a job that was started and not waited for, though
// the object is still held.
inline constexpr char kCompanionFileName[] = "Framewright.exe";
inline constexpr char kCompanionProgId[] = "Framewright.FragmentJob";

enum class JobMode : std::int32_t {
    Video = 0,
    Audio = 1,
    Image = 2,  // the frame at the begin of the fragment
    VideoWithPicture = 3,
};

// Where a picture is laid over a fragment: thousandths of the room that it leaves.
struct PicturePlacement {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::string path;
};

// All that the companion is told about one job.
struct FragmentJob {
    JobMode mode = JobMode::Video;
    PicturePlacement picture;     // with VideoWithPicture only
    std::int32_t percentage = 0;  // share of the source's frames that is kept
    std::string statusFile;
    std::string cancelFile;
    std::string outputFile;  // may have NUL characters behind the path
    std::string sourceFile;
    double begin = 0;  // seconds
    double end = 0;
    // Told once more, last of all: where a job that nobody waits for leaves its result.
    std::optional<std::string> lastOutputFile;
};

// The members of the companion's class.
namespace companion_member {
inline constexpr char kMode[] = "Mode";
inline constexpr char kImageX[] = "ImageX";
inline constexpr char kImageY[] = "ImageY";
inline constexpr char kImagePath[] = "ImagePath";
inline constexpr char kPercentage[] = "Percentage";
inline constexpr char kStatusFile[] = "StatusFile";
inline constexpr char kCancelFile[] = "CancelFile";
inline constexpr char kOutputFile[] = "OutputFile";
inline constexpr char kSourceFile[] = "SourceFile";
inline constexpr char kFragmentStart[] = "FragmentStart";  // seconds, a Double
inline constexpr char kFragmentEnd[] = "FragmentEnd";
inline constexpr char kProcessId[] = "ProcessId";  // read only
inline constexpr char kRun[] = "Run";              // returns when the job has ended
inline constexpr char kStart[] = "Start";          // returns at once
}  // namespace companion_member

using MemberValue = std::variant<std::int32_t, double, std::string>;

struct CompanionMember {
    std::string_view name;
    MemberValue value;
    bool operator==(const CompanionMember&) const = default;
};

// What is set before the process id is read, in the order in which the companion is to be told.
std::vector<CompanionMember> MembersInOrder(const FragmentJob& job);

enum class RunMode { Waiting, Beside };

// One job in the companion, from its creation on. The calls to the companion are made elsewhere, so
// that one which hangs holds up nobody here; when such a call ends, the window thread's message
// loop turns. An object that goes leaves the companion to itself.
class CompanionJob {
public:
    virtual ~CompanionJob() = default;

    // Waiting: the job has ended. Beside: it was started. Also true when either failed.
    virtual bool Returned() const = 0;
    // Once it has returned: a sentence for the user, or nothing when all went well.
    virtual std::optional<std::string> Error() const = 0;
    // Ends the companion's process; failures are ignored, and a process that was never known is
    // left alone.
    virtual void EndProcess() = 0;
    // The companion's process was known and has ended.
    virtual bool ProcessEnded() const = 0;
};

class Companion {
public:
    // Creates the companion's job object, tells it the job and starts it. Returns at once.
    virtual std::unique_ptr<CompanionJob> Begin(const FragmentJob& job, RunMode mode) = 0;

protected:
    ~Companion() = default;
};

}  // namespace nqp::core
