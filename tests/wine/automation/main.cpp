#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "companion_job.h"
#include "platform/process.h"
#include "recording_wizard.h"

int main(int argc, char** argv) {
    const nqp::platform::OleSession ole;
    const std::string argument = argc > 1 ? argv[1] : "";
    if (argument == "-Embedding") return nqp::test::ServeRecordingWizard();
    if (argc > 2 && argument == nqp::test::kLeaveJobHanging) {
        return nqp::test::LeaveJobHanging(argv[2]);
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
