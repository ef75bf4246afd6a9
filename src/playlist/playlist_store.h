#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace nqp::playlist {

// A file in the list. Those that were chosen in the dialog end both texts with one NUL character,
// which is shown nowhere and saved with them.
struct Entry {
    std::string name;  // behind the last backslash of the path
    std::string path;
    bool operator==(const Entry&) const = default;
};

// The items of the playlist in memory. Positions count from 1; item i is line i - 1 of the list
// box. The same file may stand in it many times.
class PlaylistStore {
public:
    bool repeat_on = false;  // the first item follows the last

    std::int32_t playlist_count() const { return playlist_count_; }
    // The position is 1 to playlist_count().
    const std::string& playlist_names(std::int32_t position) const;
    const std::string& playlist_paths(std::int32_t position) const;
    void Fill(std::int32_t position, const Entry& entry);

    // Opens a slot: what stood there and behind moves up by one. The slot keeps its old texts until
    // it is filled. The position is 1 to playlist_count() + 1.
    void insert_entry(std::int32_t position);
    // Closes a slot: what stood behind it moves down by one. The position is 1 to playlist_count().
    void remove_entry(std::int32_t position);
    void clear();

    // As many times insert_entry and Fill at the same position: the later files stand in front of
    // the earlier ones. Takes as long as one insertion.
    void InsertEach(std::int32_t position, std::span<const Entry> entries);
    void Reserve(std::int32_t items);
    void Append(Entry entry);
    // As remove_entry for each of these lines, which count from 0 and ascend. Takes as long as one
    // removal.
    void RemoveLines(std::span<const std::int32_t> lines);

private:
    void Redimension();

    // Index 0 is never used.
    std::vector<std::string> playlist_names_ = {{}};
    std::vector<std::string> playlist_paths_ = {{}};
    std::int32_t playlist_count_ = 0;
};

}  // namespace nqp::playlist
