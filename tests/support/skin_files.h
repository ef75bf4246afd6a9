#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "base/record_file.h"
#include "temp_folder.h"

namespace nqp::test {

// A skin in the making inside a program folder.
class SkinFiles {
public:
    SkinFiles(const TempFolder& programFolder, const std::string& name)
        : folder_(programFolder), name_("Skins/" + name) {
        std::filesystem::create_directories(Folder());
    }

    std::filesystem::path Folder() const {
        return folder_.Path() / std::u8string(name_.begin(), name_.end());
    }
    void Put(const std::string& file, const std::string& content) const {
        std::ofstream(Folder() / file, std::ios::binary) << content;
    }
    // The texts of the records, from the first one on.
    void PutColors(const std::vector<std::string>& records) const {
        base::RecordFile file(Folder() / "nqp_colors.cfg", 128);
        for (std::size_t index = 0; index < records.size(); ++index)
            file.Write(static_cast<int>(index) + 1, records[index]);
        file.Commit();
    }

private:
    const TempFolder& folder_;
    std::string name_;
};

}  // namespace nqp::test
