#include "wizard/cwizard.h"

#include <utility>

namespace nqp::wizard {

void CWizard::update_numbers(const std::string& str_n1, const std::string& str_n2) {
    Form3_.Text1.SetText(str_n1);
    Form3_.Text2.SetText(str_n2);
}

bool CWizard::Fetch(bool& request) {
    return std::exchange(request, false);
}

}  // namespace nqp::wizard
