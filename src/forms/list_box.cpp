#include "forms/list_box.h"

namespace nqp::forms {

ListPeer* ListBox::Peer() const {
    return PeerOnScreen() != nullptr ? PeerOnScreen()->AsList() : nullptr;
}

void ListBox::LinesChanged(std::span<const int> selected) {
    ++state_.linesVersion;
    Update();
    if (ListPeer* peer = Peer()) peer->SelectLines(selected);
}

std::vector<int> ListBox::SelectedLines() const {
    const ListPeer* peer = Peer();
    return peer != nullptr ? peer->SelectedLines() : std::vector<int>{};
}

int ListBox::ListIndex() const {
    const std::vector<int> selected = SelectedLines();
    if (selected.empty()) return -1;
    const int focused = Peer()->FocusedLine();
    return std::binary_search(selected.begin(), selected.end(), focused) ? focused
                                                                         : selected.front();
}

void ListBox::Select(int line) {
    if (ListPeer* peer = Peer()) {
        peer->SelectLines(std::span(&line, 1));
        peer->FocusLine(line);
    }
}

}  // namespace nqp::forms
