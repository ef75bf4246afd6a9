#include "command/command_line.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <optional>

#include "base/file.h"
#include "command/cut_options.h"
#include "cutter/cut.h"
#include "cutter/file_handle.h"

namespace nqp::companion {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kProgressEvery = std::chrono::milliseconds(250);

constexpr char kHelp[] =
    R"(Framewright cuts fragments and stills out of clips, exact to the frame.

  Framewright cut CLIP --from TIME --to TIME [-o OUTPUT] [OPTION...]

What is made follows from the ending of OUTPUT: .avi a video, .wav or .mp3 the
sound, .bmp the still that is shown at the begin (it needs no --to). Without -o
it is put beside the clip. TIME is 70.5, 1:10.5 or 0:01:10.5.

  --video, --sound, --still   what is made, whatever OUTPUT is called;
                              --sound with .avi is an AVI of plain sound
  --format FORMAT             of a video:
      plays      MPEG-4 version 3 and PCM, plays on every Windows (the default)
      smaller    MPEG-4 part 2 and MP3
      mjpeg      Motion JPEG and PCM, every frame for itself
      lossless   FFV1 and PCM, not a bit of the picture is lost
      copy       the clip's own data, from the key frame before the begin
  --quality draft|good|best   of all that is not lossless (good)
  --keep PERCENT              share of the frames that is kept, 1 to 100 (100)
  --picture FILE.bmp          a picture laid over every frame
  --picture-x N, --picture-y N   its place, thousandths of the room it leaves (0)
  --mp3-rate HZ               sample rate of an MP3 (44100)
  --overwrite                 OUTPUT may be there already
  --quiet                     no progress

  Framewright register        lets other programs find it, for this user
  Framewright unregister      takes that back
  Framewright --help, --version

Exit codes: 0 done, 1 it could not be done, 2 the command line is wrong,
3 cancelled with Ctrl+C. A command prompt waits for it with "start /wait",
a batch file by itself.
)";

class ConsoleWatch final : public CutWatch {
public:
    ConsoleWatch(CommandConsole& console, bool quiet) : console_(console), quiet_(quiet) {}

    void Progress(int percent) override {
        const auto now = Clock::now();
        const bool last = percent == 100;
        if (quiet_ || (now < next_ && !last)) return;
        next_ = now + kProgressEvery;
        const bool onScreen = console_.Interactive();
        console_.Err(std::to_string(percent) + (onScreen ? " % copied\r" : " % copied\n"));
        if (onScreen && last) console_.Err("\n");
    }
    bool Cancelled() override { return console_.Interrupted(); }

private:
    CommandConsole& console_;
    bool quiet_;
    Clock::time_point next_{};
};

std::string Summary(const CutJob& job, const CutReport& report) {
    std::array<char, 64> text{};
    if (job.mode == core::JobMode::Image) {
        std::snprintf(text.data(), text.size(), ": one frame\n");
    } else if (job.mode == core::JobMode::Audio) {
        std::snprintf(text.data(), text.size(), ": %.3f s\n", report.seconds);
    } else {
        std::snprintf(text.data(), text.size(), ": %lld frames, %.3f s\n",
                      static_cast<long long>(report.frames), report.seconds);
    }
    return base::Utf8FromPath(job.output) + text.data();
}

int RunCut(const std::vector<std::string>& arguments, CommandConsole& console) {
    const CutOptions options = ParseCutOptions(arguments);
    const CutJob& job = options.job;
    CheckValues(job);
    if (!options.overwrite && KindOf(job.output) != PathKind::Nothing) {
        throw CutError("There is already a file " + base::Utf8FromPath(job.output) +
                       "; --overwrite replaces it.");
    }
    ConsoleWatch watch(console, options.quiet);
    const CutReport report = Cut(job, watch);
    if (report.result == CutResult::Cancelled) return kExitCancelled;
    if (report.damaged > 0) {
        console.Err("The clip is damaged in this part: " + std::to_string(report.damaged) +
                    " pieces could not be read.\n");
    }
    console.Out(Summary(job, report));
    return kExitDone;
}

int Dispatch(const std::vector<std::string>& arguments, CommandConsole& console) {
    const std::string verb = arguments.empty() ? "--help" : arguments.front();
    if (verb == "cut") return RunCut({arguments.begin() + 1, arguments.end()}, console);
    if (verb == "--help" || verb == "-h" || verb == "/?") {
        console.Out(kHelp);
        return kExitDone;
    }
    if (verb == "--version") {
        console.Out("Framewright " NQP_VERSION "\n");
        return kExitDone;
    }
    throw UsageError("There is no command \"" + verb + "\".");
}

}  // namespace

int RunCommandLine(const std::vector<std::string>& arguments, CommandConsole& console) {
    try {
        return Dispatch(arguments, console);
    } catch (const UsageError& error) {
        console.Err(std::string(error.what()) + " Framewright --help tells more.\n");
        return kExitBadUsage;
    } catch (const std::exception& error) {
        console.Err(std::string(error.what()) + "\n");
        return kExitFailed;
    }
}

}  // namespace nqp::companion
