#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iostream>

#include "player.h"
#include "playlist/playlist_file.h"

// A list that is far too long is as quick as a short one.
namespace nqp::test {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kItems = 100'000;
constexpr int kDropped = 10'000;
constexpr double kMostMilliseconds = 1000;
constexpr double kMostTimesOfPlain = 3;

template <class Work>
double Milliseconds(const char* what, Work work) {
    const auto begin = Clock::now();
    work();
    const std::chrono::duration<double, std::milli> took = Clock::now() - begin;
    std::cout << what << ": " << took.count() << " ms\n";
    return took.count();
}

std::string NameOf(int item) {
    return "A clip with a name of the usual length " + std::to_string(item) + ".avi";
}

playlist::PlaylistStore LongList() {
    playlist::PlaylistStore store;
    store.Reserve(kItems);
    for (int item = 0; item < kItems; ++item)
        store.Append({NameOf(item), "C:\\Users\\Somebody\\Videos\\" + NameOf(item)});
    return store;
}

class LongPlaylist : public testing::Test {
protected:
    void Start() {
        playlist::SavePlaylist(player_.folder.Path(), LongList());
        player_.Start();
        GoTo(remote_);
        PressKeyIn(remote_.Picture15, base::kKeySpace);
        ASSERT_EQ(remote_.List1.ListCount(), kItems);
    }
    void Redraw() {
        RedrawWindow(static_cast<HWND>(remote_.Handle()), nullptr, nullptr,
                     RDW_UPDATENOW | RDW_ALLCHILDREN);
    }

    Player player_;
    remote::Form4& remote_ = player_.form4;
};

TEST_F(LongPlaylist, TakesManyFilesAtOnce) {
    Start();
    std::vector<std::string> paths;
    for (int file = 0; file < kDropped; ++file)
        paths.push_back("D:\\dropped " + std::to_string(file));
    const int middle = kItems / 2;
    remote_.List1.Select(middle);
    EXPECT_LT(Milliseconds("dropping 10,000 files on 100,000",
                           [&] {
                               DropFiles(remote_.List1, paths);
                               Redraw();
                           }),
              kMostMilliseconds);
    EXPECT_EQ(remote_.List1.ListCount(), kItems + kDropped);
    EXPECT_EQ(remote_.Playlist().playlist_paths(middle + 2), paths.back());
    EXPECT_EQ(remote_.List1.SelectedLines(), std::vector<int>{middle});
}

TEST_F(LongPlaylist, LosesEverySecondLineAtOnce) {
    Start();
    std::vector<int> lines;
    for (int line = 0; line < kItems; line += 2)
        lines.push_back(line);
    remote_.List1.LinesChanged(lines);
    ASSERT_EQ(remote_.List1.SelectedLines(), lines);
    EXPECT_LT(Milliseconds("removing every second of 100,000",
                           [&] {
                               remote_.clear_items.Click();
                               Redraw();
                           }),
              kMostMilliseconds);
    EXPECT_EQ(remote_.List1.ListCount(), kItems / 2);
    EXPECT_EQ(remote_.Playlist().playlist_names(1), NameOf(1));
    EXPECT_EQ(remote_.Playlist().playlist_names(kItems / 2), NameOf(kItems - 1));
}

void WritePlainly(const std::filesystem::path& path, const std::vector<char>& bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// The best of many rounds: a round also takes the time in which the system finds the memory for the
// files. Saving and plain writing both replace a file that is there.
TEST_F(LongPlaylist, IsLoadedAndSavedAsQuicklyAsItsBytes) {
    constexpr int kRounds = 10;
    const TempFolder folder;
    const playlist::PlaylistStore store = LongList();
    ASSERT_TRUE(playlist::SavePlaylist(folder.Path(), store));
    std::vector<char> bytes = base::ReadFile(folder.Path() / "playlist.cfg");
    WritePlainly(folder.Path() / "plain", bytes);
    double saving = kMostMilliseconds;
    double loading = kMostMilliseconds;
    double reading = kMostMilliseconds;
    double writing = kMostMilliseconds;
    for (int round = 0; round < kRounds; ++round) {
        saving = std::min(saving, Milliseconds("saving 100,000 items", [&] {
                              ASSERT_TRUE(playlist::SavePlaylist(folder.Path(), store));
                          }));
        loading =
            std::min(loading, Milliseconds("loading 100,000 items", [&] {
                         EXPECT_EQ(playlist::LoadPlaylist(folder.Path()).playlist_count(), kItems);
                     }));
        reading = std::min(reading, Milliseconds("reading the same bytes", [&] {
                               bytes = base::ReadFile(folder.Path() / "plain");
                           }));
        writing = std::min(writing, Milliseconds("writing the same bytes", [&] {
                               WritePlainly(folder.Path() / "plain", bytes);
                           }));
    }
    EXPECT_LT(saving, kMostMilliseconds);
    EXPECT_LT(loading, kMostMilliseconds);
    EXPECT_LT(loading, kMostTimesOfPlain * reading);
    EXPECT_LT(saving, kMostTimesOfPlain * writing);
}

TEST_F(LongPlaylist, IsShownAndScrolledWithoutAWait) {
    Start();
    EXPECT_LT(Milliseconds("going to the last of 100,000 lines",
                           [&] {
                               remote_.List1.Select(kItems - 1);
                               Redraw();
                           }),
              kMostMilliseconds / 10);
}

}  // namespace
}  // namespace nqp::test
