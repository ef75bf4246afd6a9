#include "options/skin_list.h"

#include <algorithm>
#include <exception>
#include <fstream>
#include <optional>
#include <system_error>

#include "base/file.h"
#include "base/text.h"
#include "core/skin_files.h"

namespace nqp::options {
namespace {

// Nothing for a name that is no text, which the settings could not hold.
std::optional<std::string> NameOf(const std::filesystem::path& folder) {
    try {
        return base::Utf8FromPath(folder.filename());
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::vector<std::string> FoldersIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        std::error_code ignored;
        const auto name = NameOf(entry->path());
        if (name && entry->is_directory(ignored)) names.push_back(*name);
    }
    std::ranges::sort(names, {}, base::LowerCase);
    return names;
}

// Makes the file when it is missing.
bool HasColors(const std::filesystem::path& skin) {
    const std::filesystem::path colors = skin / core::kSkinColorsName;
    std::ofstream(colors, std::ios::binary | std::ios::app);
    std::error_code error;
    const auto size = std::filesystem::file_size(colors, error);
    return !error && size > 0;
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
