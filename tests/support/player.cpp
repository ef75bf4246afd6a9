#include "player.h"

#include "core/settings_file.h"

namespace nqp::test {

Player::Player(const std::string& commandLine)
    : form4({folder.Path(), commandLine, form1, form1.med, dialogs, tray, shell}),
      commandLine_(commandLine) {
    form1.Connect(form4, form5);
    form5.Connect(form1, form1, form4, form6);
    form6.SetOpener(form1);
    folder.Put(core::kStartUpMarkerName, "0");
}

Player::~Player() {
    form6.Unload();
    form5.Unload();
    form4.Unload();
    form1.Unload();
    RunMessages();
}

core::LaunchMode Player::Start() {
    const core::MainApp app(folder.Path(), commandLine_, *this);
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

void Player::PutSetting(int record, const std::string& text) const {
    core::SettingsFile file(folder.Path());
    file.SetText(static_cast<core::SettingsRecord>(record), text);
    file.Commit();
}

std::string Player::Setting(int record) const {
    return core::SettingsFile(folder.Path()).Text(static_cast<core::SettingsRecord>(record));
}

}  // namespace nqp::test
