#include <windows.h>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    SetProcessDPIAware();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
