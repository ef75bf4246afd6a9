#pragma once

#include "forms/win32/winapi/com.h"

#include <string>
#include <vector>

#include <dshow.h>

#include "platform/engine/picture_layout.h"

namespace nqp::platform::directshow {

// A media type with the memory that belongs to it.
class MediaType {
public:
    MediaType() = default;
    MediaType(const MediaType&) = delete;
    MediaType& operator=(const MediaType&) = delete;
    ~MediaType();

    // To be filled once.
    AM_MEDIA_TYPE* Put() { return &type_; }
    const AM_MEDIA_TYPE* Get() const { return &type_; }

    // The format block, when it is of this kind and complete; else null.
    template <class Format>
    const Format* FormatAs(const GUID& kind) const {
        const bool fits = IsEqualGUID(type_.formattype, kind) && type_.cbFormat >= sizeof(Format);
        return fits ? reinterpret_cast<const Format*>(type_.pbFormat) : nullptr;
    }

private:
    AM_MEDIA_TYPE type_{};
};

std::vector<winapi::ComPtr<IBaseFilter>> FiltersOf(IFilterGraph* graph);
std::vector<winapi::ComPtr<IPin>> PinsOf(IBaseFilter* filter, PIN_DIRECTION direction);
winapi::ComPtr<IPin> FirstPin(IBaseFilter* filter, PIN_DIRECTION direction);
winapi::ComPtr<IPin> ConnectedInput(IBaseFilter* filter);
std::string NameOf(IBaseFilter* filter);
bool HasPropertyPages(IBaseFilter* filter);

// What the clip's streams are, as far as the connections between the filters tell.
struct StreamFormats {
    std::string picture;
    std::string sound;
    double frameRate = 0;    // 0 when it is not known
    PixelSize pictureShape;  // with the shape of its pixels; empty when it is not known
};
StreamFormats FormatsOf(IFilterGraph* graph);

}  // namespace nqp::platform::directshow
