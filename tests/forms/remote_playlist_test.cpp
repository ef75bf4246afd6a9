#include <gtest/gtest.h>

#include <vector>

#include "base/record_file.h"
#include "player.h"
#include "playlist/playlist_file.h"

namespace nqp::remote {
namespace {

using test::Player;
using Texts = std::vector<std::string>;

class RemotePlaylist : public testing::Test {
protected:
    void Start(const Texts& names, bool repeat = false) {
        playlist::PlaylistStore store;
        store.repeat_on = repeat;
        for (const std::string& name : names)
            store.Append({name, "C:\\clips\\" + name});
        playlist::SavePlaylist(player_.folder.Path(), store);
        player_.PutSetting(core::kAutostartPlayback, autostart_ ? "1" : "0");
        player_.Start();
        test::ClickOn(remote_.Picture15);
        player_.engine.ForgetCalls();
    }
    Texts Lines() const {
        Texts lines;
        const playlist::PlaylistStore& store = remote_.Playlist();
        EXPECT_EQ(remote_.List1.ListCount(), store.playlist_count());
        for (int item = 1; item <= store.playlist_count(); ++item) {
            lines.emplace_back(remote_.List1.State().lines->Line(item - 1));
            EXPECT_EQ(lines.back(), store.playlist_names(item));
        }
        return lines;
    }
    void Select(const std::vector<int>& lines) { remote_.List1.LinesChanged(lines); }
    void DoubleClick(int line) {
        remote_.List1.Select(line);
        remote_.List1.DblClick();
    }
    static std::vector<std::string> Dropped(const Texts& names) {
        std::vector<std::string> paths;
        for (const std::string& name : names)
            paths.push_back("D:\\" + name);
        return paths;
    }
    std::string Playing() const { return player_.engine.FileName(); }

