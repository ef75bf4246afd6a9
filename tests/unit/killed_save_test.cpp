#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <string>
#include <thread>

#include "core/settings_file.h"
#include "temp_folder.h"

namespace nqp::core {
namespace {

constexpr int kFirst = 1;
constexpr int kLast = kSettingsRecordCount;

void SaveAll(const std::filesystem::path& folder, int generation) {
    SettingsFile file(folder);
    // Texts of other lengths each time, so that a mixture of two saves cannot look whole.
    const std::string text =
        std::to_string(generation) + std::string(static_cast<std::size_t>(generation % 700), '.');
    for (int record = kFirst; record <= kLast; ++record) {
        file.SetText(static_cast<SettingsRecord>(record), text);
    }
    file.Commit();
}

[[noreturn]] void SaveForEver(const std::filesystem::path& folder) {
    for (int generation = 1;; ++generation)
        SaveAll(folder, generation);
}

// A program that saves without a pause is killed at one moment after another; whatever is then in
// the file comes from one save.
TEST(KilledSave, LeavesOneWholeGeneration) {
    const test::TempFolder folder;
    SaveAll(folder.Path(), 0);
    for (int kill = 0; kill < 60; ++kill) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) SaveForEver(folder.Path());
        std::this_thread::sleep_for(std::chrono::microseconds(500 + 397 * kill));
        ::kill(child, SIGKILL);
        ASSERT_EQ(waitpid(child, nullptr, 0), child);

        const SettingsFile file(folder.Path());
        const std::string first = file.Text(kRememberWindow);
        ASSERT_FALSE(first.empty());
        for (int record = kFirst; record <= kLast; ++record) {
            ASSERT_EQ(file.Text(static_cast<SettingsRecord>(record)), first) << record;
        }
    }
}

}  // namespace
}  // namespace nqp::core
