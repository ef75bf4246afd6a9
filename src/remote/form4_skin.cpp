#include "remote/form4.h"
#include "remote/skin_package.h"

// The loader of skins.
namespace nqp::remote {

void Form4::goskin() {
    const core::SettingsFile settings(context_.programFolder);
    const SkinPackage skin(context_.programFolder, settings.Text(core::kSkinName));
    LoadSkinPictures(skin);
    const SkinColors colors(skin);
    if (!colors.Empty()) ApplySkinColors(colors);
}

void Form4::LoadSkinPictures(const SkinPackage& skin) {
    if (const auto background = skin.LoadPicture("backgrnd.bmp")) SetPicture(background);
    const std::pair<const char*, forms::PictureBox&> dresses[] = {
        {"button1.bmp", Picture2},   {"button2.bmp", Picture3},    {"button3.bmp", Picture4},
        {"button4.bmp", Picture6},   {"xbutton1.bmp", Picture7},   {"xbutton2.bmp", Picture8},
        {"xbutton3.bmp", Picture9},  {"xbutton4.bmp", Picture11},  {"position.bmp", Picture12},
        {"volume.bmp", Picture13},   {"options.bmp", Picture10},   {"help.bmp", Picture14},
        {"playlist.bmp", Picture15}, {"hideremote.bmp", Picture5}, {"hideall.bmp", Picture16},
        {"exit.bmp", Picture1},      {"resize.bmp", Picture17},    {"resize.bmp", Picture18},
    };
    for (const auto& [file, box] : dresses) {
        if (const auto picture = skin.LoadPicture(file)) box.SetPicture(picture);
    }
}

// Record by record, so that those before a damaged one stay applied.
void Form4::ApplySkinColors(const SkinColors& colors) {
    const forms::Color positionLine = colors.Read(kPositionLineColor);
    for (forms::Line* line : {&Line12, &Line11, &Line9})
        line->SetBorderColor(positionLine);
    const forms::Color volumeLine = colors.Read(kVolumeLineColor);
    for (forms::Line* line : {&Line13, &Line10})
        line->SetBorderColor(volumeLine);
    Label1.SetForeColor(colors.Read(kTitleTextColor));
    Label1.SetBackColor(colors.Read(kTitleBackColor));
    const forms::Color buttonBack = colors.Read(kMarkButtonBackColor);
    for (forms::CommandButton* button : {&Command1, &Command2})
        button->SetBackColor(buttonBack);
    const forms::Color buttonText = colors.Read(kMarkButtonTextColor);
    for (forms::CommandButton* button : {&Command1, &Command2})
        button->SetForeColor(buttonText);
    Label2.SetForeColor(colors.Read(kTimeTextColor));
    Label2.SetBackColor(colors.Read(kTimeBackColor));
    const forms::Color fieldText = colors.Read(kFieldTextColor);
    for (forms::TextBox* field : BoundFields())
        field->SetForeColor(fieldText);
    for (forms::Label* colon : Colons())
        colon->SetForeColor(fieldText);
    const forms::Color fieldBack = colors.Read(kFieldBackColor);
    for (forms::TextBox* field : BoundFields())
        field->SetBackColor(fieldBack);
    for (forms::Label* colon : Colons())
        colon->SetBackColor(fieldBack);
    List1.SetBackColor(colors.Read(kListBackColor));
    List1.SetForeColor(colors.Read(kListTextColor));
}

}  // namespace nqp::remote
