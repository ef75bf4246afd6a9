#include "core/program_folder.h"

#include <system_error>

namespace nqp::core {

void DeleteFlagFile(const std::filesystem::path& programFolder) {
    std::filesystem::path flag = programFolder;
    flag += "/flag.txt";
    std::error_code ignored;
    std::filesystem::remove(flag, ignored);
}

}  // namespace nqp::core
