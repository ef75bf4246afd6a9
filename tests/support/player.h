#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/file.h"
#include "core/main_app.h"
#include "fragment_tools.h"
#include "options/form2.h"
#include "options/form8.h"
#include "remote/form4.h"
#include "scripted_engine.h"
#include "temp_folder.h"
#include "video/form1.h"
#include "video/form5.h"
#include "video/form6.h"
#include "window_driver.h"
#include "wizard/insert_bmp_form.h"

namespace nqp::test {

class ScriptedDialogs final : public core::FileDialogs {
public:
    std::optional<std::string> OpenFile(const core::OpenFileRequest& request) override {
        lastRequest = request;
        if (whenAsked) whenAsked();
        return answer;
    }

    std::string OpenFiles(const core::OpenFileRequest& request) override {
        lastRequest = request;
        if (whenAsked) whenAsked();
        return severalAnswer;
    }

    std::optional<std::string> SaveFile(const core::SaveFileRequest& request) override {
        lastSaveRequest = request;
        if (whenAsked) whenAsked();
        return saveAnswer;
    }

    std::optional<std::string> saveAnswer;  // the whole buffer; nothing: the person cancels
    core::SaveFileRequest lastSaveRequest;
    std::optional<std::string> answer;  // nothing: the person cancels
    std::string severalAnswer;          // what the dialog leaves in its buffer; empty: cancelled
    std::function<void()> whenAsked;
    core::OpenFileRequest lastRequest;
};

class RecordingTray final : public core::TrayIcon {
public:
    bool SetTrayIcon(core::TrayMessage message, base::NativeWindow,
                     const std::string& tip) override {
        calls.push_back((message == core::TrayMessage::Add ? "Add " : "Delete ") + tip);
        return true;
    }

    std::vector<std::string> calls;
};

class RecordingShell final : public core::Shell {
public:
    void Open(const std::filesystem::path& document) override {
        opened.push_back(base::Utf8FromPath(document));
    }

    std::vector<std::string> opened;
};

// Keeps what was registered, in the order of the calls.
class RecordingAssociations final : public core::FileAssociationFactory {
public:
    std::unique_ptr<core::FileAssociation> Create() override;

    std::vector<std::string> calls;
    std::string refused;  // an extension whose registration fails
    int created = 0;
};

class SetClock final : public core::Clock {
public:
    core::LocalTime Now() const override { return now; }
    std::chrono::steady_clock::time_point Steady() const override {
        return steady += passesAtEachLook;
    }

    core::LocalTime now{.month = 6, .day = 2, .hour = 12, .minute = 34};
    mutable std::chrono::steady_clock::time_point steady{std::chrono::hours(1)};
    std::chrono::seconds passesAtEachLook{0};
};

// The windows of the program over a scripted engine, in a program folder of their own.
class Player final : public core::StartWindows {
public:
    explicit Player(const std::string& commandLine = {});
    ~Player();

    // As the entry routine does: the marker in the folder decides. Starts as a person's start does
    // unless the test put another marker there.
    core::LaunchMode Start();

    void Load() override;
    void Show() override;

    // Opens the options from the remote, acts in them, and accepts or cancels; not when the act
    // has already closed them.
    void ChangeOptions(const std::function<void()>& act = {});
    void CancelOptions(const std::function<void()>& act = {});

    // One record of "options.cfg", to be written before the start or read after the end.
    void PutSetting(int record, const std::string& text) const;
    std::string Setting(int record) const;

    TempFolder folder;
    ScriptedEngine engine;
    ScriptedDialogs dialogs;
    RecordingTray tray;
    RecordingShell shell;
    RecordingAssociations associations;
    SetClock clock;
    video::Form1 form1{engine};
    video::Form6 form6{engine};
    video::Form5 form5;
    options::Form8 form8{{"C:\\My Player", "nqp"}, associations};
    ScriptedBoxes boxes;
    ScriptedWizards wizards;
    ScriptedCompanion companion;
    ScriptedAudioWriter audio;
    wizard::InsertBMPForm insertBMPForm{boxes};
    options::Form2 form2{{folder.Path(), form1, dialogs, form8, insertBMPForm}};
    remote::Form4 form4;

private:
    std::string commandLine_;
};

}  // namespace nqp::test
