#include "cutter/bmp_writer.h"
#include "cutter/fragment_reader.h"
#include "cutter/job_parts.h"
#include "cutter/picture_chain.h"

namespace nqp::companion {
namespace {

class StillCut final : public FragmentSink {
public:
    explicit StillCut(const AVStream& stream)
        : form_{.turns = TurnsOf(stream), .keepsSize = true, .format = AV_PIX_FMT_BGR24} {}

    void Begin(double, const AVFrame* first) override {
        if (first == nullptr) return;
        PictureChain chain(form_, *first, [this](AVFrame& frame) {
            file_ = BmpFile(frame.width, frame.height, frame.data[0], frame.linesize[0]);
        });
        chain.Add(*first);
        chain.Finish();
    }
    bool TakeFrame(const AVFrame&, double, double) override { return false; }
    bool TakeSound(const AVFrame&, double) override { return false; }

    const std::vector<std::uint8_t>& File() const { return file_; }

private:
    PictureForm form_;
    std::vector<std::uint8_t> file_;
};

}  // namespace

// Players round the position of the end up to whole seconds, and show the last frame there.
CutReport GrabStill(const CutJob& job, Source& source, TemporaryOutput& output) {
    const AVStream* const video = source.Video();
    if (video == nullptr) throw CutError(source.Name() + " has no picture.");
    FragmentReader reader(source, video, nullptr,
                          {.begin = job.begin,
                           .end = job.begin,
                           .frameSeconds = 1 / av_q2d(source.ToldFrameRate()),
                           .lastIsShown = true});
    StillCut cut(*video);
    reader.Run(cut);
    if (cut.File().empty()) {
        throw CutError("There is no picture at " + ClockText(job.begin) + " in " + source.Name() +
                       ".");
    }
    output.Write(cut.File());
    return {.frames = 1, .damaged = reader.Damaged()};
}

}  // namespace nqp::companion
