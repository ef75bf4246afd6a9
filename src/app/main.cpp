#include <windows.h>

#include <chrono>
#include <exception>
#include <memory>
#include <optional>

#include "app/resources.h"
#include "base/bmp_reader.h"
#include "core/command_line.h"
#include "core/main_app.h"
#include "forms/run_time_error.h"
#include "forms/win32/message_loop.h"
#include "options/form2.h"
#include "options/form8.h"
#include "platform/audio/audio_track_writer.h"
#include "platform/automation/companion_client.h"
#include "platform/automation/registration.h"
#include "platform/automation/wizard_client.h"
#include "platform/automation/wizard_server.h"
#include "platform/engine/media_engine.h"
#include "platform/file_association.h"
#include "platform/notification_icon.h"
#include "platform/process.h"
#include "platform/resource.h"
#include "platform/system_boxes.h"
#include "platform/system_clock.h"
#include "platform/system_dialogs.h"
#include "platform/system_shell.h"
#include "remote/form4.h"
#include "video/form1.h"
#include "video/form5.h"
#include "video/form6.h"
#include "wizard/cwizard.h"
#include "wizard/form3.h"
#include "wizard/insert_bmp_form.h"

namespace nqp {
namespace {

using namespace std::chrono_literals;

// The windows of the program and what stands behind them. They know each other by narrow
// interfaces only; this is where they are introduced.
class Program final : public core::StartWindows {
public:
    explicit Program(const std::string& commandLine)
        : engine_(platform::CreateMediaEngine()),
          form1_(*engine_),
          form6_(*engine_),
          form8_({platform::ProgramFolder(), platform::ProgramName()}, associations_),
          insertBMPForm_(boxes_),
          form2_({platform::ProgramFolder(), form1_, dialogs_, form8_, insertBMPForm_}),
          form4_({platform::ProgramFolder(), commandLine, form1_, form1_.med, dialogs_, tray_,
                  shell_, form2_, associations_, clock_, platform::ProgramName(), wizards_,
                  companion_, audio_, boxes_}) {
        form1_.Connect(form4_, form5_);
        form5_.Connect(form1_, form1_, form4_, form6_);
        form6_.SetOpener(form1_);
        form2_.Connect(form4_);
        form2_.SetOpener(form4_);
        insertBMPForm_.SetOpener(form2_);
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
    platform::SystemMessageBoxes boxes_;
    platform::AutomationWizards wizards_{platform::ProgramFile()};
    platform::AutomationCompanion companion_{platform::ProgramFolder() / core::kCompanionFileName};
    platform::AviAudioTrackWriter audio_;
    video::Form1 form1_;
    video::Form6 form6_;
    video::Form5 form5_;
    options::Form8 form8_;
    wizard::InsertBMPForm insertBMPForm_;
    options::Form2 form2_;
    remote::Form4 form4_;
};

// Makes the program's windows when the start turns out to be a person's.
class PersonsStart final : public core::StartWindows {
public:
    explicit PersonsStart(const std::string& commandLine) : commandLine_(commandLine) {}

    void Load() override { program_.emplace(commandLine_).Load(); }
    void Show() override { program_.emplace(commandLine_).Show(); }

private:
    std::string commandLine_;
    std::optional<Program> program_;
};

forms::Picture PictureOf(int resource) {
    auto picture = base::ReadBmp(platform::ResourceBytes(resource));
    return picture ? std::make_shared<const base::Bitmap>(*std::move(picture)) : nullptr;
}

// The process that the automation layer starts for a client. It ends when its window is closed and
// no client holds an object. One that was killed, a companion say, holds its object for ever where
// the system does not notice; the silence gives it away, the sooner when the player has ended too.
class WizardProcess {
public:
    WizardProcess() = default;
    ~WizardProcess() {
        form3_.Unload();
        forms::win32::RunPostedTasks();
    }
    WizardProcess(const WizardProcess&) = delete;
    WizardProcess& operator=(const WizardProcess&) = delete;

    void Serve() {
        const auto look = forms::CreateTimerPeer(kLookMilliseconds, [this] { EndWhenDone(); });
        forms::win32::RunMessageLoop();
    }

private:
    static constexpr int kLookMilliseconds = 250;
    static constexpr std::chrono::seconds kWaitForClient{10};
    static constexpr std::chrono::minutes kClientSilence{10};
    static constexpr std::chrono::seconds kSilenceWithoutPlayer{2};

    void EndWhenDone() {
        if (form3_.Loaded()) return owner_.Look(form3_.Handle());
        if (server_.SinceLastCall() >= Patience()) forms::win32::QuitMessageLoop();
    }

    std::chrono::milliseconds Patience() const {
        if (server_.Objects() > 0) return owner_.Gone() ? kSilenceWithoutPlayer : kClientSilence;
        return hadClient_ ? 0ms : kWaitForClient;
    }

    platform::SystemFileDialogs dialogs_;
    wizard::Form3 form3_{{platform::ProgramFolder(),
                          dialogs_,
                          {PictureOf(NQP_VIDEO_PICTURE), PictureOf(NQP_AUDIO_PICTURE),
                           PictureOf(NQP_IMAGE_PICTURE)}}};
    wizard::CWizard automation_{form3_};
    bool hadClient_ = false;
    platform::WizardOwner owner_;
    platform::WizardServer server_{automation_, [this] { hadClient_ = true; }};
};

void ReportError(const std::string& sentence, forms::Origin origin) {
    platform::WriteDebugLine(sentence);
    if (origin == forms::Origin::User) platform::ShowErrorBox(sentence);
}

int Run() {
    const platform::OleSession ole;
    forms::SetRunTimeErrorHandler(ReportError);
    const core::CommandLine line = core::WithoutAutomationSwitch(platform::ArgumentText());
    PersonsStart windows(line.text);
    const core::MainApp app(platform::ProgramFolder(), line, windows);
    if (app.Mode() == core::LaunchMode::Automation) {
        if (line.startedByAutomation) WizardProcess().Serve();
        return 0;
    }
    forms::SetLastWindowUnloaded([] { forms::win32::QuitMessageLoop(); });
    // Nobody waits for it to see the windows.
    forms::Post([] { platform::RegisterAutomation(platform::ProgramFile()); });
    return forms::win32::RunMessageLoop();
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
