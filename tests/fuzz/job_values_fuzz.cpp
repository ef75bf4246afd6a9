// A job of the companion's class with any values, done with a short clip.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "base/file.h"
#include "server/job_values.h"

namespace {

using namespace nqp;
using namespace nqp::companion;

void Require(bool condition) {
    if (!condition) std::abort();
}

// With one clip in it; goes with the process.
struct ClipFolder {
    ClipFolder() : path(Made()) {}
    ~ClipFolder() { std::filesystem::remove_all(path); }

    static std::filesystem::path Made() {
        std::string name = (std::filesystem::temp_directory_path() / "nqp-job-XXXXXX").string();
        Require(mkdtemp(name.data()) != nullptr);
        const std::string command =
            "ffmpeg -nostdin -v error -f lavfi -i testsrc2=size=48x36:rate=25:duration=1 "
            "-f lavfi -i sine=440:sample_rate=8000:duration=1 -c:v mpeg4 -c:a pcm_s16le " +
            name + "/clip.avi";
        Require(std::system(command.c_str()) == 0);
        return name;
    }

    std::filesystem::path path;
};

const std::filesystem::path& Folder() {
    static const ClipFolder folder;
    return folder.path;
}

class PatientWatch final : public CutWatch {
public:
    explicit PatientWatch(int cancelledAfter) : left_(cancelledAfter) {}

    void Progress(int percent) override {
        Require(percent >= last_ && percent <= 100);
        last_ = percent;
    }
    bool Cancelled() override { return left_ >= 0 && left_-- == 0; }
    int Last() const { return last_; }

private:
    int left_;
    int last_ = 0;
};

double Seconds(FuzzedDataProvider& data) {
    return data.ConsumeBool() ? data.ConsumeFloatingPoint<double>()
                              : data.ConsumeFloatingPointInRange<double>(-0.5, 2);
}

std::string File(FuzzedDataProvider& data, const char* usual) {
    if (data.ConsumeIntegralInRange(0, 9) == 0) return data.ConsumeRandomLengthString(40);
    return base::Utf8FromPath(Folder() / usual) + std::string(data.ConsumeBool() ? 3 : 0, '\0');
}

JobValues Values(FuzzedDataProvider& data) {
    JobValues values;
    values.mode = data.ConsumeIntegralInRange(-1, 4);
    values.imageX = data.ConsumeIntegralInRange(-1, 1001);
    values.imageY = data.ConsumeIntegralInRange(-1, 1001);
    values.imagePath = File(data, "picture.bmp");
    values.percentage = data.ConsumeIntegralInRange(-1, 101);
    values.sourceFile = File(data, "clip.avi");
    values.outputFile = File(data, data.PickValueInArray({"out.avi", "out.wav", "out.MP3", "o"}));
    values.fragmentStart = Seconds(data);
    values.fragmentEnd = Seconds(data);
    return values;
}

// Whatever a path in the values may name, only the folder is written to.
bool IsInFolder(const std::filesystem::path& path) {
    return path.parent_path() == Folder();
}

bool NothingIsLeft() {
    for (const auto& entry : std::filesystem::directory_iterator(Folder())) {
        if (entry.path().extension() == ".framewright-part") return false;
    }
    return true;
}

void Do(FuzzedDataProvider& data) {
    CutJob job = JobOf(Values(data));
    job.video =
        data.PickValueInArray({VideoFormat::PlaysEverywhere, VideoFormat::Smaller,
                               VideoFormat::MotionJpeg, VideoFormat::Lossless, VideoFormat::Copy});
    job.quality = data.PickValueInArray({Quality::Draft, Quality::Good, Quality::Best});
    job.mp3Rate = data.ConsumeIntegral<std::int32_t>();
    if (!IsInFolder(job.output) || !IsInFolder(job.source)) return CheckValues(job);
    std::filesystem::remove(job.output == job.source ? std::filesystem::path() : job.output);
    PatientWatch watch(data.ConsumeBool() ? data.ConsumeIntegralInRange(0, 200) : -1);
    const CutReport report = Cut(job, watch);
    const bool done = report.result == CutResult::Done;
    Require(done == base::IsFile(job.output) && done == (watch.Last() == 100));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzedDataProvider data(bytes, size);
    try {
        Do(data);
    } catch (const CutError& error) {
        Require(error.what()[0] != '\0');
    }
    Require(NothingIsLeft() && base::IsFile(Folder() / "clip.avi"));
    return 0;
}
