#pragma once

#include <algorithm>
#include <span>
#include <vector>

#include "forms/control.h"

namespace nqp::forms {

// A list of lines of text, of which a person selects as many as wanted, or one. The lines are asked
// for as they come into sight, so a list of any length is quick. Lines count from 0. A list that is
// not on the screen has no selection.
class ListBox final : public Control {
public:
    ListBox(Form& form, const std::string& name, int id, const base::Rect& bounds)
        : Control(form, ControlKind::ListBox, name, id, bounds) {}

    // One line at a time can be selected; to be called before the form is loaded.
    void SelectOne() { state_.multiSelect = false; }
    // The lines outlive the list box.
    void SetLines(const ListLines& lines) { state_.lines = &lines; }
    // The lines are others now, with the selection that is given.
    void LinesChanged(std::span<const int> selected = {});
    int ListCount() const { return state_.lines != nullptr ? state_.lines->Count() : 0; }

    // The line the person came to last when it is selected, else the first selected one; -1 for
    // none.
    int ListIndex() const;
    // Ascending.
    std::vector<int> SelectedLines() const;
    // This line and no other, brought into sight.
    void Select(int line);

private:
    ListPeer* Peer() const;
};

}  // namespace nqp::forms
