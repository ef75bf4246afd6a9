#pragma once

#include "forms/form.h"

namespace nqp::wizard {

// The status window. Nobody sees it: its caption is the progress text of the running job, which
// other programs write through the wizard's automation and the wizard window reads.
class Form7 final : public forms::Form {
public:
    Form7();

private:
    void Form_Load() override;
};

}  // namespace nqp::wizard
