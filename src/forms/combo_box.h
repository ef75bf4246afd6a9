#pragma once

#include <utility>
#include <vector>

#include "forms/control.h"

namespace nqp::forms {

// A list that opens from its own chosen item. Items count from 0.
class ComboBox final : public Control {
public:
    ComboBox(Form& form, const std::string& name, int id, const base::Rect& bounds,
             std::vector<std::string> items)
        : Control(form, ControlKind::ComboBox, name, id, bounds) {
        state_.items = std::move(items);
        state_.value = kNone;
    }

    static constexpr int kNone = -1;

    // Raised when a person chooses; SetListIndex does not raise it.
    base::Event<> Change;

    const std::vector<std::string>& Items() const { return state_.items; }
    int ListIndex() const { return state_.value; }
    // An index that no item has chooses none.
    void SetListIndex(int index) {
        const bool known = index >= 0 && std::cmp_less(index, state_.items.size());
        state_.value = known ? index : kNone;
        Update();
    }

private:
    void RaiseChange() override { Change(); }
};

}  // namespace nqp::forms
