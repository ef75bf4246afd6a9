#include <gtest/gtest.h>

#include "platform/process.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const nqp::platform::OleSession ole;
    return RUN_ALL_TESTS();
}
