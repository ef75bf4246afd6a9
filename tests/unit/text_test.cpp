#include "base/text.h"

#include <gtest/gtest.h>

namespace nqp::base {
namespace {

TEST(ParseWholeNumber, ReadsDecimalNumbers) {
    EXPECT_EQ(ParseWholeNumber("0"), 0);
    EXPECT_EQ(ParseWholeNumber("100"), 100);
    EXPECT_EQ(ParseWholeNumber("-15"), -15);
    EXPECT_EQ(ParseWholeNumber("+7"), 7);
    EXPECT_EQ(ParseWholeNumber(" 42 "), 42);
    EXPECT_EQ(ParseWholeNumber("007"), 7);
    EXPECT_EQ(ParseWholeNumber("1e2"), 100);
}

TEST(ParseWholeNumber, RoundsHalvesToEven) {
    EXPECT_EQ(ParseWholeNumber("2.5"), 2);
    EXPECT_EQ(ParseWholeNumber("3.5"), 4);
    EXPECT_EQ(ParseWholeNumber("-2.5"), -2);
}

TEST(ParseWholeNumber, RefusesWhatIsNoNumber) {
    for (const char* text : {"", " ", "x", "1x", "1 2", "--1", "+-1", "0x10", "inf", "nan", "1e999",
                             "2147483648", "-2147483648.6", "-"}) {
        EXPECT_EQ(ParseWholeNumber(text), std::nullopt) << text;
    }
}

TEST(ParseSingle, KeepsTheFraction) {
    EXPECT_EQ(ParseSingle("1005.5"), 1005.5F);
    EXPECT_EQ(ParseSingle("-0.25"), -0.25F);
    EXPECT_EQ(ParseSingle("1e300"), std::nullopt);
    EXPECT_EQ(ParseSingle(""), std::nullopt);
}

TEST(ShortestDecimal, ReadsBackTheSame) {
    EXPECT_EQ(ShortestDecimal(3090.0F), "3090");
    EXPECT_EQ(ShortestDecimal(-15.0F), "-15");
    EXPECT_EQ(ShortestDecimal(0.1F), "0.1");
    EXPECT_EQ(ShortestDecimal(0.0F), "0");
    for (const float value : {1.0F / 3.0F, 16777216.0F, 1234.5677F, -8.571429F}) {
        EXPECT_EQ(ParseSingle(ShortestDecimal(value)), value);
    }
}

TEST(FileNameOf, IsBehindTheLastSeparator) {
    EXPECT_EQ(FileNameOf("C:\\clips\\a b\\movie.avi"), "movie.avi");
    EXPECT_EQ(FileNameOf("movie.avi"), "movie.avi");
    EXPECT_EQ(FileNameOf("C:\\clips\\"), "");
}

TEST(TitleOf, EndsBeforeTheFirstDot) {
    EXPECT_EQ(TitleOf("movie.part1.avi"), "movie");
    EXPECT_EQ(TitleOf("movie"), "movie");
    EXPECT_EQ(TitleOf(""), "");
}

TEST(WithDoubledAmpersands, MakesThemNoMarks) {
    EXPECT_EQ(WithDoubledAmpersands("this & that && more"), "this && that &&&& more");
    EXPECT_EQ(WithDoubledAmpersands(""), "");
}

TEST(WithoutQuotes, RemovesOnePairAroundTheWhole) {
    EXPECT_EQ(WithoutQuotes("\"C:\\a b.avi\""), "C:\\a b.avi");
    EXPECT_EQ(WithoutQuotes("C:\\a b.avi"), "C:\\a b.avi");
    EXPECT_EQ(WithoutQuotes("\""), "\"");
    EXPECT_EQ(WithoutQuotes("\"a\" \"b\""), "\"a\" \"b\"");
    EXPECT_EQ(WithoutQuotes("\"\""), "");
}

}  // namespace
}  // namespace nqp::base
