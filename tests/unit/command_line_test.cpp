#include "core/command_line.h"

#include <gtest/gtest.h>

namespace nqp::core {
namespace {

TEST(CommandLine, IsAllBehindTheProgramsName) {
    EXPECT_EQ(ArgumentsOf(L"nqp.exe"), L"");
    EXPECT_EQ(ArgumentsOf(L"nqp.exe   "), L"");
    EXPECT_EQ(ArgumentsOf(L"nqp.exe  C:\\a b.avi"), L"C:\\a b.avi");
    EXPECT_EQ(ArgumentsOf(L"\"C:\\Program Files\\nqp.exe\" C:\\a b.avi"), L"C:\\a b.avi");
    EXPECT_EQ(ArgumentsOf(L"\"C:\\nqp.exe\"\t\"C:\\a b.avi\""), L"\"C:\\a b.avi\"");
    EXPECT_EQ(ArgumentsOf(L"\"C:\\nqp.exe"), L"");
    EXPECT_EQ(ArgumentsOf(L""), L"");
}

TEST(CommandLine, LosesTheSwitchOfTheAutomationLayer) {
    for (const char* text :
         {"-Embedding", "/Embedding", "-embedding", "/Automation", "-Automation"}) {
        EXPECT_TRUE(WithoutAutomationSwitch(text).startedByAutomation) << text;
        EXPECT_EQ(WithoutAutomationSwitch(text).text, "");
    }
}

TEST(CommandLine, KeepsEverythingElse) {
    for (const char* text : {"", "/START", "C:\\a -Embedding.avi", "-Embedding.avi"}) {
        EXPECT_FALSE(WithoutAutomationSwitch(text).startedByAutomation) << text;
        EXPECT_EQ(WithoutAutomationSwitch(text).text, text);
    }
}

}  // namespace
}  // namespace nqp::core
