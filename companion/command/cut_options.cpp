#include "command/cut_options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <utility>

#include "base/file.h"
#include "base/text.h"

namespace nqp::companion {
namespace {

using core::JobMode;

constexpr double kSixty = 60;
constexpr std::size_t kMostTimeParts = 3;

template <class Value, std::size_t Count>
using Choices = std::array<std::pair<std::string_view, Value>, Count>;

constexpr Choices<VideoFormat, 5> kFormats = {{{"plays", VideoFormat::PlaysEverywhere},
                                               {"smaller", VideoFormat::Smaller},
                                               {"mjpeg", VideoFormat::MotionJpeg},
                                               {"lossless", VideoFormat::Lossless},
                                               {"copy", VideoFormat::Copy}}};
constexpr Choices<Quality, 3> kQualities = {
    {{"draft", Quality::Draft}, {"good", Quality::Good}, {"best", Quality::Best}}};

enum class Kind { Video, Sound, Still };

std::optional<double> ParseDecimal(std::string_view text) {
    if (text.empty() || text.find_first_not_of("0123456789.") != std::string_view::npos) {
        return std::nullopt;
    }
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

template <class Value, std::size_t Count>
Value Chosen(const Choices<Value, Count>& choices, const std::string& option,
             const std::string& text) {
    const auto found = std::ranges::find(choices, std::string_view(text),
                                         [](const auto& choice) { return choice.first; });
    if (found != choices.end()) return found->second;
    std::string all;
    for (const auto& choice : choices)
        all.append(all.empty() ? "" : ", ").append(choice.first);
    throw UsageError("\"" + text + "\" is no value of " + option + "; there are " + all + ".");
}

std::int32_t WholeNumber(const std::string& option, const std::string& text) {
    const auto number = base::ParseWholeNumber(text);
    if (!number) throw UsageError("\"" + text + "\" is no whole number; " + option + " needs one.");
    return *number;
}

double TimeOf(const std::string& option, const std::string& text) {
    const auto time = ParseTime(text);
    if (!time) {
        throw UsageError("\"" + text + "\" is no time; " + option + " needs one like 1:10.5.");
    }
    return *time;
}

class Parser {
public:
    explicit Parser(const std::vector<std::string>& arguments) : arguments_(arguments) {}

    CutOptions Parse() {
        while (next_ < arguments_.size())
            Take(arguments_[next_++]);
        Finish();
        return std::move(options_);
    }

private:
    void Take(const std::string& argument) {
        if (!argument.starts_with('-') || argument.size() == 1) return TakeSource(argument);
        if (!TakeSwitch(argument)) TakeOption(argument, Value(argument));
    }

    void TakeSource(const std::string& path) {
        if (!options_.job.source.empty()) {
            throw UsageError("There is one clip too many: \"" + path + "\".");
        }
        options_.job.source = base::PathFromUtf8(path);
    }

    bool TakeSwitch(const std::string& name) {
        if (name == "--video") return Choose(Kind::Video);
        if (name == "--sound") return Choose(Kind::Sound);
        if (name == "--still") return Choose(Kind::Still);
        if (name == "--overwrite") return options_.overwrite = true;
        if (name == "--quiet") return options_.quiet = true;
        return false;
    }

    bool Choose(Kind kind) {
        if (kind_ && *kind_ != kind) {
            throw UsageError("Only one of --video, --sound and --still can be made at once.");
        }
        kind_ = kind;
        return true;
    }

    std::string Value(const std::string& option) {
        static constexpr std::array<std::string_view, 11> kWithValue = {
            "--from", "--to",      "-o",          "--output",    "--format",  "--quality",
            "--keep", "--picture", "--picture-x", "--picture-y", "--mp3-rate"};
        if (std::ranges::find(kWithValue, std::string_view(option)) == kWithValue.end()) {
            throw UsageError("There is no option " + option + ".");
        }
        if (next_ == arguments_.size()) throw UsageError(option + " needs a value.");
        return arguments_[next_++];
    }

    void TakeOption(const std::string& name, const std::string& value) {
        CutJob& job = options_.job;
        if (name == "--from") from_ = TimeOf(name, value);
        if (name == "--to") to_ = TimeOf(name, value);
        if (name == "-o" || name == "--output") job.output = base::PathFromUtf8(value);
        if (name == "--format") job.video = Chosen(kFormats, name, value);
        if (name == "--quality") job.quality = Chosen(kQualities, name, value);
        if (name == "--keep") job.percentage = WholeNumber(name, value);
        if (name == "--picture") job.picture.path = value;
        if (name == "--picture-x") job.picture.x = WholeNumber(name, value);
        if (name == "--picture-y") job.picture.y = WholeNumber(name, value);
        if (name == "--mp3-rate") job.mp3Rate = WholeNumber(name, value);
    }

    std::string Extension() const {
        return base::LowerCase(base::Utf8FromPath(options_.job.output.extension()));
    }

    Kind KindOfOutput() const {
        const std::string extension = Extension();
        if (extension == ".bmp") return Kind::Still;
        return extension == ".mp3" || extension == ".wav" ? Kind::Sound : Kind::Video;
    }

    void Finish() {
        CutJob& job = options_.job;
        if (job.source.empty()) throw UsageError("No clip was given.");
        const Kind kind = kind_.value_or(KindOfOutput());
        if (!from_) throw UsageError("Where the fragment begins was not given: --from TIME.");
        if (!to_ && kind != Kind::Still) {
            throw UsageError("Where the fragment ends was not given: --to TIME.");
        }
        job.begin = *from_;
        job.end = to_.value_or(*from_);
        SetMode(kind);
        if (job.output.empty()) job.output = OutputBesideSource(kind);
        SetSound();
    }

    void SetMode(Kind kind) {
        CutJob& job = options_.job;
        const bool withPicture = !job.picture.path.empty();
        if (withPicture && kind != Kind::Video) {
            throw UsageError("A picture can be laid over a video fragment only.");
        }
        if (withPicture && job.video == VideoFormat::Copy) {
            throw UsageError("A picture can be laid over frames that are encoded anew only.");
        }
        if (kind == Kind::Video)
            job.mode = withPicture ? JobMode::VideoWithPicture : JobMode::Video;
        if (kind == Kind::Sound) job.mode = JobMode::Audio;
        if (kind == Kind::Still) job.mode = JobMode::Image;
    }

    void SetSound() {
        const std::string extension = Extension();
        if (extension == ".mp3") options_.job.sound = SoundFormat::Mp3;
        if (extension == ".wav") options_.job.sound = SoundFormat::Wave;
    }

    // "Clip 0.01.02.avi": a name cannot hold colons.
    std::filesystem::path OutputBesideSource(Kind kind) const {
        const CutJob& job = options_.job;
        std::string name = base::Utf8FromPath(job.source.stem());
        name.append(" ").append(FileClock(job.begin));
        if (kind != Kind::Still) name.append(" - ").append(FileClock(job.end));
        static constexpr std::array<const char*, 3> kEndings = {".avi", ".wav", ".bmp"};
        name.append(kEndings.at(static_cast<std::size_t>(kind)));
        return job.source.parent_path() / base::PathFromUtf8(name);
    }

    static std::string FileClock(double seconds) {
        std::string text = ClockText(seconds);
        std::ranges::replace(text, ':', '.');
        return text;
    }

    const std::vector<std::string>& arguments_;
    std::size_t next_ = 0;
    CutOptions options_;
    std::optional<Kind> kind_;
    std::optional<double> from_;
    std::optional<double> to_;
};

}  // namespace

std::optional<double> ParseTime(std::string_view text) {
    double seconds = 0;
    for (std::size_t part = 0; part < kMostTimeParts; ++part) {
        const auto colon = text.find(':');
        const std::string_view piece = text.substr(0, colon);
        const auto number = ParseDecimal(piece);
        const bool last = colon == std::string_view::npos;
        if (!number || (!last && piece.find('.') != std::string_view::npos)) return std::nullopt;
        if (part > 0 && *number >= kSixty) return std::nullopt;
        seconds = seconds * kSixty + *number;
        if (seconds > kMostSeconds) return std::nullopt;
        if (last) return seconds;
        text.remove_prefix(colon + 1);
    }
    return std::nullopt;
}

CutOptions ParseCutOptions(const std::vector<std::string>& arguments) {
    return Parser(arguments).Parse();
}

}  // namespace nqp::companion
