#include "cutter/libav.h"

#include <array>
#include <utility>

namespace nqp::companion {
namespace {

std::string TextOf(int code) {
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
    av_strerror(code, text.data(), text.size());
    return text.data();
}

}  // namespace

Libav<AVIOContext> NewIo(int bufferBytes, void* self, int (*read)(void*, std::uint8_t*, int),
                         int (*write)(void*, std::uint8_t*, int),
                         std::int64_t (*seek)(void*, std::int64_t, int)) {
    auto* const buffer =
        static_cast<std::uint8_t*>(av_malloc(static_cast<std::size_t>(bufferBytes)));
    if (buffer == nullptr) throw std::bad_alloc();
    AVIOContext* const made =
        avio_alloc_context(buffer, bufferBytes, write != nullptr ? 1 : 0, self, read, write, seek);
    if (made == nullptr) av_free(buffer);
    return Owned(made);
}

LibraryError::LibraryError(std::string step, int code) : text_(std::move(step)) {
    text_.append(": ").append(TextOf(code));
}

}  // namespace nqp::companion
