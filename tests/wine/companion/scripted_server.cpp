#include "scripted_server.h"

#include <chrono>
#include <fstream>
#include <sstream>
#include <thread>

#include "base/file.h"
#include "forms/win32/message_loop.h"
#include "server/win32/format_question.h"
#include "server/win32/job_server.h"
#include "server_ready.h"

namespace nqp::test {
namespace {

using namespace companion;

constexpr std::chrono::seconds kLongestWait{30};
constexpr std::chrono::milliseconds kPoll{10};
constexpr double kCopyBegin = 1.92;

std::string Behind(const std::string& command, const std::string& text) {
    return text.starts_with(command) ? text.substr(command.size()) : std::string();
}

std::string Told(const JobValues& values) {
    std::ostringstream told;
    told << values.mode << ' ' << values.imageX << ' ' << values.imageY << ' ' << values.imagePath
         << ' ' << values.percentage << ' ' << values.fragmentStart << ' ' << values.fragmentEnd;
    return told.str();
}

class ScriptedWork final : public JobWork {
public:
    explicit ScriptedWork(FormatQuestion& question) : question_(question) {}

    void Check(const JobValues& values) override {
        const std::string reason = Behind("refuse ", values.sourceFile);
        if (!reason.empty()) throw CutError(reason);
    }

    void Do(const JobValues& values) override {
        const std::string reason = Behind("fail ", values.sourceFile);
        if (!reason.empty()) throw CutError(reason);
        const CutJob job = JobOf(values);
        JobSignals signals(base::PathFromUtf8(values.cancelFile));
        if (values.sourceFile == "wait") return WaitForCancel(signals);
        std::ofstream(job.output, std::ios::binary)
            << (values.sourceFile == "ask" ? Ask(signals) : Told(values));
    }

private:
    static void WaitForCancel(JobSignals& signals) {
        const auto deadline = std::chrono::steady_clock::now() + kLongestWait;
        while (!signals.Cancelled() && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(kPoll);
    }

    std::string Ask(JobSignals& signals) const {
        const auto answer =
            question_.Ask({{}, kCopyBegin}, [&signals] { return signals.Cancelled(); });
        return answer ? std::to_string(static_cast<int>(answer->format)) : "cancelled";
    }

    FormatQuestion& question_;
};

}  // namespace

int ServeScriptedJob() {
    FormatDialog dialog;
    {
        WindowThread windows;
        DialogQuestion question(dialog, windows);
        ScriptedWork work(question);
        JobServer server(work, windows);
        SayReady();
        server.Serve();
    }
    forms::win32::RunPostedTasks();
    return 0;
}

}  // namespace nqp::test
