// Stands in for Framewright.exe: a server of the companion's class that does what a script says and
// writes down what it is told. Script and log stand beside it.
//
// stand-in.txt, a command a line, all of them optional:
//   seconds N        how long a job takes (0.2)
//   progress         reports "10 % copied" to "100 % copied" to the wizard while the job runs
//   result FILE      is copied to the output file when the job has been done
//   deaf             pays no attention to the cancel file
//   hang MEMBER      never returns from that member
//   die MEMBER       ends its own process inside that member
//   fail MEMBER TEXT raises an automation error with that description
//   leaves           ends its process with a job that was started, though its object is held
//   jobs N           serves N objects, one after the other, before it ends (1)
//
// stand-in.log, a line each, in the order in which things happened:
//   MEMBER<TAB>VALUE       was put; a NUL character is written \0, a Double with three decimals
//   get ProcessId<TAB>ID   call Run   call Start
//   no progress<TAB>REASON  no result<TAB>REASON
//   cancelled or finished  the job's end
//   released               the client let go of the object; after the last one the process ends
#include <windows.h>

#include <oaidl.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "base/file.h"
#include "core/companion.h"
#include "core/wizard.h"
#include "forms/win32/winapi/com.h"
#include "forms/win32/winapi/text.h"
#include "platform/automation/companion_class.h"
#include "platform/automation/late_bound.h"
#include "platform/automation/variant.h"
#include "platform/handle.h"
#include "platform/process.h"
#include "server_ready.h"

namespace nqp::test {
namespace {

using namespace core::companion_member;
using Clock = std::chrono::steady_clock;

// No test takes longer; a stand-in whose client was killed ends by then.
constexpr DWORD kLongestLife = 300000;
// The answer to the client's last call is still on its way when the object is gone, and nothing
// tells when it has arrived. Wine's clients lose handles when the process ends before that.
constexpr DWORD kLastAnswerMilliseconds = 100;
constexpr auto kLookForCancelFile = std::chrono::milliseconds(50);
constexpr int kProgressReports = 10;

std::filesystem::path Beside(const char* name) {
    return platform::ProgramFolder() / name;
}

std::filesystem::path FirstPath(const std::string& text) {
    return base::PathFromUtf8(text.substr(0, text.find('\0')));
}

class Log {
public:
    void Add(const std::string& line) {
        const std::lock_guard lock(mutex_);
        std::ofstream(Beside("stand-in.log"), std::ios::binary | std::ios::app) << line << "\n";
    }

private:
    std::mutex mutex_;
};

struct Script {
    std::chrono::duration<double> duration{0.2};
    bool progress = false;
    bool deaf = false;
    bool leaves = false;
    std::optional<std::string> result;
    std::string hangsIn;
    std::string diesIn;
    std::map<std::string, std::string> failures;
    int jobs = 1;

    static Script Read() {
        Script script;
        std::ifstream file(Beside("stand-in.txt"), std::ios::binary);
        for (std::string line; std::getline(file, line);) {
            if (line.ends_with('\r')) line.pop_back();
            script.Take(line);
        }
        return script;
    }

private:
    void Take(const std::string& line) {
        std::istringstream words(line);
        std::string command;
        words >> command >> std::ws;
        std::string rest;
        std::getline(words, rest);
        if (command == "seconds") duration = std::chrono::duration<double>(std::stod(rest));
        if (command == "progress") progress = true;
        if (command == "deaf") deaf = true;
        if (command == "result") result = rest;
        if (command == "hang") hangsIn = rest;
        if (command == "die") diesIn = rest;
        if (command == "leaves") leaves = true;
        if (command == "jobs") jobs = std::stoi(rest);
        if (command == "fail") {
            const auto blank = rest.find(' ');
            failures[rest.substr(0, blank)] = rest.substr(blank + 1);
        }
    }
};

struct Member {
    const char* name;
    VARTYPE type;  // of a property that is put
};

// A member's number is its place here and one.
const std::vector<Member> kMembers = {
    {kMode, VT_I4},         {kImageX, VT_I4},        {kImageY, VT_I4},       {kImagePath, VT_BSTR},
    {kPercentage, VT_I4},   {kStatusFile, VT_BSTR},  {kCancelFile, VT_BSTR}, {kOutputFile, VT_BSTR},
    {kSourceFile, VT_BSTR}, {kFragmentStart, VT_R8}, {kFragmentEnd, VT_R8},  {kProcessId, VT_EMPTY},
    {kRun, VT_EMPTY},       {kStart, VT_EMPTY},
};

struct Stage {
    Log log;
    Script script;  // of the present object
    int jobsLeft = 0;
    platform::Handle done{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
};

// The job itself, as far as it can be seen from outside.
class Work {
public:
    Work(Stage& stage, std::string cancelFile, std::string outputFile)
        : stage_(stage), cancelFile_(FirstPath(cancelFile)), outputFile_(FirstPath(outputFile)) {}

