#include "options/form8.h"

#include <array>

#include "core/program_folder.h"
#include "forms/dialog_look.h"

namespace nqp::options {
namespace {

struct FileType {
    const char* caption;
    const char* extension;
};

constexpr std::array<FileType, Form8::kTypeCount> kTypes = {{{"ASF", ".asf"},
                                                             {"ASX", ".asx"},
                                                             {"AU", ".au"},
                                                             {"AVI", ".avi"},
                                                             {"MP3", ".mp3"},
                                                             {"WAV", ".wav"},
                                                             {"MPEG", ".mpeg"},
                                                             {"WMV", ".wmv"}}};

const FileType& TypeOf(int index) {
    return kTypes[static_cast<std::size_t>(index)];
}

// Twips.
constexpr base::Size kClient{4800, 3540};
constexpr base::Twips kMargin = 300;
constexpr base::Rect kPromptBounds{kMargin, 240, kClient.width - 2 * kMargin, 300};
constexpr int kRows = 4;
constexpr base::Twips kFirstRow = 690;
constexpr base::Twips kRowPitch = 450;
constexpr base::Twips kColumnPitch = 2100;
constexpr base::Size kBox{1800, 300};
constexpr base::Size kButton{1650, forms::look::kButtonHeight};
constexpr base::Twips kButtonTop = kClient.height - kMargin - kButton.height;

// Down the left column first.
base::Rect BoxBounds(int index) {
    return {kMargin + kColumnPitch * static_cast<base::Twips>(index / kRows),
            kFirstRow + kRowPitch * static_cast<base::Twips>(index % kRows), kBox.width,
            kBox.height};
}

}  // namespace

Form8::Form8(const Program& program, core::FileAssociationFactory& associations)
    : forms::Form({.name = "Form8",
                   .caption = "File types",
                   .frame = forms::FrameStyle::Dialog,
                   .bounds = {0, 0, kClient.width, kClient.height},
                   .backColor = forms::look::kPaper,
                   .topmost = true}),
      Label1(*this, "Label1", 101, kPromptBounds, "Open these types with this player:"),
      Check1(*this, "Check1", 111, BoxBounds),
      Command2(*this, "Command2", 122,
               {kClient.width - kMargin - 2 * kButton.width - forms::look::kButtonGap, kButtonTop,
                kButton.width, kButton.height},
               "&Register", true),
      Command1(*this, "Command1", 121,
               {kClient.width - kMargin - kButton.width, kButtonTop, kButton.width, kButton.height},
               "&UnRegister"),
      program_(program),
      associations_(associations) {
    Label1.SetColors(forms::look::kInk, forms::look::kPaper);
    for (int index = 0; index < kTypeCount; ++index) {
        Check1[index].SetCaption(TypeOf(index).caption);
        Check1[index].SetColors(forms::look::kInk, forms::look::kPaper);
    }
    Command1.Click.calls<&Form8::Command1_Click>(this);
    Command2.Click.calls<&Form8::Command2_Click>(this);
}

// What was ticked an earlier time was for then.
void Form8::Form_Load() {
    for (int index = 0; index < kTypeCount; ++index)
        Check1[index].SetChecked(false);
}

bool Form8::Form_KeyDown(const base::KeyEvent& key) {
    if (key.KeyCode != base::kKeyEscape) return false;
    Unload();
    return true;
}

void Form8::Command2_Click() {
    association_ = associations_.Create();
    for (int index = 0; index < kTypeCount; ++index) {
        if (!Check1[index].Checked()) continue;
        association_->SetExtension(TypeOf(index).extension);
        association_->SetCommand(core::ProgramCommand(program_.folder, program_.name) + " %L");
        association_->Register();
    }
}

void Form8::Command1_Click() {
    association_ = associations_.Create();
    for (int index = 0; index < kTypeCount; ++index) {
        if (!Check1[index].Checked()) continue;
        association_->SetExtension(TypeOf(index).extension);
        association_->UnRegister();
    }
}

}  // namespace nqp::options