    bool autostart_ = true;
    Player player_;
    Form4& remote_ = player_.form4;
};

TEST_F(RemotePlaylist, IsLoadedAtTheStart) {
    Start({"a.avi", "b.avi"}, true);
    EXPECT_EQ(Lines(), (Texts{"a.avi", "b.avi"}));
    EXPECT_TRUE(remote_.repeat.Checked());
    EXPECT_EQ(remote_.List1.ListIndex(), -1);
    EXPECT_EQ(Playing(), "");
}

TEST_F(RemotePlaylist, IsSavedAtTheEnd) {
    Start({"a.avi", "b.avi"});
    test::DropFiles(remote_.List1, Dropped({"new.avi"}));
    remote_.repeat.Click();
    remote_.Picture1_Click();
    const auto saved = playlist::LoadPlaylist(player_.folder.Path());
    ASSERT_EQ(saved.playlist_count(), 3);
    EXPECT_EQ(saved.playlist_paths(1), "D:\\new.avi");
    EXPECT_TRUE(saved.repeat_on);
}

TEST_F(RemotePlaylist, IsNotSavedBeforeTheEnd) {
    Start({"a.avi"});
    test::DropFiles(remote_.List1, Dropped({"new.avi"}));
    remote_.repeat.Click();
    const auto saved = playlist::LoadPlaylist(player_.folder.Path());
    EXPECT_EQ(saved.playlist_count(), 1);
    EXPECT_FALSE(saved.repeat_on);
}

TEST_F(RemotePlaylist, ThatIsDamagedStartsEmpty) {
    player_.folder.Put("playlist.cfg", std::string(3000, '\xFF'));
    player_.Start();
    EXPECT_EQ(remote_.List1.ListCount(), 0);
    EXPECT_FALSE(remote_.repeat.Checked());
    EXPECT_TRUE(test::OnScreen(remote_));
}

using Adding = RemotePlaylist;

TEST_F(Adding, ToAnEmptyListPutsTheLaterFilesInFront) {
    Start({});
    test::DropFiles(remote_, Dropped({"a", "b", "c"}));
    EXPECT_EQ(Lines(), (Texts{"c", "b", "a"}));
    EXPECT_EQ(remote_.Playlist().playlist_paths(1), "D:\\c");
}

TEST_F(Adding, GoesBehindTheSelectedLineWhichStaysSelected) {
    Start({"1", "2", "3"});
    Select({1});
    test::DropFiles(remote_, Dropped({"a", "b"}));
    EXPECT_EQ(Lines(), (Texts{"1", "2", "b", "a", "3"}));
    EXPECT_EQ(remote_.List1.SelectedLines(), std::vector<int>{1});
}

TEST_F(Adding, GoesToTheTopWhenNothingIsSelected) {
    Start({"1", "2"});
    test::DropFiles(remote_, Dropped({"a"}));
    EXPECT_EQ(Lines(), (Texts{"a", "1", "2"}));
}

TEST_F(Adding, KeepsEverySelectedLineSelected) {
    Start({"1", "2", "3"});
    Select({0, 2});
    test::DropFiles(remote_.List1, Dropped({"a"}));
    EXPECT_EQ(Lines(), (Texts{"1", "a", "2", "3"}));
    EXPECT_EQ(remote_.List1.SelectedLines(), (std::vector<int>{0, 3}));
}

TEST_F(Adding, OnTheListIsTheSameAsOnTheWindow) {
    Start({"1"});
    Select({0});
    test::DropFiles(remote_.List1, Dropped({"a"}));
    test::DropFiles(remote_, Dropped({"b"}));
    EXPECT_EQ(Lines(), (Texts{"1", "b", "a"}));
}

TEST_F(Adding, ByTheDialogKeepsTheNulOfEachFile) {
    Start({});
    player_.dialogs.severalAnswer = std::string("C:\\clips\0a.avi\0b.avi\0\0", 23);
    remote_.add_files.Click();
    ASSERT_EQ(remote_.Playlist().playlist_count(), 2);
    EXPECT_EQ(remote_.Playlist().playlist_names(1), std::string("b.avi\0", 6));
    EXPECT_EQ(remote_.Playlist().playlist_paths(2), std::string("C:\\clips\\a.avi\0", 15));
    EXPECT_EQ(player_.dialogs.lastRequest.title,
              "Nuvex Quillon Player - Add file(s) to playlist...");
    EXPECT_EQ(player_.dialogs.lastRequest.filter.name, "All Media Types");
}

TEST_F(Adding, ByACancelledDialogChangesNothing) {
    Start({"1"});
    remote_.add_files.Click();
    EXPECT_EQ(Lines(), Texts{"1"});
}

using Removing = RemotePlaylist;

TEST_F(Removing, TakesEverySelectedLine) {
    Start({"1", "2", "3"});
    Select({0, 1});
    remote_.clear_items.Click();
    EXPECT_EQ(Lines(), Texts{"3"});
    EXPECT_EQ(remote_.Playlist().playlist_count(), 1);
    EXPECT_TRUE(remote_.List1.SelectedLines().empty());
}

TEST_F(Removing, WithNothingSelectedOrNothingThereIsHarmless) {
    Start({"1"});
    remote_.clear_items.Click();
    EXPECT_EQ(Lines(), Texts{"1"});
    remote_.clear_playlist.Click();
    remote_.clear_playlist.Click();
    remote_.clear_items.Click();
    EXPECT_EQ(Lines(), Texts{});
}

TEST_F(Removing, ByTheDeleteKeyIsTheSame) {
    Start({"1", "2", "3"});
    Select({1});
    test::PressKeyIn(remote_.List1, base::kKeyDelete);
    EXPECT_EQ(Lines(), (Texts{"1", "3"}));
}

TEST_F(Removing, EverythingLetsTheClipGoOn) {
    Start({"1.avi", "2.avi"});
    DoubleClick(0);
    remote_.clear_playlist.Click();
    EXPECT_EQ(Playing(), "C:\\clips\\1.avi");
    EXPECT_EQ(player_.engine.State(), core::PlayState::Playing);
}

using PlayingItems = RemotePlaylist;

TEST_F(PlayingItems, StartsTheLineThatIsDoubleClicked) {
    Start({"a.one.avi", "clip.final.avi"});
    DoubleClick(1);
    EXPECT_EQ(Playing(), "C:\\clips\\clip.final.avi");
    EXPECT_EQ(player_.engine.State(), core::PlayState::Playing);
    EXPECT_TRUE(player_.engine.Visible());
    EXPECT_EQ(remote_.glob_FilePath(), "C:\\clips\\clip.final.avi");
    EXPECT_EQ(remote_.Label1.Caption(), "clip");
    EXPECT_EQ(remote_.Label1.ToolTipText(), "clip");
    EXPECT_EQ(test::TextOn(remote_.Text1), "00");
    EXPECT_TRUE(remote_.Flags().ready_to_play);
    EXPECT_FALSE(remote_.Flags().bPause);
}

TEST_F(PlayingItems, HidesThePictureBeforeItOpens) {
    Start({"a.avi"});
    DoubleClick(0);
    EXPECT_EQ(player_.engine.calls[0], "Visible = false");
    EXPECT_EQ(player_.engine.calls[1], "Open C:\\clips\\a.avi");
}

TEST_F(PlayingItems, PlaysAlsoWithoutAutostart) {
    autostart_ = false;
    Start({"a.avi"});
    DoubleClick(0);
    EXPECT_EQ(player_.engine.State(), core::PlayState::Playing);
    EXPECT_TRUE(player_.engine.Visible());
}

TEST_F(PlayingItems, PausesAgainAfterAStop) {
    Start({"a.avi"});
    DoubleClick(0);
    remote_.Picture3.Click();
    DoubleClick(0);
    remote_.Picture9_Click();
    EXPECT_EQ(player_.engine.State(), core::PlayState::Paused);
}

TEST_F(PlayingItems, OpensAFileOfTheDialogWithoutItsNul) {
    Start({});
    player_.dialogs.severalAnswer = std::string("C:\\a.avi\0\0", 10);
    remote_.add_files.Click();
    DoubleClick(0);
    EXPECT_EQ(Playing(), "C:\\a.avi");
    EXPECT_EQ(remote_.Label1.Caption(), "a");
}

TEST_F(PlayingItems, DoesNothingInAnEmptyListOrWithoutASelection) {
    Start({});
    remote_.List1.DblClick();
    EXPECT_TRUE(player_.engine.calls.empty());
    test::DropFiles(remote_, Dropped({"a"}));
    remote_.List1.DblClick();
    EXPECT_TRUE(player_.engine.calls.empty());
}

TEST_F(PlayingItems, StartsWithEnter) {
    Start({"a.avi"});
    Select({0});
    test::PressKeyIn(remote_.List1, base::kKeyEnter);
    EXPECT_EQ(Playing(), "C:\\clips\\a.avi");
}

TEST_F(PlayingItems, OfAFileThatCannotBeOpenedLeavesTheRemoteUsable) {
    Start({"a.avi"});
    test::DropFiles(remote_, {"bad.avi"});
    DoubleClick(0);
    EXPECT_EQ(player_.engine.State(), core::PlayState::Stopped);
    EXPECT_FALSE(player_.engine.Visible());
    DoubleClick(1);
    EXPECT_EQ(player_.engine.State(), core::PlayState::Playing);
}

using Advancing = RemotePlaylist;

TEST_F(Advancing, GoesToTheNextItem) {
    Start({"1.avi", "2.avi", "3.avi"});
    DoubleClick(0);
    player_.engine.PlayToEnd();
    EXPECT_EQ(Playing(), "C:\\clips\\2.avi");
    EXPECT_EQ(player_.engine.State(), core::PlayState::Playing);
    EXPECT_EQ(remote_.List1.SelectedLines(), std::vector<int>{1});
}

TEST_F(Advancing, StopsBehindTheLastItem) {
    Start({"1.avi", "2.avi", "3.avi"});
    DoubleClick(2);
    player_.engine.ForgetCalls();
    player_.engine.PlayToEnd();
    EXPECT_EQ(Playing(), "C:\\clips\\3.avi");
    EXPECT_TRUE(player_.engine.calls.empty());
    EXPECT_EQ(remote_.List1.SelectedLines(), std::vector<int>{2});
}

TEST_F(Advancing, WrapsRoundWithRepeat) {
    Start({"1.avi", "2.avi", "3.avi"}, true);
    DoubleClick(2);
    player_.engine.PlayToEnd();
    EXPECT_EQ(Playing(), "C:\\clips\\1.avi");
    EXPECT_EQ(remote_.List1.SelectedLines(), std::vector<int>{0});
}

TEST_F(Advancing, PlaysAListOfOneAgainAndAgainWithRepeat) {
    Start({"1.avi"}, true);
    DoubleClick(0);
    for (int round = 0; round < 3; ++round) {
        player_.engine.PlayToEnd();
        EXPECT_EQ(player_.engine.State(), core::PlayState::Playing);
        EXPECT_EQ(player_.engine.position, 0);
    }
}

TEST_F(Advancing, GoesOnWithoutAutostart) {
    autostart_ = false;
    Start({"1.avi", "2.avi"});
    DoubleClick(0);
    player_.engine.PlayToEnd();
    EXPECT_EQ(player_.engine.State(), core::PlayState::Playing);
    EXPECT_TRUE(player_.engine.Visible());
}

TEST_F(Advancing, StopsWhenTheListWasShortened) {
    Start({"1.avi", "2.avi", "3.avi"});
    DoubleClick(2);
    Select({0, 1});
    remote_.clear_items.Click();
    player_.engine.ForgetCalls();
    player_.engine.PlayToEnd();
    EXPECT_TRUE(player_.engine.calls.empty());
    remote_.clear_playlist.Click();
    remote_.next_playlist_item();
    EXPECT_TRUE(player_.engine.calls.empty());
}

TEST_F(Advancing, DoesNothingBeforeAnItemWasStarted) {
    Start({"1.avi"}, true);
    remote_.next_playlist_item();
    EXPECT_TRUE(player_.engine.calls.empty());
}

TEST_F(RemotePlaylist, RepeatIsToggledAndMarked) {
    Start({});
    remote_.repeat.Click();
    EXPECT_TRUE(remote_.Playlist().repeat_on);
    EXPECT_TRUE(remote_.repeat.Checked());
    remote_.repeat.Click();
    EXPECT_FALSE(remote_.Playlist().repeat_on);
    EXPECT_FALSE(remote_.repeat.Checked());
}

TEST_F(RemotePlaylist, HasAMenuForTheRightButtonAndTheMenuKey) {
    Start({"1"});
    test::ChooseInNextMenu(remote_, remote_.men, remote_.clear_playlist);
    test::RightClickOn(remote_.List1, 300, 300);
    EXPECT_EQ(Lines(), Texts{});
    test::ChooseInNextMenu(remote_, remote_.men, remote_.repeat);
    test::PressKeyIn(remote_.List1, base::kKeyMenu);
    EXPECT_TRUE(remote_.repeat.Checked());
}

TEST_F(RemotePlaylist, HasTheEntriesInTheirOrder) {
    Texts captions;
    for (const forms::MenuItem* item : remote_.men.Items())
        captions.push_back(item->Caption());
    EXPECT_EQ(captions, (Texts{"Add file(s) to playlist", "Clear selected item(s)",
                               "Clear playlist", "Toggle repeat"}));
}

}  // namespace
}  // namespace nqp::remote
