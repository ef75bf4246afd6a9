#include "platform/automation/wizard_client.h"

#include <windows.h>

#include <initializer_list>
#include <optional>

#include "forms/run_time_error.h"
#include "platform/automation/late_bound.h"
#include "platform/automation/registration.h"
#include "platform/handle.h"
#include "platform/process.h"

namespace nqp::platform {
namespace {

constexpr wchar_t kWizardWindowClass[] = L"nqp.Form3";
// On the wizard's window: the process of the player that serves it.
constexpr wchar_t kPlayerProperty[] = L"nqp.Player";
constexpr char kNotStarted[] = "The Quillon Wizard could not be started.";
constexpr char kGone[] = "The Quillon Wizard is gone.";

[[noreturn]] void Throw(const AutomationError& error) {
    WriteDebugLine(error.what());
    throw forms::RunTimeError(error.Description().empty() ? kGone : error.Description());
}

class AutomationWizard final : public core::Wizard {
public:
    AutomationWizard() : object_(core::kWizardProgId) {}

    // The right to come to the front is gone with the person's next click elsewhere.
    void init() override {
        object_.AllowForeground();
        Call("init");
    }
    void hide_status() override { Call("hide_status"); }
    void set_filepath(const std::string& fpath) override { Call("set_filepath", {fpath}); }
    void set_form7_status(const std::string& stat) override { Call("set_form7_status", {stat}); }
    void update_numbers(const std::string& str_n1, const std::string& str_n2) override {
        Call("update_numbers", {str_n1, str_n2});
    }
    bool Get_frwt_video() override { return AskForJob("Get_frwt_video"); }
    bool Get_frwt_audio() override { return AskForJob("Get_frwt_audio"); }
    bool Get_frwt_image() override { return AskForJob("Get_frwt_image"); }
    bool Get_frwt_unload() override { return Ask<bool>("Get_frwt_unload"); }
    std::string Get_frwt_OutFilePath() override { return Ask<std::string>("Get_frwt_OutFilePath"); }

private:
    AutomationValue Call(const char* method,
                         std::initializer_list<core::MemberValue> arguments = {}) {
        try {
            return object_.Call(method, {arguments.begin(), arguments.size()});
        } catch (const AutomationError& error) {
            Throw(error);
        }
    }

    template <class Answer>
    Answer Ask(const char* method) {
        const AutomationValue answer = Call(method);
        if (const auto* value = std::get_if<Answer>(&answer)) return *value;
        Throw(AutomationError(method, DISP_E_TYPEMISMATCH));
    }

    // A process that cannot answer just now is asked again soon.
    bool AskForJob(const char* method) {
        try {
            const AutomationValue answer = object_.Call(method);
            return answer == AutomationValue(true);
        } catch (const AutomationError& error) {
            if (error.IsForNow()) return false;
            Throw(error);
        }
    }

    LateBound object_;
};

// As the system spells it, the same way for every process; empty for one that is out of reach.
std::wstring ProgramOf(DWORD process) {
    const Handle handle(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process));
    if (!handle) return {};
    constexpr DWORD kLongestPath = 32768;
    std::wstring path(kLongestPath, L'\0');
    DWORD length = kLongestPath;
    if (!QueryFullProcessImageNameW(handle.get(), 0, path.data(), &length)) return {};
    path.resize(length);
    return path;
}

bool SameFile(const std::wstring& left, const std::wstring& right) {
    return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

HANDLE OwnMark() {
    return reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(GetCurrentProcessId()));
}

bool IsWizardOf(HWND window, const std::wstring& program) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return IsWindowVisible(window) && SameFile(ProgramOf(process), program);
}

}  // namespace

// Another copy of the program may have been started since, and have become the one that the system
// starts: its wizard would work in its own folder.
std::unique_ptr<core::Wizard> AutomationWizards::Create() {
    RegisterAutomation(program_file_);
    try {
        return std::make_unique<AutomationWizard>();
    } catch (const AutomationError& error) {
        WriteDebugLine(error.what());
        throw forms::RunTimeError(kNotStarted);
    }
}

base::NativeWindow AutomationWizards::Window() const {
    std::optional<std::wstring> program;
    HWND window = nullptr;
    while ((window = FindWindowExW(nullptr, window, kWizardWindowClass, nullptr)) != nullptr) {
        if (!program) program = ProgramOf(GetCurrentProcessId());
        if (IsWizardOf(window, *program)) return window;
    }
    return nullptr;
}

bool AutomationWizards::TakeOver() {
    taken_ = Window();
    const auto window = static_cast<HWND>(taken_);
    if (window == nullptr) return false;
    const HANDLE before = GetPropW(window, kPlayerProperty);
    SetPropW(window, kPlayerProperty, OwnMark());
    return before != nullptr && before != OwnMark();
}

bool AutomationWizards::IsOurs() const {
    const auto taken = static_cast<HWND>(taken_);
    const HWND window = IsWindow(taken) != 0 ? taken : static_cast<HWND>(Window());
    if (window == nullptr) return true;
    const HANDLE mark = GetPropW(window, kPlayerProperty);
    return mark == nullptr || mark == OwnMark();
}

void AutomationWizards::CloseWindow() {
    const auto window = static_cast<HWND>(Window());
    if (window != nullptr) PostMessageW(window, WM_CLOSE, 0, 0);
}

void WizardOwner::Look(base::NativeWindow wizardWindow) {
    const HANDLE mark = GetPropW(static_cast<HWND>(wizardWindow), kPlayerProperty);
    const auto process = static_cast<DWORD>(reinterpret_cast<ULONG_PTR>(mark));
    if (process == 0 || process == process_) return;
    process_ = process;
    player_ = Handle(OpenProcess(SYNCHRONIZE, FALSE, process));
}

bool WizardOwner::Gone() const {
    return player_ && WaitForSingleObject(player_.get(), 0) == WAIT_OBJECT_0;
}

}  // namespace nqp::platform
