#include "base/record_file.h"

#include <gtest/gtest.h>

#include <string>

#include "temp_folder.h"

namespace nqp::base {
namespace {

using test::TempFolder;
constexpr std::size_t kBytes = 1000;

class RecordFileTest : public testing::Test {
protected:
    RecordFile Open() const { return {folder_.Path() / "records.cfg", kBytes}; }
    std::string Bytes() const { return folder_.Content("records.cfg"); }
    void PutBytes(const std::string& bytes) const { folder_.Put("records.cfg", bytes); }

    TempFolder folder_;
};

TEST_F(RecordFileTest, OpeningCreatesAMissingFileEmpty) {
    EXPECT_TRUE(Open().Empty());
    EXPECT_TRUE(folder_.Has("records.cfg"));
    EXPECT_EQ(Bytes(), "");
}

TEST_F(RecordFileTest, ARecordIsALengthAndItsBytes) {
    RecordFile file = Open();
    ASSERT_TRUE(file.Write(1, "44100"));
    ASSERT_TRUE(file.Commit());
    EXPECT_EQ(Bytes(), std::string("\x05\x00"
                                   "44100",
                                   7));
}

TEST_F(RecordFileTest, ALaterRecordGrowsTheFileWithZeros) {
    RecordFile file = Open();
    ASSERT_TRUE(file.Write(27, "1"));
    ASSERT_TRUE(file.Commit());
    const std::string bytes = Bytes();
    ASSERT_EQ(bytes.size(), 26 * kBytes + 3);
    EXPECT_EQ(bytes.substr(0, 26 * kBytes), std::string(26 * kBytes, '\0'));
    EXPECT_EQ(bytes.substr(26 * kBytes), std::string("\x01\x00"
                                                     "1",
                                                     3));
    EXPECT_EQ(Open().Read(5), "");
    EXPECT_EQ(Open().Read(27), "1");
}

TEST_F(RecordFileTest, AShorterTextLeavesTheRestOfItsRecord) {
    RecordFile file = Open();
    file.Write(1, "longer");
    file.Write(1, "no");
    ASSERT_TRUE(file.Commit());
    EXPECT_EQ(Bytes(), std::string("\x02\x00"
                                   "nonger",
                                   8));
    EXPECT_EQ(Open().Read(1), "no");
}

TEST_F(RecordFileTest, TheLongestTextFillsItsRecord) {
    RecordFile file = Open();
    const std::string longest(kBytes - 2, 'x');
    EXPECT_TRUE(file.Write(9, longest));
    EXPECT_EQ(file.Read(9), longest);
    EXPECT_FALSE(file.Write(9, longest + "y"));
    EXPECT_EQ(file.Read(9), longest);
}

TEST_F(RecordFileTest, TheLengthIsLittleEndian) {
    RecordFile file = Open();
    ASSERT_TRUE(file.Write(1, std::string(0x0123, 'a')));
    ASSERT_TRUE(file.Commit());
    EXPECT_EQ(Bytes().substr(0, 2), "\x23\x01");
}

TEST_F(RecordFileTest, ADamagedLengthReadsAsNothing) {
    PutBytes(
        std::string("\xFF\xFF"
                    "abc",
                    5));
    EXPECT_EQ(Open().Read(1), "");
    PutBytes(
        std::string("\x05\x00"
                    "abc",
                    5));
    EXPECT_EQ(Open().Read(1), "");
    PutBytes("\x05");
    EXPECT_EQ(Open().Read(1), "");
}

TEST_F(RecordFileTest, NothingIsWrittenBeforeTheCommit) {
    RecordFile file = Open();
    file.Write(1, "new");
    EXPECT_EQ(Bytes(), "");
}

TEST_F(RecordFileTest, ACommitLeavesNoOtherFileBehind) {
    RecordFile file = Open();
    file.Write(1, "new");
    ASSERT_TRUE(file.Commit());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.Path()), {}), 1);
}

TEST_F(RecordFileTest, ACommitIntoAMissingFolderFails) {
    RecordFile file(folder_.Path() / "missing" / "records.cfg", kBytes);
    EXPECT_TRUE(file.Empty());
    EXPECT_TRUE(file.Write(1, "x"));
    EXPECT_FALSE(file.Commit());
}

}  // namespace
}  // namespace nqp::base
