#include "forms/drop_list.h"

#include <gtest/gtest.h>

namespace nqp::forms {
namespace {

constexpr char kHeaderBytes = 20;

std::string Header(char offset, char wide) {
    std::string header(kHeaderBytes, '\0');
    header[0] = offset;
    header[16] = wide;
    return header;
}

std::string Bytes(std::u16string_view letters) {
    std::string bytes;
    for (const char16_t letter : letters) {
        bytes += static_cast<char>(letter & 0xFFU);
        bytes += static_cast<char>(letter >> 8U);
    }
    return bytes;
}

using namespace std::string_view_literals;

TEST(DropList, HasWidePathsInTheirOrder) {
    const DropList list =
        ReadDropList(Header(kHeaderBytes, 1) + Bytes(u"C:\\b.avi\0C:\\\u4E2D.avi\0\0"sv));
    EXPECT_EQ(list.wide, (std::vector<std::u16string>{u"C:\\b.avi", u"C:\\\u4E2D.avi"}));
    EXPECT_TRUE(list.narrow.empty());
}

TEST(DropList, HasNarrowPathsFromAnOlderSource) {
    const DropList list =
        ReadDropList(Header(kHeaderBytes, 0) + std::string("C:\\b.avi\0C:\\a.avi\0\0"sv));
    EXPECT_EQ(list.narrow, (std::vector<std::string>{"C:\\b.avi", "C:\\a.avi"}));
    EXPECT_TRUE(list.wide.empty());
}

TEST(DropList, BeginsWhereItsHeaderTells) {
    EXPECT_EQ(ReadDropList(Header(23, 0) + "abcD:\\x").narrow, std::vector<std::string>{"D:\\x"});
}

TEST(DropList, EndsAtTheSecondNul) {
    EXPECT_EQ(ReadDropList(Header(kHeaderBytes, 0) + std::string("a\0\0b\0\0"sv)).narrow,
              std::vector<std::string>{"a"});
}

TEST(DropList, ThatIsCutOffHasThePathsUpToThere) {
    EXPECT_EQ(ReadDropList(Header(kHeaderBytes, 1) + Bytes(u"a\0b"sv) + "c").wide,
              (std::vector<std::u16string>{u"a", u"b"}));
}

TEST(DropList, WithoutPathsIsEmpty) {
    for (const std::string& bytes :
         {std::string(), std::string(19, '\0'), Header(kHeaderBytes, 1), Header(120, 0),
          Header(kHeaderBytes, 0) + std::string(2, '\0')}) {
        EXPECT_TRUE(ReadDropList(bytes).wide.empty()) << bytes.size();
        EXPECT_TRUE(ReadDropList(bytes).narrow.empty()) << bytes.size();
    }
}

}  // namespace
}  // namespace nqp::forms
