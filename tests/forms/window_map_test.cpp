#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include "dialog/format_dialog.h"
#include "player.h"
#include "wizard/form3.h"

namespace nqp::test {
namespace {

const char* KindOf(const forms::Control& control) {
    switch (control.State().kind) {
        case forms::ControlKind::Label:
            return "label";
        case forms::ControlKind::Line:
            return "line";
        case forms::ControlKind::PictureBox:
            return "picture box";
        case forms::ControlKind::TextBox:
            return "text box";
        case forms::ControlKind::CommandButton:
            return "button";
        case forms::ControlKind::Frame:
            return "frame";
        case forms::ControlKind::CheckBox:
            return "check box";
        case forms::ControlKind::OptionButton:
            return "option button";
        case forms::ControlKind::ComboBox:
            return "combo box";
        case forms::ControlKind::Slider:
            return "slider";
        case forms::ControlKind::ListBox:
            return "list box";
    }
    return "";
}

bool IsDrawnOnTheFace(const forms::Control& control) {
    return control.State().kind == forms::ControlKind::Line ||
           control.State().kind == forms::ControlKind::Frame;
}

void Describe(const forms::Form& form, const char* purpose, std::ostream& map) {
    map << "\n## `nqp." << form.State().name << "`: " << purpose << "\n";
    if (form.Controls().empty()) return;
    map << "\n| id | control | kind |\n|---|---|---|\n";
    for (const forms::Control* control : form.Controls()) {
        if (IsDrawnOnTheFace(*control)) continue;
        map << "| " << control->Id() << " | `" << control->Name() << "` | " << KindOf(*control)
            << " |\n";
    }
}

std::string WindowMap(const Player& player) {
    std::ostringstream map;
    map << "# Window map\n\n"
           "How tests, scripts and assistive tools find the program's windows: by class name, and "
           "inside a\nwindow by control id. `NQP_WRITE_WINDOW_MAP=1` before the window tests "
           "writes this page anew.\n";
    Describe(player.form1, "the video window", map);
    map << "\n| id | control | kind |\n|---|---|---|\n"
           "| 101 | `MediaPlayer1` | media player, class `nqp.MediaPlayer` |\n\n"
           "The media player answers the registered window message \"nqp.MediaPlayer\"; its "
           "numbers are in\n`src/platform/engine/script_messages.h`.\n";
    Describe(player.form2, "the options", map);
    ScriptedDialogs dialogs;
    const wizard::Form3 form3({{}, dialogs, {}});
    Describe(form3, "the Quillon Wizard, in a process of its own", map);
    Describe(player.form4, "the remote control", map);
    Describe(player.form5, "the context menu", map);
    Describe(player.form6, "the play-rate dialog", map);
    const wizard::Form7 form7;
    Describe(form7, "the progress text of the wizard, never seen", map);
    Describe(player.form8, "the file types", map);
    Describe(player.insertBMPForm, "the place of the picture in a fragment", map);
    const companion::FormatDialog formatDialog;
    Describe(formatDialog, "the format of a fragment, shown by Framewright.exe", map);
    return map.str();
}

std::string ContentOf(const char* path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(WindowMap, IsThePageInTheDocumentation) {
    const Player player;
    const std::string map = WindowMap(player);
    if (std::getenv("NQP_WRITE_WINDOW_MAP") != nullptr) {
        std::ofstream(NQP_WINDOW_MAP, std::ios::binary) << map;
    }
    EXPECT_EQ(ContentOf(NQP_WINDOW_MAP), map);
}

TEST(WindowMap, GivesEveryControlOfAWindowANumberOfItsOwn) {
    const Player player;
    ScriptedDialogs dialogs;
    const wizard::Form3 form3({{}, dialogs, {}});
    const companion::FormatDialog formatDialog;
    for (const forms::Form* form : std::initializer_list<const forms::Form*>{
             &player.form1, &player.form2, &form3, &player.form4, &player.form5, &player.form6,
             &player.form8, &player.insertBMPForm, &formatDialog}) {
        std::set<int> ids;
        for (const forms::Control* control : form->Controls()) {
            if (IsDrawnOnTheFace(*control)) continue;
            EXPECT_GT(control->Id(), 100) << control->Name();
            EXPECT_TRUE(ids.insert(control->Id()).second) << control->Name();
        }
    }
}

}  // namespace
}  // namespace nqp::test
