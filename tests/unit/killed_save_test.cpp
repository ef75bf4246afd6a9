#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <string>
#include <thread>

#include "core/settings_file.h"
#include "playlist/playlist_file.h"
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

// 5000 items in the file of a longer list: the old list or the new one is found, never a part.
TEST(KilledSave, OfThePlaylistLeavesTheOldListOrTheNewOne) {
    constexpr int kOldItems = 7000;
    constexpr int kNewItems = 5000;
    const auto listOf = [](int count, const std::string& name) {
        playlist::PlaylistStore store;
        for (int item = 0; item < count; ++item)
            store.Append({name + std::to_string(item), "C:\\" + name + std::to_string(item)});
        return store;
    };
    const test::TempFolder folder;
    const playlist::PlaylistStore before = listOf(kOldItems, "old");
    const playlist::PlaylistStore after = listOf(kNewItems, "new");
    int foundNew = 0;
    for (int kill = 0; kill < 40; ++kill) {
        ASSERT_TRUE(playlist::SavePlaylist(folder.Path(), before));
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            playlist::SavePlaylist(folder.Path(), after);
            _exit(0);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(700 * kill));
        ::kill(child, SIGKILL);
        ASSERT_EQ(waitpid(child, nullptr, 0), child);

        const playlist::PlaylistStore found = playlist::LoadPlaylist(folder.Path());
        const bool isNew = found.playlist_count() == kNewItems;
        foundNew += isNew ? 1 : 0;
        const playlist::PlaylistStore& wanted = isNew ? after : before;
        ASSERT_EQ(found.playlist_count(), wanted.playlist_count());
        for (int item = 1; item <= wanted.playlist_count(); ++item) {
            ASSERT_EQ(found.playlist_names(item), wanted.playlist_names(item));
            ASSERT_EQ(found.playlist_paths(item), wanted.playlist_paths(item));
        }
    }
    EXPECT_LT(foundNew, 40);  // or no kill came in time
}

// Files beyond so many bytes fail like those on a disk that is full.
void AllowFilesUpTo(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, bytes};
    setrlimit(RLIMIT_FSIZE, &limit);
}

TEST(FailedSave, OnAFullDiskLeavesTheOldList) {
    const test::TempFolder folder;
    playlist::PlaylistStore before;
    before.Append({"old", "C:\\old"});
    ASSERT_TRUE(playlist::SavePlaylist(folder.Path(), before));
    playlist::PlaylistStore after;
    for (int item = 0; item < 100; ++item)
        after.Append({"new", "C:\\new"});
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        AllowFilesUpTo(10'000);
        _exit(playlist::SavePlaylist(folder.Path(), after) ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    const playlist::PlaylistStore found = playlist::LoadPlaylist(folder.Path());
    ASSERT_EQ(found.playlist_count(), 1);
    EXPECT_EQ(found.playlist_paths(1), "C:\\old");
    EXPECT_FALSE(folder.Has("playlist.cfg.new"));
}

}  // namespace
}  // namespace nqp::core