    void Do() {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        DoSteps();
        CoUninitialize();
    }

private:
    void DoSteps() {
        const auto wizard = Wizard();
        const auto begin = Clock::now();
        for (int step = 1; step <= kProgressReports; ++step) {
            const auto until = begin + stage_.script.duration * step / kProgressReports;
            if (!WaitUntil(std::chrono::time_point_cast<Clock::duration>(until))) {
                return stage_.log.Add("cancelled");
            }
            if (wizard) Report(*wizard, step * 100 / kProgressReports);
        }
        std::error_code ignored;
        if (stage_.script.result) {
            std::filesystem::copy_file(base::PathFromUtf8(*stage_.script.result), outputFile_,
                                       std::filesystem::copy_options::overwrite_existing, ignored);
            if (ignored) stage_.log.Add("no result\t" + ignored.message());
        }
        stage_.log.Add("finished");
    }

    std::optional<platform::LateBound> Wizard() {
        if (!stage_.script.progress) return std::nullopt;
        try {
            return platform::LateBound(core::kWizardProgId);
        } catch (const platform::AutomationError& error) {
            stage_.log.Add(std::string("no progress\t") + error.what());
            return std::nullopt;
        }
    }

    void Report(const platform::LateBound& wizard, int percent) {
        const core::MemberValue text = std::to_string(percent) + " % copied";
        try {
            wizard.Call("set_form7_status", {&text, 1});
        } catch (const platform::AutomationError& error) {
            stage_.log.Add(std::string("no progress\t") + error.what());
        }
    }

    // False when the job was cancelled meanwhile.
    bool WaitUntil(Clock::time_point until) const {
        while (!Cancelled()) {
            const auto now = Clock::now();
            if (now >= until) return true;
            std::this_thread::sleep_for(std::min<Clock::duration>(until - now, kLookForCancelFile));
        }
        return false;
    }
    bool Cancelled() const {
        return !stage_.script.deaf && !cancelFile_.empty() && base::IsFile(cancelFile_);
    }

    Stage& stage_;
    std::filesystem::path cancelFile_;
    std::filesystem::path outputFile_;
};

class JobObject final : public winapi::ComObject<IDispatch> {
public:
    explicit JobObject(Stage& stage) : stage_(stage) {}
    ~JobObject() override {
        stage_.log.Add("released");
        if (stage_.jobsLeft == 0) SetEvent(stage_.done.get());
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                            DISPID* ids) override {
        for (std::size_t i = 0; i < kMembers.size(); ++i) {
            if (lstrcmpiW(names[0], winapi::Utf16(kMembers[i].name).c_str()) != 0) continue;
            ids[0] = static_cast<DISPID>(i) + 1;
            return S_OK;
        }
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO* exception, UINT*) override {
        if (id < 1 || id > static_cast<DISPID>(kMembers.size())) return DISP_E_MEMBERNOTFOUND;
        const Member& member = kMembers[static_cast<std::size_t>(id) - 1];
        const std::string name = member.name;
        if ((flags & DISPATCH_PROPERTYPUT) != 0) {
            if (member.type == VT_EMPTY) return DISP_E_MEMBERNOTFOUND;
            if (parameters->cArgs != 1) return DISP_E_BADPARAMCOUNT;
            return Put(member, parameters->rgvarg[0], exception);
        }
        const bool property = (flags & DISPATCH_PROPERTYGET) != 0;
        if (property && name == kProcessId) return TellProcess(result, exception);
        const bool method = (flags & DISPATCH_METHOD) != 0;
        if (method && (name == kRun || name == kStart)) return RunJob(name, exception);
        return DISP_E_MEMBERNOTFOUND;
    }

private:
    // What the script has in store for this member.
    HRESULT Act(const std::string& member, EXCEPINFO* exception) {
        const Script& script = stage_.script;
        if (script.hangsIn == member) Sleep(INFINITE);
        if (script.diesIn == member) TerminateProcess(GetCurrentProcess(), 3);
        const auto failure = script.failures.find(member);
        if (failure == script.failures.end()) return S_OK;
        if (exception != nullptr) {
            *exception = {};
            exception->scode = E_FAIL;
            exception->bstrSource = platform::NewText("Framewright");
            exception->bstrDescription = platform::NewText(failure->second);
        }
        return DISP_E_EXCEPTION;
    }

