#include <gtest/gtest.h>

#include <string>

#include "owner_process.h"
#include "platform/process.h"

int main(int argc, char** argv) {
    if (argc > 1 && argv[1] == std::string(nqp::test::kShowOwnerWindow)) {
        return nqp::test::ShowOwnerWindow();
    }
    testing::InitGoogleTest(&argc, argv);
    const nqp::platform::OleSession ole;
    return RUN_ALL_TESTS();
}
