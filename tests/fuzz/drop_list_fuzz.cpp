#include <cstdint>
#include <cstdlib>

#include "forms/drop_list.h"

// Any bytes as what the clipboard holds for dropped files.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const nqp::forms::DropList list =
        nqp::forms::ReadDropList({reinterpret_cast<const char*>(data), size});
    if (!list.wide.empty() && !list.narrow.empty()) std::abort();
    for (const std::u16string& path : list.wide) {
        if (path.empty() || path.find(u'\0') != std::u16string::npos) std::abort();
    }
    for (const std::string& path : list.narrow) {
        if (path.empty() || path.find('\0') != std::string::npos) std::abort();
    }
    return 0;
}
