#include <gtest/gtest.h>
#include <windows.h>

#include <optional>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "base/file.h"
#include "classes.h"
#include "companion_job.h"
#include "core/companion.h"
#include "forms/win32/winapi/text.h"
#include "platform/automation/companion_client.h"
#include "platform/automation/registration.h"
#include "platform/process.h"
#include "processes.h"
#include "temp_folder.h"

namespace nqp::test {
namespace {

using core::RunMode;
using Lines = std::vector<std::string>;

constexpr char kNotStarted[] =
    "Framewright.exe, which cuts fragments, could not be started. Installing Nuvex Quillon Player "
    "again brings it back.";
constexpr char kDied[] = "Framewright.exe stopped before the job was done.";
// Far below what a call that hangs would take.
constexpr ULONGLONG kAtOnceMilliseconds = 500;

core::FragmentJob SomeJob() {
    core::FragmentJob job;
    job.mode = core::JobMode::Audio;
    job.percentage = 50;
    job.statusFile = "C:\\状态.txt";
    job.cancelFile = "C:\\no such\\cancel.txt";
    job.outputFile = std::string("C:\\片段 1.wav\0\0\0", 18);
    job.sourceFile = "C:\\Film ж.avi";
    job.begin = 1.5;
    job.end = 7203.0625;
    return job;
}

// What the companion is told of it, but for how it is run.
const Lines kSomeJobTold = {"Mode\t1",
                            "Percentage\t50",
                            "StatusFile\tC:\\状态.txt",
                            "CancelFile\tC:\\no such\\cancel.txt",
                            "OutputFile\tC:\\片段 1.wav\\0\\0\\0",
                            "SourceFile\tC:\\Film ж.avi",
                            "FragmentStart\t1.500",
                            "FragmentEnd\t7203.062",
                            "get ProcessId\tN"};

Lines operator+(Lines left, const Lines& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

// The stand-in, in a folder of the test's own.
class CompanionTest : public testing::Test {
protected:
    void SetUp() override {
        std::filesystem::copy_file(
            platform::ProgramFolder() / "..\\..\\stand-in" / core::kCompanionFileName, Program());
        platform::RegisterAutomation(folder_.Path() / "nqp.exe");
    }

    void TearDown() override {
        EndProcessesOf(Program());
        RemoveClasses();
    }

    std::filesystem::path Program() const { return folder_.Path() / core::kCompanionFileName; }
    void Script(const std::string& script) const { folder_.Put("stand-in.txt", script); }
    // With this script, before the job; without it the system starts the stand-in.
    void StartWith(const std::string& script) const {
        Script(script);
        ASSERT_TRUE(StartServer(Program()));
    }
    bool Runs() const { return !ProcessesOf(Program()).empty(); }

    // With N in place of the process' number.
    Lines Log() const {
        std::istringstream text(folder_.Content("stand-in.log"));
        static const std::regex kProcess("^(get ProcessId\t)[0-9]+$");
        Lines lines;
        for (std::string line; std::getline(text, line);)
            lines.push_back(std::regex_replace(line, kProcess, "$1N"));
        return lines;
    }
    bool Logged(const std::string& line) const {
        const Lines lines = Log();
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }
    bool Reached(const std::string& line) const {
        return WaitUntil([&] { return Logged(line); });
    }

    // Sleeps until the message loop is woken, and looks at the job then only.
    static bool Await(const core::CompanionJob& job) {
        constexpr DWORD kDeadline = 10000;
        for (const ULONGLONG end = GetTickCount64() + kDeadline; !job.Returned();) {
            if (GetTickCount64() >= end) return false;
            MsgWaitForMultipleObjectsEx(0, nullptr, kDeadline, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
            MSG message;
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
                DispatchMessageW(&message);
        }
        return true;
    }

    // The sentence of its error; "done" without one.
    std::string OutcomeOf(RunMode mode, const core::FragmentJob& job = SomeJob()) {
        const auto begun = companion_.Begin(job, mode);
        if (!Await(*begun)) return "nothing";
        return begun->Error().value_or("done");
    }

    static bool GoesAtOnce(std::unique_ptr<core::CompanionJob>& job) {
        const ULONGLONG begin = GetTickCount64();
        job.reset();
        return GetTickCount64() - begin < kAtOnceMilliseconds;
    }

    TempFolder folder_;
    platform::AutomationCompanion companion_{folder_.Path() / core::kCompanionFileName};
};

TEST_F(CompanionTest, IsToldTheJobAndRunsIt) {
    EXPECT_EQ(OutcomeOf(RunMode::Waiting), "done");
    EXPECT_TRUE(Reached("released"));
    EXPECT_EQ(Log(), kSomeJobTold + Lines({"call Run", "finished", "released"}));
    EXPECT_TRUE(WaitUntil([&] { return !Runs(); }));
}

TEST_F(CompanionTest, IsToldWhereThePictureLies) {
    StartWith("");
    core::FragmentJob job = SomeJob();
    job.mode = core::JobMode::VideoWithPicture;
    job.picture = {.x = -3, .y = 1000, .path = "C:\\图\\logo.png"};
    EXPECT_EQ(OutcomeOf(RunMode::Waiting, job), "done");
    const Lines told = Log();
    ASSERT_GT(told.size(), 5u);
    EXPECT_EQ(Lines(told.begin(), told.begin() + 5),
              Lines({"Mode\t3", "ImageX\t-3", "ImageY\t1000", "ImagePath\tC:\\图\\logo.png",
                     "Percentage\t50"}));
}

TEST_F(CompanionTest, IsToldTheLastOutputFileJustBeforeItStarts) {
    StartWith("seconds 0\n");
    core::FragmentJob job = SomeJob();
    job.lastOutputFile = "C:\\end.wav";
    auto begun = companion_.Begin(job, RunMode::Beside);
    ASSERT_TRUE(Await(*begun));
    EXPECT_EQ(begun->Error(), std::nullopt);
    EXPECT_TRUE(Reached("finished"));
    EXPECT_EQ(Log(), kSomeJobTold + Lines({"OutputFile\tC:\\end.wav", "call Start", "finished"}));
}

TEST_F(CompanionTest, BesideItsEndIsNoticed) {
    StartWith("seconds 1\nleaves\n");
    const auto begun = companion_.Begin(SomeJob(), RunMode::Beside);
    ASSERT_TRUE(Await(*begun));
    EXPECT_EQ(begun->Error(), std::nullopt);
    EXPECT_TRUE(WaitUntil([&] { return begun->ProcessEnded(); }));
}

TEST_F(CompanionTest, BesideItIsHeldUntilTheJobsObjectGoes) {
    StartWith("seconds 3\n");
    auto begun = companion_.Begin(SomeJob(), RunMode::Beside);
    ASSERT_TRUE(Await(*begun));
    EXPECT_FALSE(Logged("finished"));
    EXPECT_TRUE(Reached("finished"));
    EXPECT_FALSE(Logged("released"));
    EXPECT_TRUE(Runs());
    EXPECT_FALSE(begun->ProcessEnded());
    EXPECT_TRUE(GoesAtOnce(begun));
    EXPECT_TRUE(Reached("released"));
    EXPECT_TRUE(WaitUntil([&] { return !Runs(); }));
}

TEST_F(CompanionTest, StopsForTheCancelFile) {
    StartWith("seconds 60\n");
    core::FragmentJob job = SomeJob();
    job.cancelFile = base::Utf8FromPath(folder_.Path() / "cancel");
    const auto begun = companion_.Begin(job, RunMode::Waiting);
    ASSERT_TRUE(Reached("call Run"));
    EXPECT_FALSE(begun->Returned());
    folder_.Put("cancel", "");
    ASSERT_TRUE(Await(*begun));
    EXPECT_EQ(begun->Error(), std::nullopt);
    EXPECT_TRUE(Logged("cancelled"));
    EXPECT_FALSE(Logged("finished"));
}

TEST_F(CompanionTest, LeavesTheResultAtTheOutputFile) {
    folder_.Put("made.wav", "sound");
    StartWith("result " + base::Utf8FromPath(folder_.Path() / "made.wav") + "\n");
    const std::filesystem::path output = folder_.Path() / base::PathFromUtf8("片段.wav");
    core::FragmentJob job = SomeJob();
    job.outputFile = base::Utf8FromPath(output) + std::string(3, '\0');
    EXPECT_EQ(OutcomeOf(RunMode::Waiting, job), "done");
    EXPECT_EQ(base::ReadFile(output), (std::vector<char>{'s', 'o', 'u', 'n', 'd'}));
}

TEST_F(CompanionTest, ReportsItsProgressToTheWizard) {
    platform::RegisterAutomation(platform::ProgramFile());
    Script("progress\n");
    EXPECT_EQ(OutcomeOf(RunMode::Waiting), "done");
    EXPECT_TRUE(Reached("released"));
    EXPECT_EQ(Log(), kSomeJobTold + Lines({"call Run", "finished", "released"}));
    EXPECT_TRUE(WaitUntil([] { return ProcessesOf(platform::ProgramFile()).empty(); }));
}

// One member of each kind: a Long, a text, a Double, the property that is read, a method.
struct Place {
    const char* member;
    const char* line;  // the last one of the log
    RunMode mode = RunMode::Waiting;
    bool processKnown = false;
};

class CompanionPlaceTest : public CompanionTest, public testing::WithParamInterface<Place> {};

TEST_P(CompanionPlaceTest, AFailureIsToldInTheCompanionsWords) {
    StartWith(std::string("fail ") + GetParam().member + " 没有 such thing.\n");
    EXPECT_EQ(OutcomeOf(GetParam().mode), "Framewright.exe: 没有 such thing.");
    EXPECT_TRUE(Reached("released"));
    const Lines log = Log();
    ASSERT_GE(log.size(), 2u);
    EXPECT_EQ(log[log.size() - 2], GetParam().line);
}

TEST_P(CompanionPlaceTest, ADeathIsTold) {
    StartWith(std::string("die ") + GetParam().member + "\n");
    EXPECT_EQ(OutcomeOf(GetParam().mode), kDied);
    EXPECT_EQ(Log().back(), GetParam().line);
}

TEST_P(CompanionPlaceTest, ACallThatHangsHoldsNobodyUp) {
    StartWith(std::string("hang ") + GetParam().member + "\n");
    auto job = companion_.Begin(SomeJob(), GetParam().mode);
    ASSERT_TRUE(Reached(GetParam().line));
    EXPECT_FALSE(job->Returned());
    job->EndProcess();
    if (GetParam().processKnown) {
        EXPECT_TRUE(WaitUntil([&] { return !Runs(); }));
        EXPECT_TRUE(Await(*job));
        EXPECT_EQ(job->Error(), kDied);
    } else {
        EXPECT_TRUE(Runs());
        EXPECT_FALSE(job->Returned());
    }
    EXPECT_TRUE(GoesAtOnce(job));
}

INSTANTIATE_TEST_SUITE_P(
    Members, CompanionPlaceTest,
    testing::Values(Place{.member = "Mode", .line = "Mode\t1"},
                    Place{.member = "OutputFile", .line = "OutputFile\tC:\\片段 1.wav\\0\\0\\0"},
                    Place{.member = "FragmentEnd", .line = "FragmentEnd\t7203.062"},
                    Place{.member = "ProcessId", .line = "get ProcessId\tN"},
                    Place{.member = "Run", .line = "call Run", .processKnown = true},
                    Place{.member = "Start",
                          .line = "call Start",
                          .mode = RunMode::Beside,
                          .processKnown = true}),
    [](const auto& place) { return std::string(place.param.member); });

TEST_F(CompanionTest, AJobWhoseCallHangsGoesAtOnce) {
    StartWith("hang Run\n");
    auto job = companion_.Begin(SomeJob(), RunMode::Waiting);
    ASSERT_TRUE(Reached("call Run"));
    EXPECT_TRUE(GoesAtOnce(job));
    EXPECT_TRUE(Runs());
    // The next one is not touched by it.
    StartWith("seconds 0\n");
    EXPECT_EQ(OutcomeOf(RunMode::Waiting), "done");
}

TEST_F(CompanionTest, AJobThatIsBegunAndDroppedRunsAllTheSame) {
    StartWith("seconds 0\n");
    auto job = companion_.Begin(SomeJob(), RunMode::Waiting);
    EXPECT_TRUE(GoesAtOnce(job));
    EXPECT_TRUE(Reached("finished"));
}

TEST_F(CompanionTest, TheProgramEndsWhileACallHangs) {
    StartWith("hang Mode\n");
    const std::string arguments = kLeaveJobHanging + (" " + Quoted(folder_.Path()));
    EXPECT_EQ(ExitCodeOf(platform::ProgramFile(), winapi::Utf16(arguments)), 0u);
    EXPECT_TRUE(Logged("Mode\t1"));
    EXPECT_TRUE(Runs());
}

TEST_F(CompanionTest, EndingTheProcessEndsAJobThatRunsBeside) {
    StartWith("seconds 60\n");
    const auto job = companion_.Begin(SomeJob(), RunMode::Beside);
    ASSERT_TRUE(Await(*job));
    EXPECT_TRUE(Runs());
    job->EndProcess();
    EXPECT_TRUE(WaitUntil([&] { return !Runs(); }));
    EXPECT_EQ(job->Error(), std::nullopt);
    job->EndProcess();
}

TEST_F(CompanionTest, AfterADeathTheNextJobStartsAnother) {
    StartWith("die Run\n");
    EXPECT_EQ(OutcomeOf(RunMode::Waiting), kDied);
    Script("");
    EXPECT_EQ(OutcomeOf(RunMode::Waiting), "done");
}

TEST_F(CompanionTest, TwoJobsHaveAProcessEach) {
    Script("seconds 60\n");
    const auto first = companion_.Begin(SomeJob(), RunMode::Beside);
    const auto second = companion_.Begin(SomeJob(), RunMode::Waiting);
    ASSERT_TRUE(Reached("call Run"));
    ASSERT_TRUE(Await(*first));
    EXPECT_EQ(ProcessesOf(Program()).size(), 2u);
    second->EndProcess();
    EXPECT_TRUE(Await(*second));
    EXPECT_EQ(ProcessesOf(Program()).size(), 1u);
}

TEST_F(CompanionTest, OneThatIsNotRegisteredCannotBeStarted) {
    RemoveClasses();
    EXPECT_EQ(OutcomeOf(RunMode::Waiting), kNotStarted);
    EXPECT_EQ(OutcomeOf(RunMode::Beside), kNotStarted);
}

TEST_F(CompanionTest, OneThatIsNotThereCannotBeStarted) {
    std::filesystem::remove(Program());
    EXPECT_EQ(OutcomeOf(RunMode::Waiting), kNotStarted);
}

TEST_F(CompanionTest, OneThatIsDamagedCannotBeStarted) {
    folder_.Put(core::kCompanionFileName, "no program");
    EXPECT_EQ(OutcomeOf(RunMode::Waiting), kNotStarted);
}

TEST_F(CompanionTest, AHundredJobsLeaveNoHandlesBehind) {
    constexpr int kJobsOfAProcess = 20;
    constexpr int kProcesses = 5;
    const auto runSome = [&] {
        StartWith("seconds 0\njobs " + std::to_string(kJobsOfAProcess) + "\n");
        for (int i = 0; i < kJobsOfAProcess; ++i)
            EXPECT_EQ(OutcomeOf(i % 2 == 0 ? RunMode::Waiting : RunMode::Beside), "done");
        EXPECT_TRUE(WaitUntil([&] { return !Runs(); }));
    };
    runSome();
    const std::size_t before = CountOwnHandles();
    for (int i = 0; i < kProcesses; ++i)
        runSome();
    // Less than one for each process.
    constexpr std::size_t kSpare = 3;
    EXPECT_TRUE(WaitUntil([&] { return CountOwnHandles() <= before + kSpare; }))
        << before << " before, " << CountOwnHandles() << " after";
}

}  // namespace

int LeaveJobHanging(const std::string& folder) {
    const std::filesystem::path log = base::PathFromUtf8(folder) / "stand-in.log";
    platform::AutomationCompanion companion(log.parent_path() / core::kCompanionFileName);
    const auto job = companion.Begin(SomeJob(), RunMode::Waiting);
    return WaitUntil([&] { return !base::ReadFile(log).empty(); }) && !job->Returned() ? 0 : 1;
}

}  // namespace nqp::test
