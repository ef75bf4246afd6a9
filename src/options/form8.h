#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "core/file_association.h"
#include "forms/check_box.h"
#include "forms/command_button.h"
#include "forms/control_array.h"
#include "forms/form.h"
#include "forms/label.h"

namespace nqp::options {

// The program file as the system is to run it.
struct Program {
    std::filesystem::path folder;
    std::string name;  // without its extension
};

// The file-types dialog: which types the system opens with this program. What is not ticked stays
// as it is.
class Form8 final : public forms::Form {
public:
    Form8(const Program& program, core::FileAssociationFactory& associations);

    static constexpr int kTypeCount = 8;

    forms::Label Label1;
    forms::ControlArray<forms::CheckBox, kTypeCount> Check1;
    forms::CommandButton Command2;  // registers
    forms::CommandButton Command1;  // takes the registration back

private:
    void Form_Load() override;
    bool Form_KeyDown(const base::KeyEvent& key) override;
    void Command2_Click();
    void Command1_Click();

    Program program_;
    core::FileAssociationFactory& associations_;
    std::unique_ptr<core::FileAssociation> association_;
};

}  // namespace nqp::options
