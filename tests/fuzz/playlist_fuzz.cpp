#include <cstdint>
#include <cstdlib>
#include <string>

#include "playlist/playlist_file.h"
#include "temp_folder.h"

// Any bytes as "playlist.cfg": what was loaded is saved and loads as the same list.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace nqp::playlist;
    static const nqp::test::TempFolder folder;
    folder.Put(kPlaylistFileName, {reinterpret_cast<const char*>(data), size});
    const PlaylistStore loaded = LoadPlaylist(folder.Path());
    if (loaded.playlist_count() > 1000) return 0;  // nearly all of them blank
    if (!SavePlaylist(folder.Path(), loaded)) std::abort();
    const PlaylistStore again = LoadPlaylist(folder.Path());
    if (again.playlist_count() != loaded.playlist_count()) std::abort();
    if (again.repeat_on != loaded.repeat_on) std::abort();
    for (int item = 1; item <= loaded.playlist_count(); ++item) {
        if (again.playlist_names(item) != loaded.playlist_names(item)) std::abort();
        if (again.playlist_paths(item) != loaded.playlist_paths(item)) std::abort();
    }
    return 0;
}
