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

LibraryError::LibraryError(std::string step, int code) : text_(std::move(step)) {
    text_.append(": ").append(TextOf(code));
}

}  // namespace nqp::companion
