#pragma once

#include <filesystem>

#include "playlist/playlist_store.h"

namespace nqp::playlist {

inline constexpr char kPlaylistFileName[] = "playlist.cfg";
inline constexpr std::size_t kPlaylistRecordBytes = 500;
// Records 1 and 2; name and path of item i stand in the records 2i + 1 and 2i + 2.
inline constexpr int kItemCountRecord = 1;
inline constexpr int kRepeatRecord = 2;

// The list that the file in this folder holds. A file that is missing, empty or malformed is an
// empty list with repeat off; items whose records are missing or damaged are blank.
PlaylistStore LoadPlaylist(const std::filesystem::path& programFolder);

// Puts the list into the file in one step. Records of a longer list before stay behind the last
// one. An item that does not fit into a record is left out, and not counted. False when the file
// could not be written.
bool SavePlaylist(const std::filesystem::path& programFolder, const PlaylistStore& store);

}  // namespace nqp::playlist
