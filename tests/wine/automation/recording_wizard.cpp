#include "recording_wizard.h"

#include <windows.h>

#include <utility>

#include "forms/run_time_error.h"
#include "server_ready.h"

namespace nqp::test {
namespace {

// A server whose client was killed ends by then.
constexpr std::chrono::seconds kPatience{60};
constexpr UINT kLookMilliseconds = 1000;
constexpr wchar_t kWindowClass[] = L"nqp.Form3";
constexpr char kFail[] = "fail ";

void ShowWizardWindow() {
    WNDCLASSW description{};
    description.lpfnWndProc = DefWindowProcW;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = kWindowClass;
    RegisterClassW(&description);
    CreateWindowExW(0, kWindowClass, L"", WS_POPUP | WS_VISIBLE, 10, 10, 50, 50, nullptr, nullptr,
                    description.hInstance, nullptr);
}

}  // namespace

void RecordingWizard::set_filepath(const std::string& fpath) {
    if (fpath.starts_with(kFail)) throw forms::RunTimeError(fpath.substr(sizeof kFail - 1));
    Record("set_filepath " + fpath);
    if (fpath == "process") Record(std::to_string(GetCurrentProcessId()));
    if (fpath == "objects") Record(std::to_string(server_->Objects()));
    if (fpath == "window") ShowWizardWindow();
}

void RecordingWizard::set_form7_status(const std::string& stat) {
    Record("set_form7_status " + stat);
    flag_ = stat;
}

bool RecordingWizard::Take(const std::string& flag) {
    if (flag_ != flag) return false;
    flag_.clear();
    return true;
}

int ServeRecordingWizard() {
    RecordingWizard wizard;
    const platform::WizardServer server(wizard, [] { PostQuitMessage(0); });
    wizard.Connect(server);
    SayReady();
    SetTimer(nullptr, 0, kLookMilliseconds, nullptr);
    MSG message;
    while (server.SinceLastCall() < kPatience && GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return 0;
}

}  // namespace nqp::test
