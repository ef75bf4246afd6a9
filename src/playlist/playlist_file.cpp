#include "playlist/playlist_file.h"

#include <string>
#include <string_view>
#include <vector>

#include "base/record_file.h"
#include "base/text.h"

namespace nqp::playlist {
namespace {

constexpr char kOff[] = "0";
constexpr char kOn[] = "1";
// A record holds two bytes of length beside its text.
constexpr std::size_t kLongestText = kPlaylistRecordBytes - 2;
// A count may be above what the file holds, the rest is blank; one far above is no count.
constexpr std::size_t kMostBlankItems = 100'000;

constexpr int NameRecord(std::int32_t item) {
    return 2 * item + 1;
}
constexpr int PathRecord(std::int32_t item) {
    return 2 * item + 2;
}

bool Plausible(std::int32_t count, const base::RecordFile& file) {
    const std::size_t held = file.Size() / kPlaylistRecordBytes / 2;
    return count >= 0 && static_cast<std::size_t>(count) <= held + kMostBlankItems;
}

bool Fits(const PlaylistStore& store, std::int32_t item) {
    return store.playlist_names(item).size() <= kLongestText &&
           store.playlist_paths(item).size() <= kLongestText;
}

}  // namespace

PlaylistStore LoadPlaylist(const std::filesystem::path& programFolder) {
    const base::RecordFile file(programFolder / kPlaylistFileName, kPlaylistRecordBytes);
    PlaylistStore store;
    const auto count = base::ParseWholeNumber(file.Read(kItemCountRecord));
    if (!count || !Plausible(*count, file)) return store;
    store.repeat_on = file.Read(kRepeatRecord) != kOff;
    store.Reserve(*count);
    for (std::int32_t item = 1; item <= *count; ++item) {
        store.Append({file.Read(NameRecord(item)), file.Read(PathRecord(item))});
    }
    return store;
}

bool SavePlaylist(const std::filesystem::path& programFolder, const PlaylistStore& store) {
    std::vector<std::string_view> texts(2);
    for (std::int32_t item = 1; item <= store.playlist_count(); ++item) {
        if (!Fits(store, item)) continue;
        texts.push_back(store.playlist_names(item));
        texts.push_back(store.playlist_paths(item));
    }
    const std::string count = std::to_string(texts.size() / 2 - 1);
    texts[kItemCountRecord - 1] = count;
    texts[kRepeatRecord - 1] = store.repeat_on ? kOn : kOff;
    return base::ReplaceRecords(programFolder / kPlaylistFileName, kPlaylistRecordBytes, texts);
}

}  // namespace nqp::playlist
