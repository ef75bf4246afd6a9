#include "remote/skin_package.h"

#include "base/bmp_reader.h"
#include "base/file.h"
#include "base/text.h"
#include "core/skin_files.h"
#include "forms/run_time_error.h"

namespace nqp::remote {
namespace {

// More than any screen needs; a small file may claim far more.
constexpr std::size_t kMostPixels = 4'000'000;
constexpr std::uint32_t kColorBits = 0x00FFFFFF;

}  // namespace

SkinPackage::SkinPackage(const std::filesystem::path& programFolder, const std::string& name)
    : folder_(programFolder / base::PathFromUtf8(core::kSkinsFolder + name)) {}

forms::Picture SkinPackage::LoadPicture(const std::string& fileName) const {
    const std::filesystem::path path = folder_ / fileName;
    const std::vector<char> bytes = base::ReadFile(path);
    if (bytes.empty() && !base::IsFile(path)) return nullptr;
    auto picture = base::ReadBmp(bytes);
    if (!picture) throw forms::RunTimeError(fileName + " of the skin is not a readable bitmap.");
    if (picture->Pixels().size() > kMostPixels) {
        throw forms::RunTimeError(fileName + " of the skin is too large.");
    }
    return std::make_shared<const base::Bitmap>(*std::move(picture));
}

SkinColors::SkinColors(const SkinPackage& skin)
    : file_(skin.Folder() / core::kSkinColorsName, core::kSkinColorRecordBytes) {}

forms::Color SkinColors::Read(SkinColor record) const {
    const auto number = base::ParseWholeNumber(file_.Read(record));
    if (!number) {
        throw forms::RunTimeError("Record " + std::to_string(record) + " of the skin's " +
                                  core::kSkinColorsName + " is not a number.");
    }
    return static_cast<std::uint32_t>(*number) & kColorBits;
}

}  // namespace nqp::remote