    HRESULT Put(const Member& member, const VARIANT& value, EXCEPINFO* exception) {
        // As the members are declared: nothing is converted on the way.
        if (V_VT(&value) != member.type) return DISP_E_TYPEMISMATCH;
        std::string text = Written(value);
        stage_.log.Add(std::string(member.name) + "\t" + text);
        if (member.type == VT_BSTR) texts_[member.name] = platform::TextOf(V_BSTR(&value));
        return Act(member.name, exception);
    }

    static std::string Written(const VARIANT& value) {
        if (V_VT(&value) == VT_I4) return std::to_string(V_I4(&value));
        if (V_VT(&value) == VT_R8) {
            char number[64];
            std::snprintf(number, sizeof number, "%.3f", V_R8(&value));
            return number;
        }
        std::string written;
        for (const char c : platform::TextOf(V_BSTR(&value))) {
            if (c == '\0') {
                written += "\\0";
            } else {
                written += c;
            }
        }
        return written;
    }

    HRESULT TellProcess(VARIANT* result, EXCEPINFO* exception) {
        const auto process = static_cast<LONG>(GetCurrentProcessId());
        stage_.log.Add("get ProcessId\t" + std::to_string(process));
        const HRESULT answer = Act(kProcessId, exception);
        if (SUCCEEDED(answer) && result != nullptr) {
            V_VT(result) = VT_I4;
            V_I4(result) = process;
        }
        return answer;
    }

    HRESULT RunJob(const std::string& name, EXCEPINFO* exception) {
        stage_.log.Add("call " + name);
        const HRESULT answer = Act(name, exception);
        if (FAILED(answer)) return answer;
        const bool leaves = stage_.script.leaves && name == kStart;
        std::thread job(
            [leaves, work = Work(stage_, texts_[kCancelFile], texts_[kOutputFile])]() mutable {
                work.Do();
                if (leaves) TerminateProcess(GetCurrentProcess(), 0);
            });
        if (name == kRun) {
            job.join();
        } else {
            job.detach();
        }
        return S_OK;
    }

    Stage& stage_;
    std::map<std::string, std::string> texts_;
};

class JobClass final : public winapi::ComObject<IClassFactory> {
public:
    explicit JobClass(Stage& stage) : stage_(stage) {}

    bool Offer() {
        CLSID classId{};
        return SUCCEEDED(CLSIDFromString(platform::kCompanionClass, &classId)) &&
               SUCCEEDED(CoRegisterClassObject(classId, this, CLSCTX_LOCAL_SERVER, REGCLS_SINGLEUSE,
                                               &offer_));
    }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) override {
        if (outer != nullptr) return CLASS_E_NOAGGREGATION;
        stage_.script = Script::Read();
        if (stage_.jobsLeft == 0) stage_.jobsLeft = stage_.script.jobs;
        if (--stage_.jobsLeft > 0) {
            CoRevokeClassObject(offer_);
            if (!Offer()) return CO_E_SERVER_STOPPING;
        }
        return winapi::MakeCom<JobObject>(stage_)->QueryInterface(id, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

private:
    Stage& stage_;
    DWORD offer_ = 0;
};

// Wine takes calls of an interface as long as an object offers it to other processes, and may hang
// when the last one goes just as a call ends. So one object of each kind always stays.
bool OfferForGood(const IID& id, IUnknown& object) {
    winapi::ComPtr<IStream> reference;
    return SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, reference.Put())) &&
           SUCCEEDED(CoMarshalInterface(reference.Get(), id, &object, MSHCTX_LOCAL, nullptr,
                                        MSHLFLAGS_TABLESTRONG));
}

void Serve() {
    Stage stage;
    const auto jobs = winapi::MakeCom<JobClass>(stage);
    const auto idle = winapi::MakeCom<JobObject>(stage);
    if (!OfferForGood(IID_IClassFactory, *jobs.Get()) ||
        !OfferForGood(IID_IDispatch, *idle.Get()) || !jobs->Offer()) {
        return;
    }
    SayReady();
    WaitForSingleObject(stage.done.get(), kLongestLife);
    Sleep(kLastAnswerMilliseconds);
    // A job that was started beside its client does not outlive the object.
    ExitProcess(0);
}

}  // namespace
}  // namespace nqp::test

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    if (SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) nqp::test::Serve();
    return 1;
}
