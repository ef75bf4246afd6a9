#include "playlist/chosen_files.h"

#include <gtest/gtest.h>

namespace nqp::playlist {
namespace {

using Entries = std::vector<Entry>;

// What the dialog leaves in its buffer: the texts and their ends, then only NUL characters.
std::string Buffer(const std::vector<std::string>& pieces) {
    std::string buffer;
    for (const std::string& piece : pieces)
        buffer += piece + '\0';
    buffer.resize(10000);
    return buffer;
}

std::string Nul(const std::string& text) {
    return text + '\0';
}

TEST(FilesOfDialog, IsOneFullPath) {
    EXPECT_EQ(FilesOfDialog(Buffer({"C:\\my clips\\a.avi"})),
              (Entries{{Nul("a.avi"), Nul("C:\\my clips\\a.avi")}}));
}

TEST(FilesOfDialog, IsAFolderAndTheNamesInIt) {
    EXPECT_EQ(FilesOfDialog(Buffer({"C:\\clips", "b.avi", "a.avi", "\xE4\xB8\xAD.avi"})),
              (Entries{{Nul("b.avi"), Nul("C:\\clips\\b.avi")},
                       {Nul("a.avi"), Nul("C:\\clips\\a.avi")},
                       {Nul("\xE4\xB8\xAD.avi"), Nul("C:\\clips\\\xE4\xB8\xAD.avi")}}));
}

TEST(FilesOfDialog, HasADoubledBackslashInTheRootOfADrive) {
    EXPECT_EQ(FilesOfDialog(Buffer({"D:\\", "a.avi", "b.avi"}))[0].path, Nul("D:\\\\a.avi"));
}

TEST(FilesOfDialog, IsNothingForAnEmptyBuffer) {
    EXPECT_EQ(FilesOfDialog(Buffer({})), Entries{});
    EXPECT_EQ(FilesOfDialog(""), Entries{});
}

TEST(FilesOfDialog, EndsWithABufferThatIsFull) {
    EXPECT_EQ(FilesOfDialog("C:\\a.avi"), (Entries{{Nul("a.avi"), Nul("C:\\a.avi")}}));
    EXPECT_EQ(FilesOfDialog(std::string("C:\\\0a\0b", 7)).size(), 2U);
}

TEST(FilesOfDrop, KeepsTheOrderAndAddsNoNul) {
    const std::vector<std::string> paths = {"C:\\b.avi", "C:\\clips\\a.avi", "bare"};
    EXPECT_EQ(FilesOfDrop(paths),
              (Entries{{"b.avi", "C:\\b.avi"}, {"a.avi", "C:\\clips\\a.avi"}, {"bare", "bare"}}));
}

TEST(FilesOfDrop, AddsAFolderLikeAFile) {
    const std::vector<std::string> paths = {"C:\\clips"};
    EXPECT_EQ(FilesOfDrop(paths), (Entries{{"clips", "C:\\clips"}}));
}

TEST(FilesOfDrop, SplitsANameWithABar) {
    const std::vector<std::string> paths = {"C:\\one|two", "|"};
    EXPECT_EQ(FilesOfDrop(paths),
              (Entries{{"one", "C:\\one"}, {"two", "two"}, {"", ""}, {"", ""}}));
}

}  // namespace
}  // namespace nqp::playlist
