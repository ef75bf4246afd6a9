#include "playlist/playlist_store.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace nqp::playlist {
namespace {

using Texts = std::vector<std::string>;

Entry EntryNamed(const std::string& name) {
    return {name, "C:\\" + name};
}

class PlaylistStoreTest : public testing::Test {
protected:
    void Add(const Texts& names) {
        for (const std::string& name : names)
            store_.Append(EntryNamed(name));
    }
    Texts Names() const {
        Texts names;
        for (int item = 1; item <= store_.playlist_count(); ++item) {
            names.push_back(store_.playlist_names(item));
            EXPECT_EQ(store_.playlist_paths(item), "C:\\" + names.back());
        }
        return names;
    }

    PlaylistStore store_;
};

TEST_F(PlaylistStoreTest, StartsEmptyWithRepeatOff) {
    EXPECT_EQ(store_.playlist_count(), 0);
    EXPECT_FALSE(store_.repeat_on);
}

TEST_F(PlaylistStoreTest, OpensTheFirstSlot) {
    store_.insert_entry(1);
    EXPECT_EQ(store_.playlist_count(), 1);
    EXPECT_EQ(store_.playlist_names(1), "");
    EXPECT_EQ(store_.playlist_paths(1), "");
}

TEST_F(PlaylistStoreTest, OpensASlotBehindTheLastWithoutMovingAnything) {
    Add({"a", "b"});
    store_.insert_entry(3);
    store_.Fill(3, EntryNamed("c"));
    EXPECT_EQ(Names(), (Texts{"a", "b", "c"}));
}

TEST_F(PlaylistStoreTest, OpensASlotInTheMiddleWithTheTextsThatWereThere) {
    Add({"a", "b", "c"});
    store_.insert_entry(2);
    EXPECT_EQ(Names(), (Texts{"a", "b", "b", "c"}));
    store_.Fill(2, EntryNamed("new"));
    EXPECT_EQ(Names(), (Texts{"a", "new", "b", "c"}));
}

TEST_F(PlaylistStoreTest, ClosesASlot) {
    Add({"a", "b", "c"});
    store_.remove_entry(2);
    EXPECT_EQ(Names(), (Texts{"a", "c"}));
    store_.remove_entry(2);
    EXPECT_EQ(Names(), Texts{"a"});
    store_.remove_entry(1);
    EXPECT_EQ(store_.playlist_count(), 0);
}

TEST_F(PlaylistStoreTest, KeepsTheSameFileTwice) {
    Add({"a", "a"});
    EXPECT_EQ(Names(), (Texts{"a", "a"}));
}

TEST_F(PlaylistStoreTest, PlaysNothingStaleAfterAClear) {
    Add({"a", "b", "c"});
    store_.clear();
    EXPECT_EQ(store_.playlist_count(), 0);
    store_.insert_entry(1);
    store_.Fill(1, EntryNamed("d"));
    store_.insert_entry(2);
    store_.Fill(2, EntryNamed("e"));
    EXPECT_EQ(Names(), (Texts{"d", "e"}));
}

TEST_F(PlaylistStoreTest, InsertsEachInFrontOfTheOneBefore) {
    store_.InsertEach(1, std::vector{EntryNamed("a"), EntryNamed("b"), EntryNamed("c")});
    EXPECT_EQ(Names(), (Texts{"c", "b", "a"}));
}

// The quick way and the slow way are the same.
TEST_F(PlaylistStoreTest, InsertsManyAsItInsertsOneAfterTheOther) {
    const std::vector<Entry> added = {EntryNamed("x"), EntryNamed("y"), EntryNamed("z")};
    for (int position = 1; position <= 4; ++position) {
        store_.clear();
        Add({"a", "b", "c"});
        PlaylistStore slow = store_;
        for (const Entry& entry : added) {
            slow.insert_entry(position);
            slow.Fill(position, entry);
        }
        store_.InsertEach(position, added);
        ASSERT_EQ(slow.playlist_count(), store_.playlist_count());
        for (int item = 1; item <= slow.playlist_count(); ++item)
            EXPECT_EQ(slow.playlist_names(item), store_.playlist_names(item));
        Names();
    }
}

TEST_F(PlaylistStoreTest, RemovesLinesAsItRemovesOneAfterTheOther) {
    Add({"a", "b", "c", "d", "e"});
    store_.RemoveLines(std::vector<std::int32_t>{0, 2, 4});
    EXPECT_EQ(Names(), (Texts{"b", "d"}));
    store_.RemoveLines({});
    EXPECT_EQ(Names(), (Texts{"b", "d"}));
    store_.RemoveLines(std::vector<std::int32_t>{0, 1});
    EXPECT_EQ(store_.playlist_count(), 0);
}

TEST_F(PlaylistStoreTest, InsertsAfterAClear) {
    Add({"a", "b"});
    store_.clear();
    store_.InsertEach(1, std::vector{EntryNamed("c"), EntryNamed("d")});
    EXPECT_EQ(Names(), (Texts{"d", "c"}));
}

}  // namespace
}  // namespace nqp::playlist
