#include "server/win32/job_server.h"

#include <exception>
#include <optional>
#include <string>
#include <utility>

#include "core/companion.h"
#include "forms/backend.h"
#include "forms/run_time_error.h"
#include "forms/win32/message_loop.h"
#include "platform/automation/companion_class.h"
#include "platform/automation/dual_object.h"
#include "platform/automation/variant.h"
#include "server/job_runner.h"
#include "server/server_life.h"
#include "server/win32/error_box.h"
#include "server/win32/fragment_job_interface.h"

namespace nqp::companion {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kLookMilliseconds = 25;
constexpr char kFailed[] = "The job could not be done.";

}  // namespace

// What the server and its COM objects share; the objects may outlive the server.
class JobServer::Served {
public:
    Served(JobWork& work, WindowThread& windows)
        : type_(platform::TypeInfoInProgram(__uuidof(IFragmentJob))),
          runner_(std::in_place, work,
                  [&windows](JobRunner::Task task) { windows.Post(std::move(task)); }) {}

    const winapi::ComPtr<ITypeInfo>& Type() const { return type_; }

    // Nothing can be done any more.
    void Stop() { runner_.reset(); }
    bool Stopped() const { return !runner_; }

    void Hold() { life_.Held(Clock::now()); }
    void LetGo() { life_.Released(Clock::now()); }
    void NoteCall() { life_.Called(Clock::now()); }

    // Returns when the job has ended. Throws CutError.
    void Run(const JobValues& values) {
        Begin(values, false);
        forms::RunMessagesUntil([this] { return runner_->Ended(); });
        if (runner_->Error()) throw CutError(*runner_->Error());
    }
    void Start(const JobValues& values) { Begin(values, true); }

    // The box is shown where no call waits for an answer.
    bool IsOver() {
        if (const auto sentence = std::exchange(untold_, std::nullopt)) {
            telling_ = true;
            ShowErrorBox(*sentence);
            telling_ = false;
            life_.JobEnded(true, Clock::now());
        }
        return !telling_ && life_.IsOver(Clock::now());
    }

private:
    void Begin(const JobValues& values, bool beside) {
        runner_->Begin(values, [this, beside] {
            life_.JobEnded(beside, Clock::now());
            if (beside) untold_ = runner_->Error();
        });
        life_.JobBegan();
    }

    const winapi::ComPtr<ITypeInfo> type_;
    ServerLife life_{Clock::now()};
    std::optional<std::string> untold_;  // why a job beside its client failed
    bool telling_ = false;
    std::optional<JobRunner> runner_;
};

class JobServer::Object final : public platform::DualObject<IFragmentJob> {
public:
    explicit Object(std::shared_ptr<Served> served)
        : DualObject(served->Type()), served_(std::move(served)) {
        served_->Hold();
    }
    ~Object() override { served_->LetGo(); }

