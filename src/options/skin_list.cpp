#include "options/skin_list.h"

#include <algorithm>
#include <system_error>

#include "base/file.h"
#include "base/record_file.h"
#include "core/skin_files.h"

namespace nqp::options {
namespace {

std::string LowerCase(std::string text) {
    for (char& letter : text)
        letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    return text;
}

std::vector<std::string> FoldersIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        std::error_code ignored;
        if (entry->is_directory(ignored))
            names.push_back(base::Utf8FromPath(entry->path().filename()));
    }
    std::ranges::sort(names, {}, LowerCase);
    return names;
}

bool HasColors(const std::filesystem::path& skin) {
    return !base::RecordFile(skin / core::kSkinColorsName, core::kSkinColorRecordBytes).Empty();
}

}  // namespace

SkinList ListSkins(const std::filesystem::path& programFolder, const std::string& presentSkin) {
    const std::filesystem::path skins = programFolder / core::kSkinsFolder;
    SkinList list;
    for (const std::string& name : FoldersIn(skins)) {
        if (HasColors(skins / base::PathFromUtf8(name))) list.names.push_back(name);
        if (name == presentSkin) list.selected = static_cast<int>(list.names.size()) - 1;
    }
    return list;
}

}  // namespace nqp::options
