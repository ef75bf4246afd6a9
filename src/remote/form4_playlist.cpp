#include <vector>

#include "base/file.h"
#include "base/text.h"
#include "playlist/chosen_files.h"
#include "playlist/playlist_file.h"
#include "remote/form4.h"

// The list of files: its store, its menu, dropping, playing and advancing.
namespace nqp::remote {
namespace {

// Where the menu opens when a key asks for it: from the upper left corner of the list, twips.
constexpr base::Twips kMenuInset = 150;

}  // namespace

void Form4::load_playlist() {
    playlist_readable_ = base::CanRead(context_.programFolder / playlist::kPlaylistFileName);
    playlist_ = playlist::LoadPlaylist(context_.programFolder);
    List1.LinesChanged();
    repeat.SetChecked(playlist_.repeat_on);
}

// A list that another program kept from being read is not replaced by an empty one.
void Form4::save_playlist() {
    if (!playlist_readable_ && playlist_.playlist_count() == 0) return;
    playlist::SavePlaylist(context_.programFolder, playlist_);
}

// Behind the selected line, each file in front of the one before it. What is selected stays so.
void Form4::AddToPlaylist(std::span<const playlist::Entry> entries) {
    const int line = List1.ListIndex();
    std::vector<int> selected = List1.SelectedLines();
    for (int& each : selected)
        each += each > line ? static_cast<int>(entries.size()) : 0;
    playlist_.InsertEach(line + 2, entries);
    List1.LinesChanged(selected);
}

void Form4::add_files_Click() {
    const std::string buffer =
        context_.dialogs.OpenFiles({.owner = Handle(),
                                    .title = "Nuvex Quillon Player - Add file(s) to playlist...",
                                    .filter = {"All Media Types", "*.*"}});
    if (Loaded()) AddToPlaylist(playlist::FilesOfDialog(buffer));
}

void Form4::Form_OLEDragDrop(const std::vector<std::string>& paths) {
    AddToPlaylist(playlist::FilesOfDrop(paths));
}

void Form4::List1_OLEDragDrop(const std::vector<std::string>& paths) {
    Form_OLEDragDrop(paths);
}

void Form4::clear_items_Click() {
    playlist_.RemoveLines(List1.SelectedLines());
    List1.LinesChanged();
}

void Form4::clear_playlist_Click() {
    playlist_.clear();
    List1.LinesChanged();
}

void Form4::repeat_Click() {
    playlist_.repeat_on = !playlist_.repeat_on;
    repeat.SetChecked(playlist_.repeat_on);
}

void Form4::List1_MouseUp(const base::MouseEvent& mouse) {
    if (mouse.Button == base::kRightButton) {
        PopupMenuAt(men, {List1.Left() + mouse.X, List1.Top() + mouse.Y});
    }
}

void Form4::List1_KeyDown(const base::KeyEvent& key) {
    switch (key.KeyCode) {
        case base::kKeyEnter:
            return List1_DblClick();
        case base::kKeyDelete:
            return clear_items_Click();
        case base::kKeyMenu:
        case base::kKeyF10:
            return PopupMenuAt(men, {List1.Left() + kMenuInset, List1.Top() + kMenuInset});
        default:
            return;
    }
}

void Form4::List1_DblClick() {
    const int line = List1.ListIndex();
    if (line < 0) return;
    current_item_ = line + 1;
    core::MediaEngine& engine = Form1_.MediaPlayer1();
    engine.SetVisible(false);
    file_path_ = base::UpToNul(playlist_.playlist_paths(*current_item_));
    const std::string name = base::UpToNul(playlist_.playlist_names(*current_item_));
    engine.Open(file_path_);
    time_.StartClip();
    RewindPositionKnob();
    ShowTitle(name);
    ResetFragmentBounds();
    transport_.bPause = false;
    transport_.ready_to_play = true;
    PlayWhatWasOpened();
}

// Also where an opened file does not start by itself.
void Form4::PlayWhatWasOpened() {
    core::MediaEngine& engine = Form1_.MediaPlayer1();
    transport_.stopped = false;
    if (engine.Readiness() == 0) return;
    transport_.loading = true;
    engine.SetVisible(true);
    if (engine.State() != core::PlayState::Playing) engine.Play();
}

// A list that was shortened meanwhile may end before the item behind the current one.
void Form4::next_playlist_item() {
    if (!current_item_) return;
    const bool wasLast = *current_item_ == playlist_.playlist_count();
    if (wasLast && !repeat.Checked()) return;
    const int line = wasLast ? 0 : *current_item_;
    if (line >= playlist_.playlist_count()) return;
    List1.Select(line);
    List1_DblClick();
}

}  // namespace nqp::remote
