#include "server/job_runner.h"

#include <exception>
#include <new>

namespace nqp::companion {
namespace {

constexpr char kUnderWay[] = "The job is under way already.";
constexpr char kOver[] = "This job is over. Every further one needs an object of its own.";
constexpr char kNoMemory[] = "There is not enough memory for this job.";
constexpr char kFailed[] = "The job could not be done: ";

}  // namespace

JobRunner::~JobRunner() {
    if (thread_.joinable()) thread_.join();
}

void JobRunner::Begin(const JobValues& values, Task ended) {
    if (ended_) throw CutError(kOver);
    if (thread_.joinable()) throw CutError(kUnderWay);
    work_.Check(values);
    thread_ = std::thread([this, values, ended = std::move(ended)] {
        toWindowThread_([this, ended, error = Do(values)] {
            ended_ = true;
            error_ = error;
            ended();
        });
    });
}

std::optional<std::string> JobRunner::Do(const JobValues& values) noexcept {
    try {
        work_.Do(values);
        return std::nullopt;
    } catch (const CutError& error) {
        return error.what();
    } catch (const std::bad_alloc&) {
        return kNoMemory;
    } catch (const std::exception& error) {
        return std::string(kFailed) + error.what();
    }
}

}  // namespace nqp::companion