    HRESULT STDMETHODCALLTYPE get_Mode(LONG* value) override { return Get(value, values_.mode); }
    HRESULT STDMETHODCALLTYPE put_Mode(LONG value) override { return Put(values_.mode, value); }
    HRESULT STDMETHODCALLTYPE get_ImageX(LONG* value) override {
        return Get(value, values_.imageX);
    }
    HRESULT STDMETHODCALLTYPE put_ImageX(LONG value) override { return Put(values_.imageX, value); }
    HRESULT STDMETHODCALLTYPE get_ImageY(LONG* value) override {
        return Get(value, values_.imageY);
    }
    HRESULT STDMETHODCALLTYPE put_ImageY(LONG value) override { return Put(values_.imageY, value); }
    HRESULT STDMETHODCALLTYPE get_ImagePath(BSTR* value) override {
        return Get(value, values_.imagePath);
    }
    HRESULT STDMETHODCALLTYPE put_ImagePath(BSTR value) override {
        return Put(values_.imagePath, value);
    }
    HRESULT STDMETHODCALLTYPE get_Percentage(LONG* value) override {
        return Get(value, values_.percentage);
    }
    HRESULT STDMETHODCALLTYPE put_Percentage(LONG value) override {
        return Put(values_.percentage, value);
    }
    HRESULT STDMETHODCALLTYPE get_StatusFile(BSTR* value) override {
        return Get(value, values_.statusFile);
    }
    HRESULT STDMETHODCALLTYPE put_StatusFile(BSTR value) override {
        return Put(values_.statusFile, value);
    }
    HRESULT STDMETHODCALLTYPE get_CancelFile(BSTR* value) override {
        return Get(value, values_.cancelFile);
    }
    HRESULT STDMETHODCALLTYPE put_CancelFile(BSTR value) override {
        return Put(values_.cancelFile, value);
    }
    HRESULT STDMETHODCALLTYPE get_OutputFile(BSTR* value) override {
        return Get(value, values_.outputFile);
    }
    HRESULT STDMETHODCALLTYPE put_OutputFile(BSTR value) override {
        return Put(values_.outputFile, value);
    }
    HRESULT STDMETHODCALLTYPE get_SourceFile(BSTR* value) override {
        return Get(value, values_.sourceFile);
    }
    HRESULT STDMETHODCALLTYPE put_SourceFile(BSTR value) override {
        return Put(values_.sourceFile, value);
    }
    HRESULT STDMETHODCALLTYPE get_FragmentStart(DOUBLE* value) override {
        return Get(value, values_.fragmentStart);
    }
    HRESULT STDMETHODCALLTYPE put_FragmentStart(DOUBLE value) override {
        return Put(values_.fragmentStart, value);
    }
    HRESULT STDMETHODCALLTYPE get_FragmentEnd(DOUBLE* value) override {
        return Get(value, values_.fragmentEnd);
    }
    HRESULT STDMETHODCALLTYPE put_FragmentEnd(DOUBLE value) override {
        return Put(values_.fragmentEnd, value);
    }
    HRESULT STDMETHODCALLTYPE get_ProcessId(LONG* value) override {
        return Get(value, static_cast<LONG>(GetCurrentProcessId()));
    }
    HRESULT STDMETHODCALLTYPE Run() override {
        return Answer([this] { served_->Run(values_); });
    }
    HRESULT STDMETHODCALLTYPE Start() override {
        return Answer([this] { served_->Start(values_); });
    }

private:
    // What a method throws becomes a failed call with the error's text.
    template <class Method>
    HRESULT Answer(Method&& method) noexcept {
        if (served_->Stopped()) return CO_E_OBJNOTCONNECTED;
        served_->NoteCall();
        std::optional<std::string> failure;
        try {
            method();
        } catch (const std::exception& error) {
            failure = error.what();
        } catch (...) {
            failure = kFailed;
        }
        // A job that was waited for has taken its time.
        served_->NoteCall();
        if (!failure) return S_OK;
        platform::SetErrorText(__uuidof(IFragmentJob), core::kCompanionProgId, *failure);
        return platform::kMethodFailed;
    }

    template <class Value, class Kept>
    HRESULT Get(Value* value, Kept kept) noexcept {
        if (value == nullptr) return E_POINTER;
        return Answer([&] { *value = static_cast<Value>(kept); });
    }
    HRESULT Get(BSTR* value, const std::string& kept) noexcept {
        if (value == nullptr) return E_POINTER;
        *value = nullptr;
        const HRESULT answer = Answer([&] { *value = platform::NewText(kept); });
        return SUCCEEDED(answer) && *value == nullptr ? E_OUTOFMEMORY : answer;
    }
    template <class Kept, class Value>
    HRESULT Put(Kept& kept, Value value) noexcept {
        return Answer([&] { kept = static_cast<Kept>(value); });
    }
    HRESULT Put(std::string& kept, BSTR value) noexcept {
        return Answer([&] { kept = platform::TextOf(value); });
    }

    std::shared_ptr<Served> served_;
    JobValues values_;
};

// On offer to one client, whom it makes one object.
class JobServer::ClassObject final : public winapi::ComObject<IClassFactory> {
public:
    explicit ClassObject(std::shared_ptr<Served> served) : served_(std::move(served)) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (outer != nullptr) return CLASS_E_NOAGGREGATION;
        if (served_->Stopped() || std::exchange(taken_, true)) return CO_E_SERVER_STOPPING;
        return winapi::MakeCom<Object>(served_)->QueryInterface(id, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        if (lock) {
            served_->Hold();
        } else {
            served_->LetGo();
        }
        return S_OK;
    }

private:
    std::shared_ptr<Served> served_;
    bool taken_ = false;
};

JobServer::JobServer(JobWork& work, WindowThread& windows)
    : served_(std::make_shared<Served>(work, windows)) {
    CLSID classId{};
    const auto factory = winapi::MakeCom<ClassObject>(served_);
    if (FAILED(CLSIDFromString(platform::kCompanionClass, &classId)) ||
        FAILED(CoRegisterClassObject(classId, factory.Get(), CLSCTX_LOCAL_SERVER, REGCLS_SINGLEUSE,
                                     &offer_))) {
        throw forms::RunTimeError("Framewright cannot be reached by other programs.");
    }
}

JobServer::~JobServer() {
    CoRevokeClassObject(offer_);
    served_->Stop();
}

void JobServer::Serve() {
    const auto look = forms::CreateTimerPeer(kLookMilliseconds, [this] {
        forms::Guarded(forms::Origin::Program, [this] {
            if (served_->IsOver()) forms::win32::QuitMessageLoop();
        });
    });
    forms::win32::RunMessageLoop();
}

}  // namespace nqp::companion
