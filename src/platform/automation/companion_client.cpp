#include "platform/automation/companion_client.h"

#include <windows.h>

#include <objbase.h>

#include <array>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "base/file.h"
#include "platform/automation/late_bound.h"
#include "platform/handle.h"
#include "platform/process.h"

namespace nqp::platform {
namespace {

using core::RunMode;

constexpr char kNotStarted[] =
    "Framewright.exe, which cuts fragments, could not be started. Installing Nuvex Quillon Player "
    "again brings it back.";
constexpr char kDied[] = "Framewright.exe stopped before the job was done.";
constexpr char kFailed[] = "Framewright.exe could not do the job.";

// What the job's object shares with the thread that talks to the companion. Either may go first.
class JobState {
public:
    JobState() : windowThread_(GetCurrentThreadId()) {}

    bool Returned() const {
        const std::lock_guard lock(mutex_);
        return returned_;
    }
    std::optional<std::string> Error() const {
        const std::lock_guard lock(mutex_);
        return error_;
    }
    void EndProcess() {
        const std::lock_guard lock(mutex_);
        if (process_) TerminateProcess(process_.get(), 0);
    }
    bool ProcessEnded() const {
        const std::lock_guard lock(mutex_);
        return process_ && WaitForSingleObject(process_.get(), 0) == WAIT_OBJECT_0;
    }
    // Nobody looks at the job any more.
    void Abandon() { SetEvent(abandoned_.get()); }

    // For the thread.

    // Opened at once and kept, so that the number of a process that has ended, which the system
    // gives to another, cannot hit a stranger.
    void SetProcess(DWORD number) {
        Handle process(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, TRUE, number));
        const std::lock_guard lock(mutex_);
        process_ = std::move(process);
    }
    void Finish(const std::optional<std::string>& error) {
        {
            const std::lock_guard lock(mutex_);
            returned_ = true;
            error_ = error;
        }
        // A message without meaning: the loop turns, and the windows look at their jobs.
        PostThreadMessageW(windowThread_, WM_NULL, 0, 0);
    }
    void WaitForEnd() const {
        // Without a process to watch, the job's object alone decides.
        const std::array<HANDLE, 2> ends = {abandoned_.get(), process_.get()};
        WaitForMultipleObjects(process_ ? 2 : 1, ends.data(), FALSE, INFINITE);
    }

private:
    const DWORD windowThread_;
    const Handle abandoned_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    mutable std::mutex mutex_;
    bool returned_ = false;
    std::optional<std::string> error_;
    Handle process_;  // written by the thread only
};

// The threads of two jobs may follow each other closely. The apartment that they share is kept from
// the first one on, because Wine can crash where one thread takes it down while another enters it.
// Not every import library has the call.
void KeepSharedApartment() {
    using Keep = HRESULT(WINAPI*)(void** cookie);
    static const bool kept = [] {
        const auto keep = reinterpret_cast<Keep>(reinterpret_cast<void*>(
            GetProcAddress(GetModuleHandleW(L"ole32.dll"), "CoIncrementMTAUsage")));
        void* cookie = nullptr;  // for as long as the process lives
        return keep != nullptr && SUCCEEDED(keep(&cookie));
    }();
    static_cast<void>(kept);
}

class MultiThreadedApartment {
public:
    MultiThreadedApartment() : entered_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {}
    ~MultiThreadedApartment() {
        if (entered_) CoUninitialize();
    }
    MultiThreadedApartment(const MultiThreadedApartment&) = delete;
    MultiThreadedApartment& operator=(const MultiThreadedApartment&) = delete;

private:
    bool entered_;
};

std::string SentenceFor(const AutomationError& error) {
    if (error.ServerIsGone()) return kDied;
    if (error.Description().empty()) return kFailed;
    return "Framewright.exe: " + error.Description();
}

// Creates the companion's object; empty, with the job finished, when that fails.
std::optional<LateBound> CreateObject(const std::filesystem::path& program, JobState& state) {
    try {
        if (!base::IsFile(program)) throw AutomationError("no companion", CO_E_SERVER_EXEC_FAILURE);
        return LateBound(core::kCompanionProgId);
    } catch (const AutomationError& error) {
        WriteDebugLine(error.what());
        state.Finish(kNotStarted);
        return std::nullopt;
    }
}

void TellAndRun(const LateBound& companion, const core::FragmentJob& job, RunMode mode,
                JobState& state) {
    using namespace core::companion_member;
    for (const core::CompanionMember& member : core::MembersInOrder(job))
        companion.Put(member.name, member.value);
    const AutomationValue process = companion.Get(kProcessId);
    if (const auto* number = std::get_if<std::int32_t>(&process)) {
        state.SetProcess(static_cast<DWORD>(*number));
    }
    if (job.lastOutputFile) companion.Put(kOutputFile, *job.lastOutputFile);
    companion.Call(mode == RunMode::Waiting ? kRun : kStart);
}

void DoJob(const std::filesystem::path& program, const core::FragmentJob& job, RunMode mode,
           JobState& state) {
    const MultiThreadedApartment apartment;
    const std::optional<LateBound> companion = CreateObject(program, state);
    if (!companion) return;
    try {
        TellAndRun(*companion, job, mode, state);
        state.Finish(std::nullopt);
    } catch (const AutomationError& error) {
        WriteDebugLine(error.what());
        state.Finish(SentenceFor(error));
        return;
    }
    // A companion whose object is let go may end, and its job with it.
    if (mode == RunMode::Beside) state.WaitForEnd();
}

void RunThread(const std::filesystem::path& program, const core::FragmentJob& job, RunMode mode,
               JobState& state) noexcept {
    try {
        DoJob(program, job, mode, state);
    } catch (const std::exception& error) {
        WriteDebugLine(error.what());
        state.Finish(kFailed);
    }
}

class AutomationJob final : public core::CompanionJob {
public:
    AutomationJob(const std::filesystem::path& program, const core::FragmentJob& job,
                  RunMode mode) {
        KeepSharedApartment();
        try {
            // Never joined: the companion may not return from a call, and nobody waits for that.
            std::thread([state = state_, program, job, mode] {
                RunThread(program, job, mode, *state);
            }).detach();
        } catch (const std::system_error& error) {
            WriteDebugLine(error.what());
            state_->Finish(kFailed);
        }
    }
    ~AutomationJob() override { state_->Abandon(); }

    bool Returned() const override { return state_->Returned(); }
    std::optional<std::string> Error() const override { return state_->Error(); }
    void EndProcess() override { state_->EndProcess(); }
    bool ProcessEnded() const override { return state_->ProcessEnded(); }

private:
    std::shared_ptr<JobState> state_ = std::make_shared<JobState>();
};

}  // namespace

std::unique_ptr<core::CompanionJob> AutomationCompanion::Begin(const core::FragmentJob& job,
                                                               RunMode mode) {
    return std::make_unique<AutomationJob>(program_file_, job, mode);
}

}  // namespace nqp::platform
