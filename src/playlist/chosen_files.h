#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "playlist/playlist_store.h"

namespace nqp::playlist {

// The files that the open dialog returned, in its order: one full path, or a folder and the names
// of several files in it, each ended by a NUL character and all of them by a second one. Name and
// path of an entry end with a NUL character of their own.
std::vector<Entry> FilesOfDialog(std::string_view buffer);

// The files that were dropped, in their order. A path that holds "|" counts as two.
std::vector<Entry> FilesOfDrop(std::span<const std::string> paths);

}  // namespace nqp::playlist
