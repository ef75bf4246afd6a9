#pragma once

#include <filesystem>
#include <string>

namespace nqp::core {

inline constexpr char kApplicationTitle[] = "Nuvex Quillon Player";

// The marker that a fragment job leaves for the program that works on it. It is addressed with a
// forward slash directly behind the folder, and a missing one is no error.
void DeleteFlagFile(const std::filesystem::path& programFolder);

// How the system starts the program: its path without quotes, also where it holds blanks.
std::string ProgramCommand(const std::filesystem::path& programFolder, const std::string& name);

}  // namespace nqp::core
