#include "core/program_folder.h"

#include <system_error>

#include "base/file.h"

namespace nqp::core {

void DeleteFlagFile(const std::filesystem::path& programFolder) {
    std::filesystem::path flag = programFolder;
    flag += "/flag.txt";
    std::error_code ignored;
    std::filesystem::remove(flag, ignored);
}

std::string ProgramCommand(const std::filesystem::path& programFolder, const std::string& name) {
    return base::Utf8FromPath(programFolder) + "\\" + name + ".exe";
}

}  // namespace nqp::core
