#include "player.h"

#include "core/settings_file.h"
#include "forms/run_time_error.h"

namespace nqp::test {

namespace {

class RecordingAssociation final : public core::FileAssociation {
public:
    explicit RecordingAssociation(RecordingAssociations& all) : all_(all) {}

    void SetExtension(const std::string& extension) override { extension_ = extension; }
    void SetCommand(const std::string& commandLine) override { command_ = commandLine; }
    void Register() override {
        if (extension_ == all_.refused) throw forms::RunTimeError(extension_ + " is refused.");
        all_.calls.push_back("Register " + extension_ + " " + command_);
    }
    void UnRegister() override { all_.calls.push_back("UnRegister " + extension_); }
    void RegisterStart(const std::string& commandLine) override {
        all_.calls.push_back("RegisterStart " + commandLine);
    }
    void UnRegisterStart() override { all_.calls.emplace_back("UnRegisterStart"); }

private:
    RecordingAssociations& all_;
    std::string extension_;
    std::string command_;
};

}  // namespace

std::unique_ptr<core::FileAssociation> RecordingAssociations::Create() {
    ++created;
    return std::make_unique<RecordingAssociation>(*this);
}

Player::Player(const std::string& commandLine)
    : form4({folder.Path(), commandLine, form1, form1.med, dialogs, tray, shell, form2,
             associations, clock, "nqp", wizards, companion, audio, boxes}),
      commandLine_(commandLine) {
    form1.Connect(form4, form5);
    form5.Connect(form1, form1, form4, form6);
    form6.SetOpener(form1);
    form2.Connect(form4);
    form2.SetOpener(form4);
    insertBMPForm.SetOpener(form2);
    folder.Put(core::kStartUpMarkerName, "0");
}

Player::~Player() {
    form6.Unload();
    form5.Unload();
    insertBMPForm.Unload();
    form2.Unload();
    form8.Unload();
    form4.Unload();
    form1.Unload();
    RunMessages();
}

core::LaunchMode Player::Start() {
    const core::MainApp app(folder.Path(), {commandLine_}, *this);
    RunMessages();
    return app.Mode();
}

void Player::Load() {
    form1.Load();
    form4.Load();
}

void Player::Show() {
    form1.Show();
    form4.Show();
}

void Player::ChangeOptions(const std::function<void()>& act) {
    OnNextModal([this, act] {
        if (act) act();
        if (form2.Loaded()) ClickOn(form2.Command2);
    });
    form4.Picture10_Click();
    RunMessages();
}

void Player::CancelOptions(const std::function<void()>& act) {
    OnNextModal([this, act] {
        if (act) act();
        if (form2.Loaded()) ClickOn(form2.Command1);
    });
    form4.Picture10_Click();
    RunMessages();
}

void Player::PutSetting(int record, const std::string& text) const {
    core::SettingsFile file(folder.Path());
    file.SetText(static_cast<core::SettingsRecord>(record), text);
    file.Commit();
}

std::string Player::Setting(int record) const {
    return core::SettingsFile(folder.Path()).Text(static_cast<core::SettingsRecord>(record));
}

}  // namespace nqp::test
