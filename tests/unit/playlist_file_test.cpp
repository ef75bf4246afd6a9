#include "playlist/playlist_file.h"

#include <gtest/gtest.h>

#include "base/record_file.h"
#include "temp_folder.h"

namespace nqp::playlist {
namespace {

Entry EntryNamed(const std::string& name) {
    return {name, "C:\\clips\\" + name};
}

class PlaylistFileTest : public testing::Test {
protected:
    PlaylistStore StoreOf(const std::vector<std::string>& names) const {
        PlaylistStore store;
        for (const std::string& name : names)
            store.Append(EntryNamed(name));
        return store;
    }
    void PutRecords(const std::vector<std::string>& records) const {
        base::RecordFile file(folder_.Path() / kPlaylistFileName, kPlaylistRecordBytes);
        for (std::size_t index = 0; index < records.size(); ++index)
            file.Write(static_cast<int>(index) + 1, records[index]);
        file.Commit();
    }
    std::string Record(int number) const {
        return base::RecordFile(folder_.Path() / kPlaylistFileName, kPlaylistRecordBytes)
            .Read(number);
    }
    PlaylistStore Load() const { return LoadPlaylist(folder_.Path()); }

    test::TempFolder folder_;
};

TEST_F(PlaylistFileTest, OfAnEmptyListHoldsTwoRecords) {
    ASSERT_TRUE(SavePlaylist(folder_.Path(), {}));
    const std::string content = folder_.Content(kPlaylistFileName);
    ASSERT_GE(content.size(), 503U);
    EXPECT_LE(content.size(), 1000U);
    EXPECT_EQ(content.substr(0, 3), std::string("\1\0"
                                                "0",
                                                3));
    EXPECT_EQ(content.substr(500, 3), std::string("\1\0"
                                                  "0",
                                                  3));
    EXPECT_EQ(Load().playlist_count(), 0);
}

TEST_F(PlaylistFileTest, HasTwoRecordsForEachItem) {
    PlaylistStore store = StoreOf({"a.avi", "b.avi"});
    store.repeat_on = true;
    ASSERT_TRUE(SavePlaylist(folder_.Path(), store));
    EXPECT_EQ(Record(1), "2");
    EXPECT_EQ(Record(2), "1");
    EXPECT_EQ(Record(3), "a.avi");
    EXPECT_EQ(Record(4), "C:\\clips\\a.avi");
    EXPECT_EQ(Record(5), "b.avi");
    EXPECT_EQ(Record(6), "C:\\clips\\b.avi");
    EXPECT_EQ(folder_.Content(kPlaylistFileName).substr(1000, 7), std::string("\5\0a.avi", 7));
}

TEST_F(PlaylistFileTest, LoadsWhatWasSaved) {
    PlaylistStore store = StoreOf({"a.avi", "\xD0\xB6.avi", "a.avi"});
    store.Append({std::string("nul.avi\0", 8), std::string("C:\\nul.avi\0", 11)});
    store.repeat_on = true;
    SavePlaylist(folder_.Path(), store);
    const PlaylistStore loaded = Load();
    ASSERT_EQ(loaded.playlist_count(), 4);
    for (int item = 1; item <= 4; ++item) {
        EXPECT_EQ(loaded.playlist_names(item), store.playlist_names(item));
        EXPECT_EQ(loaded.playlist_paths(item), store.playlist_paths(item));
    }
    EXPECT_TRUE(loaded.repeat_on);
}

TEST_F(PlaylistFileTest, KeepsTheRecordsOfALongerListBefore) {
    SavePlaylist(folder_.Path(), StoreOf({"1", "2", "3", "4", "5"}));
    const std::string before = folder_.Content(kPlaylistFileName);
    SavePlaylist(folder_.Path(), StoreOf({"x", "y"}));
    const std::string after = folder_.Content(kPlaylistFileName);
    EXPECT_EQ(after.size(), before.size());
    EXPECT_EQ(after.substr(6 * 500), before.substr(6 * 500));
    EXPECT_EQ(Record(7), "3");
    EXPECT_EQ(Record(12), "C:\\clips\\5");
    EXPECT_EQ(Load().playlist_count(), 2);
}

TEST_F(PlaylistFileTest, HasRepeatOffOnlyForAZero) {
    for (const auto& [text, repeat] : std::initializer_list<std::pair<const char*, bool>>{
             {"0", false}, {"1", true}, {"", true}, {"00", true}, {"off", true}}) {
        PutRecords({"0", text});
        EXPECT_EQ(Load().repeat_on, repeat) << text;
    }
}

TEST_F(PlaylistFileTest, ThatIsMissingOrEmptyIsAnEmptyListWithRepeatOff) {
    EXPECT_EQ(Load().playlist_count(), 0);
    EXPECT_FALSE(Load().repeat_on);
    EXPECT_EQ(folder_.Content(kPlaylistFileName), "");
}

TEST_F(PlaylistFileTest, ThatIsMalformedIsAnEmptyListWithRepeatOff) {
    for (const char* count : {"", "many", "-1", "2147483647", "1e9", "99999999999"}) {
        PutRecords({count, "1", "a", "C:\\a"});
        EXPECT_EQ(Load().playlist_count(), 0) << count;
        EXPECT_FALSE(Load().repeat_on) << count;
    }
    folder_.Put(kPlaylistFileName, std::string(5000, '\xFF'));
    EXPECT_EQ(Load().playlist_count(), 0);
}

TEST_F(PlaylistFileTest, ThatIsShorterThanItsCountGivesBlankItems) {
    PutRecords({"3", "0", "a", "C:\\a"});
    const PlaylistStore loaded = Load();
    ASSERT_EQ(loaded.playlist_count(), 3);
    EXPECT_EQ(loaded.playlist_names(1), "a");
    EXPECT_EQ(loaded.playlist_names(2), "");
    EXPECT_EQ(loaded.playlist_paths(3), "");
}

TEST_F(PlaylistFileTest, LeavesOutWhatDoesNotFitIntoARecord) {
    PlaylistStore store = StoreOf({"a", std::string(499, 'x'), "b"});
    store.Append({"long path", std::string(499, 'y')});
    store.Append({std::string(498, 'z'), std::string(498, 'z')});
    SavePlaylist(folder_.Path(), store);
    const PlaylistStore loaded = Load();
    ASSERT_EQ(loaded.playlist_count(), 3);
    EXPECT_EQ(loaded.playlist_names(1), "a");
    EXPECT_EQ(loaded.playlist_names(2), "b");
    EXPECT_EQ(loaded.playlist_names(3), std::string(498, 'z'));
    EXPECT_EQ(Record(1), "3");
    EXPECT_EQ(store.playlist_count(), 5);
}

}  // namespace
}  // namespace nqp::playlist
