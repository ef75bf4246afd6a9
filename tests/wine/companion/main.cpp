#include <gtest/gtest.h>

#include <string>

#include "platform/process.h"
#include "scripted_server.h"

int main(int argc, char** argv) {
    const nqp::platform::OleSession ole;
    if (argc > 1 && argv[1] == std::string("-Embedding")) return nqp::test::ServeScriptedJob();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
