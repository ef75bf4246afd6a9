#include "dialog/format_choice.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "base/file.h"
#include "base/record_file.h"

namespace nqp::companion {
namespace {

constexpr char kFileName[] = "framewright.cfg";
constexpr std::size_t kRecordBytes = 100;
constexpr int kFormatRecord = 1;
constexpr int kDoNotAskRecord = 2;

struct Word {
    VideoFormat format;
    std::string_view text;
};

constexpr std::array<Word, 5> kWords = {{{VideoFormat::PlaysEverywhere, "plays"},
                                         {VideoFormat::Smaller, "smaller"},
                                         {VideoFormat::MotionJpeg, "mjpeg"},
                                         {VideoFormat::Lossless, "lossless"},
                                         {VideoFormat::Copy, "copy"}}};

}  // namespace

// The file would be made where it is missing.
FormatChoice ReadFormatChoice(const std::filesystem::path& programFolder) {
    const std::filesystem::path path = programFolder / kFileName;
    if (!base::IsFile(path)) return {};
    const base::RecordFile file(path, kRecordBytes);
    const auto word = std::ranges::find(kWords, file.Read(kFormatRecord), &Word::text);
    if (word == kWords.end()) return {};
    return {word->format, file.Read(kDoNotAskRecord) != "1"};
}

bool WriteFormatChoice(const std::filesystem::path& programFolder, const FormatChoice& choice) {
    const auto word = std::ranges::find(kWords, choice.format, &Word::format);
    base::RecordFile file(programFolder / kFileName, kRecordBytes);
    return file.Write(kFormatRecord, word->text) &&
           file.Write(kDoNotAskRecord, choice.ask ? "0" : "1") && file.Commit();
}

}  // namespace nqp::companion
