#include <windows.h>

#include <exception>

#include "core/command_line.h"
#include "core/main_app.h"
#include "forms/run_time_error.h"
#include "forms/win32/message_loop.h"
#include "options/form2.h"
#include "options/form8.h"
#include "platform/engine/media_engine.h"
#include "platform/file_association.h"
#include "platform/notification_icon.h"
#include "platform/process.h"
#include "platform/system_clock.h"
#include "platform/system_dialogs.h"
#include "platform/system_shell.h"
#include "remote/form4.h"
#include "video/form1.h"
#include "video/form5.h"
#include "video/form6.h"

namespace nqp {
namespace {

// How long a process that was started for an automation client waits for it to come.
constexpr int kWaitForClientMilliseconds = 10000;

// The windows of the program and what stands behind them. They know each other by narrow
// interfaces only; this is where they are introduced.
class Program final : public core::StartWindows {
public:
    explicit Program(const std::string& commandLine)
        : engine_(platform::CreateMediaEngine()),
          form1_(*engine_),
          form6_(*engine_),
          form8_({platform::ProgramFolder(), platform::ProgramName()}, associations_),
          form2_({platform::ProgramFolder(), form1_, dialogs_, form8_}),
          form4_({platform::ProgramFolder(), commandLine, form1_, form1_.med, dialogs_, tray_,
                  shell_, form2_, associations_, clock_, platform::ProgramName()}) {
        form1_.Connect(form4_, form5_);
        form5_.Connect(form1_, form1_, form4_, form6_);
        form6_.SetOpener(form1_);
        form2_.Connect(form4_);
        form2_.SetOpener(form4_);
    }

    ~Program() {
        form5_.CloseAll();
        form4_.Unload();
        form1_.Unload();
        forms::win32::RunPostedTasks();
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void Load() override {
        form1_.Load();
        form4_.Load();
    }

    void Show() override {
        form1_.Show();
        form4_.Show();
    }

private:
    std::unique_ptr<core::MediaEngine> engine_;
    platform::SystemFileDialogs dialogs_;
    platform::NotificationIcon tray_;
    platform::SystemShell shell_;
    platform::SystemFileAssociations associations_;
    platform::SystemClock clock_;
    video::Form1 form1_;
    video::Form6 form6_;
    video::Form5 form5_;
    options::Form8 form8_;
    options::Form2 form2_;
    remote::Form4 form4_;
};

void ReportError(const std::string& sentence, forms::Origin origin) {
    platform::WriteDebugLine(sentence);
    if (origin == forms::Origin::User) platform::ShowErrorBox(sentence);
}

// The client that had this process started has not come by then, or has never existed.
void ServeAutomation() {
    const auto patience =
        forms::CreateTimerPeer(kWaitForClientMilliseconds, [] { forms::win32::QuitMessageLoop(); });
    forms::win32::RunMessageLoop();
}

int Run() {
    const platform::OleSession ole;
    forms::SetRunTimeErrorHandler(ReportError);
    forms::SetLastWindowUnloaded([] { forms::win32::QuitMessageLoop(); });
    const core::CommandLine line = core::WithoutAutomationSwitch(platform::ArgumentText());
    Program program(line.text);
    const core::MainApp app(platform::ProgramFolder(), line.text, program);
    if (app.Mode() != core::LaunchMode::Automation) return forms::win32::RunMessageLoop();
    if (line.startedByAutomation) ServeAutomation();
    return 0;
}

}  // namespace
}  // namespace nqp

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    try {
        return nqp::Run();
    } catch (const std::exception& error) {
        nqp::platform::WriteDebugLine(error.what());
        return 1;
    }
}
