#include <windows.h>

#include <shellapi.h>

#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "base/file.h"
#include "command/command_line.h"
#include "core/command_line.h"
#include "dialog/format_dialog.h"
#include "forms/run_time_error.h"
#include "forms/win32/message_loop.h"
#include "forms/win32/winapi/text.h"
#include "platform/automation/registration.h"
#include "platform/process.h"
#include "server/cut_work.h"
#include "server/library_cutter.h"
#include "server/win32/error_box.h"
#include "server/win32/format_question.h"
#include "server/win32/job_server.h"
#include "server/win32/wizard_contact.h"
#include "windows_console.h"

namespace nqp::companion {
namespace {

// The format dialog for as long as the windows of it may be in use.
class Dialog {
public:
    Dialog() = default;
    ~Dialog() {
        form_.Unload();
        forms::win32::RunPostedTasks();
    }
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;

    FormatDialog& Form() { return form_; }

private:
    FormatDialog form_;
};

void ReportError(const std::string& sentence, forms::Origin) {
    platform::WriteDebugLine(sentence);
}

int Serve() {
    const platform::OleSession ole;
    Dialog dialog;
    WindowThread windows;
    DialogQuestion question(dialog.Form(), windows);
    LibraryCutter cutter;
    CutWork work(cutter, question, FindWizard, platform::ProgramFolder());
    JobServer(work, windows).Serve();
    return 0;
}

// What is asked before each video fragment can be asked again from here.
int ShowSettings() {
    const std::filesystem::path folder = platform::ProgramFolder();
    Dialog dialog;
    const auto choice = dialog.Form().AskForSettings(ReadFormatChoice(folder), AreaForDialog());
    if (!choice || WriteFormatChoice(folder, *choice)) return 0;
    ShowErrorBox("The choice could not be saved in " + base::Utf8FromPath(folder) + ".");
    return 1;
}

std::vector<std::string> Arguments() {
    struct Free {
        void operator()(LPWSTR* texts) const { LocalFree(texts); }
    };
    int count = 0;
    const std::unique_ptr<LPWSTR, Free> texts(CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::string> arguments;
    for (int i = 1; texts && i < count; ++i)
        arguments.push_back(winapi::Utf8(texts.get()[i]));
    return arguments;
}

int Register(CommandConsole& console) {
    if (!platform::RegisterCompanion(platform::ProgramFile())) {
        console.Err("The system does not show the registration of Framewright.\n");
        return kExitFailed;
    }
    console.Out("Framewright is registered.\n");
    return kExitDone;
}

int Unregister(CommandConsole& console) {
    platform::UnregisterCompanion(platform::ProgramFile());
    console.Out("Framewright is not registered any more.\n");
    return kExitDone;
}

int RunCommand(const std::vector<std::string>& arguments) {
    WindowsConsole console;
    try {
        if (arguments == std::vector<std::string>{"register"}) return Register(console);
        if (arguments == std::vector<std::string>{"unregister"}) return Unregister(console);
    } catch (const std::exception& error) {
        console.Err(std::string("The registration could not be changed: ") + error.what() + "\n");
        return kExitFailed;
    }
    return RunCommandLine(arguments, console);
}

int Run() {
    forms::SetRunTimeErrorHandler(ReportError);
    if (core::WithoutAutomationSwitch(platform::ArgumentText()).startedByAutomation) return Serve();
    const std::vector<std::string> arguments = Arguments();
    return arguments.empty() ? ShowSettings() : RunCommand(arguments);
}

}  // namespace
}  // namespace nqp::companion

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    try {
        return nqp::companion::Run();
    } catch (const std::exception& error) {
        nqp::platform::WriteDebugLine(error.what());
        return 1;
    }
}
