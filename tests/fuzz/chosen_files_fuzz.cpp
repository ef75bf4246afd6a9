#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "playlist/chosen_files.h"

// Any bytes as the open dialog's buffer, and as the paths of a drop with a line for each.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace nqp::playlist;
    const std::string text(reinterpret_cast<const char*>(data), size);
    for (const Entry& entry : FilesOfDialog(text)) {
        if (entry.name.back() != '\0' || entry.path.back() != '\0') std::abort();
        if (!entry.path.ends_with(entry.name)) std::abort();
    }
    std::vector<std::string> paths(1);
    for (const char letter : text) {
        if (letter == '\n') {
            paths.emplace_back();
        } else {
            paths.back() += letter;
        }
    }
    const auto bars = static_cast<std::size_t>(std::count(text.begin(), text.end(), '|'));
    const std::vector<Entry> dropped = FilesOfDrop(paths);
    if (dropped.size() != paths.size() + bars) std::abort();
    for (const Entry& entry : dropped) {
        if (!entry.path.ends_with(entry.name)) std::abort();
        if (entry.name.find('\\') != std::string::npos) std::abort();
    }
    PlaylistStore store;
    store.InsertEach(1, dropped);
    if (store.playlist_count() != static_cast<int>(dropped.size())) std::abort();
    return 0;
}
