#pragma once

#include <filesystem>
#include <string>

namespace nqp::core {

inline constexpr char kApplicationTitle[] = "Nuvex Quillon Player";

// The marker that cancels a fragment job: the program that works on it watches for the file.
inline constexpr char kFlagFileName[] = "flag.txt";

// A marker that is left over must not cancel the next job. It is addressed with a
// forward slash directly behind the folder, and a missing one is no error.
void DeleteFlagFile(const std::filesystem::path& programFolder);

// How the system starts the program: its path without quotes, also where it holds blanks.
std::string ProgramCommand(const std::filesystem::path& programFolder, const std::string& name);

}  // namespace nqp::core
