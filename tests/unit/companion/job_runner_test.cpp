#include "server/job_runner.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <mutex>

namespace nqp::companion {
namespace {

class ScriptedWork final : public JobWork {
public:
    void Check(const JobValues& values) override {
        if (values.percentage > 100) throw CutError("Too much.");
    }
    void Do(const JobValues& values) override {
        done = values;
        if (act) act();
    }

    JobValues done;
    std::function<void()> act;
};

class JobRunnerTest : public testing::Test {
protected:
    std::string ErrorOf(const JobValues& values) {
        try {
            runner_.Begin(values, [] {});
        } catch (const CutError& error) {
            return error.what();
        }
        return "no error";
    }
    void Run() {
        runner_.Begin({}, [this] { told_ = true; });
        DoTask();
    }
    // On the window thread, which this one is.
    void DoTask() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return task_ != nullptr; });
        std::exchange(task_, nullptr)();
    }

    ScriptedWork work_;
    std::mutex mutex_;
    std::condition_variable changed_;
    JobRunner::Task task_;
    bool told_ = false;
    JobRunner runner_{work_, [this](JobRunner::Task task) {
                          const std::lock_guard lock(mutex_);
                          task_ = std::move(task);
                          changed_.notify_all();
                      }};
};

TEST_F(JobRunnerTest, TellsTheEndOnTheWindowThread) {
    const auto here = std::this_thread::get_id();
    std::thread::id there = here;
    work_.act = [&] { there = std::this_thread::get_id(); };
    runner_.Begin({.sourceFile = "a"}, [&] { EXPECT_EQ(std::this_thread::get_id(), here); });
    EXPECT_FALSE(runner_.Ended());
    DoTask();
    EXPECT_TRUE(runner_.Ended());
    EXPECT_EQ(runner_.Error(), std::nullopt);
    EXPECT_EQ(work_.done.sourceFile, "a");
    EXPECT_NE(there, here);
}

TEST_F(JobRunnerTest, KeepsTheSentenceOfAFailure) {
    work_.act = [] { throw CutError("The clip is damaged."); };
    Run();
    EXPECT_TRUE(told_);
    EXPECT_EQ(runner_.Error(), "The clip is damaged.");
}

TEST_F(JobRunnerTest, MakesASentenceOfAnyOtherFailure) {
    work_.act = [] { throw std::runtime_error("disk"); };
    Run();
    EXPECT_EQ(runner_.Error(), "The job could not be done: disk");
}

TEST_F(JobRunnerTest, TakesOtherValuesAfterThoseThatWereRefused) {
    EXPECT_EQ(ErrorOf({.percentage = 101}), "Too much.");
    Run();
    EXPECT_TRUE(told_);
}

TEST_F(JobRunnerTest, DoesOneJob) {
    runner_.Begin({}, [] {});
    EXPECT_EQ(ErrorOf({}), "The job is under way already.");
    DoTask();
    EXPECT_EQ(ErrorOf({}), "This job is over. Every further one needs an object of its own.");
}

}  // namespace
}  // namespace nqp::companion
