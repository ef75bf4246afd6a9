#include "platform/automation/variant.h"

#include "forms/win32/winapi/text.h"

namespace nqp::platform {

std::string TextOf(BSTR text) {
    return winapi::Utf8({text, SysStringLen(text)});
}

BSTR NewText(const std::string& text) {
    const std::wstring wide = winapi::Utf16(text);
    return SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
}

}  // namespace nqp::platform
