#include <gtest/gtest.h>
#include <windows.h>

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

TEST_F(LongPlaylist, IsLoadedAndSavedAsQuicklyAsItsBytes) {
    const TempFolder folder;
    const playlist::PlaylistStore store = LongList();
    const double saving = Milliseconds(
        "saving 100,000 items", [&] { ASSERT_TRUE(playlist::SavePlaylist(folder.Path(), store)); });
    const double savingOver = Milliseconds("saving them over themselves", [&] {
        ASSERT_TRUE(playlist::SavePlaylist(folder.Path(), store));
    });
    playlist::PlaylistStore loaded;
    const double loading = Milliseconds("loading 100,000 items",
                                        [&] { loaded = playlist::LoadPlaylist(folder.Path()); });
    EXPECT_EQ(loaded.playlist_count(), kItems);

    std::vector<char> bytes;
    const double reading = Milliseconds("reading the same bytes", [&] {
        std::ifstream file(folder.Path() / "playlist.cfg", std::ios::binary | std::ios::ate);
        bytes.resize(static_cast<std::size_t>(file.tellg()));
        file.seekg(0);
        file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    });
    const double writing = Milliseconds("writing the same bytes", [&] {
        std::ofstream file(folder.Path() / "plain", std::ios::binary);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    });
    EXPECT_LT(saving, kMostMilliseconds);
    EXPECT_LT(savingOver, kMostMilliseconds);
    EXPECT_LT(loading, kMostMilliseconds);
    EXPECT_LT(loading, kMostTimesOfPlain * reading);
    EXPECT_LT(saving, kMostTimesOfPlain * writing);
    EXPECT_LT(savingOver, kMostTimesOfPlain * writing);
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
