#include "playlist/playlist_store.h"

#include <algorithm>
#include <utility>

namespace nqp::playlist {
namespace {

std::size_t Index(std::int32_t position) {
    return static_cast<std::size_t>(position);
}

void OpenSlot(std::vector<std::string>& texts, std::size_t position) {
    texts.insert(texts.begin() + static_cast<std::ptrdiff_t>(position), texts[position]);
}

void InsertReversed(std::vector<std::string>& texts, std::size_t position,
                    std::vector<std::string> added) {
    std::reverse(added.begin(), added.end());
    texts.insert(texts.begin() + static_cast<std::ptrdiff_t>(position),
                 std::make_move_iterator(added.begin()), std::make_move_iterator(added.end()));
}

void RemoveSlots(std::vector<std::string>& texts, std::span<const std::int32_t> lines) {
    std::size_t kept = Index(lines.front()) + 1;
    auto removed = lines.begin();
    for (std::size_t slot = kept; slot < texts.size(); ++slot) {
        if (removed != lines.end() && slot == Index(*removed) + 1) {
            ++removed;
        } else {
            texts[kept++] = std::move(texts[slot]);
        }
    }
    texts.resize(kept);
}

}  // namespace

const std::string& PlaylistStore::playlist_names(std::int32_t position) const {
    return playlist_names_[Index(position)];
}

const std::string& PlaylistStore::playlist_paths(std::int32_t position) const {
    return playlist_paths_[Index(position)];
}

void PlaylistStore::Fill(std::int32_t position, const Entry& entry) {
    playlist_names_[Index(position)] = entry.name;
    playlist_paths_[Index(position)] = entry.path;
}

// After a clear the paths are more than the names until here.
void PlaylistStore::Redimension() {
    playlist_names_.resize(Index(playlist_count_) + 1);
    playlist_paths_.resize(Index(playlist_count_) + 1);
}

void PlaylistStore::insert_entry(std::int32_t position) {
    const bool last = position == playlist_count_ + 1;
    if (!last) {
        OpenSlot(playlist_names_, Index(position));
        OpenSlot(playlist_paths_, Index(position));
    }
    ++playlist_count_;
    Redimension();
}

void PlaylistStore::remove_entry(std::int32_t position) {
    playlist_names_.erase(playlist_names_.begin() + position);
    playlist_paths_.erase(playlist_paths_.begin() + position);
    --playlist_count_;
    Redimension();
}

// The paths keep what they hold; nothing reads it any more.
void PlaylistStore::clear() {
    playlist_names_.resize(1);
    playlist_count_ = 0;
}

void PlaylistStore::InsertEach(std::int32_t position, std::span<const Entry> entries) {
    Redimension();
    std::vector<std::string> names;
    std::vector<std::string> paths;
    for (const Entry& entry : entries) {
        names.push_back(entry.name);
        paths.push_back(entry.path);
    }
    InsertReversed(playlist_names_, Index(position), std::move(names));
    InsertReversed(playlist_paths_, Index(position), std::move(paths));
    playlist_count_ += static_cast<std::int32_t>(entries.size());
}

void PlaylistStore::Reserve(std::int32_t items) {
    playlist_names_.reserve(Index(items) + 1);
    playlist_paths_.reserve(Index(items) + 1);
}

void PlaylistStore::Append(Entry entry) {
    Redimension();
    playlist_names_.push_back(std::move(entry.name));
    playlist_paths_.push_back(std::move(entry.path));
    ++playlist_count_;
}

void PlaylistStore::RemoveLines(std::span<const std::int32_t> lines) {
    if (lines.empty()) return;
    RemoveSlots(playlist_names_, lines);
    RemoveSlots(playlist_paths_, lines);
    playlist_count_ -= static_cast<std::int32_t>(lines.size());
}

}  // namespace nqp::playlist
