#include "playlist/chosen_files.h"

#include "base/text.h"

namespace nqp::playlist {
namespace {

constexpr char kDropSeparator = '|';

// Up to the empty one that ends them.
std::vector<std::string> PiecesOf(std::string_view buffer) {
    std::vector<std::string> pieces;
    while (!buffer.empty() && buffer.front() != '\0') {
        const std::size_t end = buffer.find('\0');
        pieces.emplace_back(buffer.substr(0, end));
        if (end == std::string_view::npos) break;
        buffer.remove_prefix(end + 1);
    }
    return pieces;
}

Entry WithNul(const std::string& name, const std::string& path) {
    return {name + '\0', path + '\0'};
}

}  // namespace

std::vector<Entry> FilesOfDialog(std::string_view buffer) {
    const std::vector<std::string> pieces = PiecesOf(buffer);
    if (pieces.empty()) return {};
    const std::string& first = pieces.front();
    if (pieces.size() == 1) return {WithNul(base::FileNameOf(first), first)};
    std::vector<Entry> files;
    for (std::size_t piece = 1; piece < pieces.size(); ++piece) {
        files.push_back(WithNul(pieces[piece], first + '\\' + pieces[piece]));
    }
    return files;
}

std::vector<Entry> FilesOfDrop(std::span<const std::string> paths) {
    std::vector<Entry> files;
    for (const std::string& path : paths) {
        std::string_view rest = path;
        for (std::size_t end = 0; end != std::string_view::npos;) {
            end = rest.find(kDropSeparator);
            const std::string part(rest.substr(0, end));
            files.push_back({base::FileNameOf(part), part});
            if (end != std::string_view::npos) rest.remove_prefix(end + 1);
        }
    }
    return files;
}

}  // namespace nqp::playlist
