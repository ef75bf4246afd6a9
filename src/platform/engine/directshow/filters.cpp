#include "platform/engine/directshow/filters.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <optional>

#include <dvdmedia.h>
#include <ocidl.h>
#include <olectl.h>

#include "forms/win32/winapi/text.h"

namespace nqp::platform::directshow {

namespace {

constexpr double kReferenceTimePerSecond = 1e7;

struct NamedSubtype {
    const GUID& id;
    const char* name;
};

const NamedSubtype kNamedSubtypes[] = {
    {MEDIASUBTYPE_RGB24, "RGB 24 bit"},        {MEDIASUBTYPE_RGB32, "RGB 32 bit"},
    {MEDIASUBTYPE_ARGB32, "ARGB 32 bit"},      {MEDIASUBTYPE_RGB565, "RGB 16 bit (565)"},
    {MEDIASUBTYPE_RGB555, "RGB 16 bit (555)"}, {MEDIASUBTYPE_RGB8, "RGB 8 bit"},
    {MEDIASUBTYPE_MPEG1Payload, "MPEG-1"},     {MEDIASUBTYPE_MPEG1Packet, "MPEG-1"},
    {MEDIASUBTYPE_MPEG2_VIDEO, "MPEG-2"},
};

// The last twelve bytes of every media subtype that is made from a FourCC or a wave format tag.
constexpr unsigned char kCodeTail[] = {0x00, 0x00, 0x10, 0x00, 0x80, 0x00,
                                       0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};

std::string SubtypeName(const GUID& subtype) {
    const auto* named =
        std::find_if(std::begin(kNamedSubtypes), std::end(kNamedSubtypes),
                     [&](const NamedSubtype& entry) { return IsEqualGUID(entry.id, subtype); });
    if (named != std::end(kNamedSubtypes)) return named->name;
    const auto* bytes = reinterpret_cast<const unsigned char*>(&subtype);
    const bool madeFromCode = std::memcmp(bytes + 4, kCodeTail, sizeof(kCodeTail)) == 0;
    const bool printable =
        std::all_of(bytes, bytes + 4, [](unsigned char byte) { return std::isprint(byte) != 0; });
    if (madeFromCode && printable) return {reinterpret_cast<const char*>(bytes), 4};
    winapi::TaskMemory<wchar_t> text;
    return SUCCEEDED(StringFromCLSID(subtype, text.Put())) ? winapi::Utf8(text.Get())
                                                           : std::string();
}

std::string WaveFormatName(WORD tag) {
    constexpr WORD kWaveMp3 = 0x0055;
    constexpr WORD kWaveAac = 0x00FF;
    constexpr WORD kWaveExtensible = 0xFFFE;
    switch (tag) {
        case WAVE_FORMAT_PCM:
            return "PCM";
        case 0x0003:
            return "PCM (floating point)";
        case 0x0050:
            return "MPEG audio";
        case kWaveMp3:
            return "MP3";
        case kWaveAac:
            return "AAC";
        case kWaveExtensible:
            return "extensible";
        default:
            return "format " + std::to_string(tag);
    }
}

std::string SoundText(const WAVEFORMATEX& wave) {
    return WaveFormatName(wave.wFormatTag) + ", " + std::to_string(wave.nSamplesPerSec) + " Hz, " +
           std::to_string(wave.nChannels) + (wave.nChannels == 1 ? " channel" : " channels") +
           (wave.wBitsPerSample != 0 ? ", " + std::to_string(wave.wBitsPerSample) + " bit" : "");
}

void ReadPicture(const MediaType& type, StreamFormats& formats) {
    // Samples of a fixed size are decoded ones; what goes into the decoder tells more.
    if (formats.picture.empty() || type.Get()->bFixedSizeSamples == FALSE) {
        formats.picture = SubtypeName(type.Get()->subtype);
    }
    REFERENCE_TIME timePerFrame = 0;
    if (const auto* plain = type.FormatAs<VIDEOINFOHEADER>(FORMAT_VideoInfo)) {
        timePerFrame = plain->AvgTimePerFrame;
    } else if (const auto* shaped = type.FormatAs<VIDEOINFOHEADER2>(FORMAT_VideoInfo2)) {
        timePerFrame = shaped->AvgTimePerFrame;
        formats.pictureShape = {static_cast<int>(shaped->dwPictAspectRatioX),
                                static_cast<int>(shaped->dwPictAspectRatioY)};
    }
    if (timePerFrame > 0) {
        formats.frameRate = kReferenceTimePerSecond / static_cast<double>(timePerFrame);
    }
}

void ReadStream(IPin* input, StreamFormats& formats) {
    MediaType type;
    if (FAILED(input->ConnectionMediaType(type.Put()))) return;
    if (IsEqualGUID(type.Get()->majortype, MEDIATYPE_Video)) {
        ReadPicture(type, formats);
    } else if (const auto* wave = type.FormatAs<WAVEFORMATEX>(FORMAT_WaveFormatEx)) {
        const bool decoded = wave->wFormatTag == WAVE_FORMAT_PCM;
        if (formats.sound.empty() || !decoded) formats.sound = SoundText(*wave);
    }
}

}  // namespace

MediaType::~MediaType() {
    CoTaskMemFree(type_.pbFormat);
    if (type_.pUnk != nullptr) type_.pUnk->Release();
}

std::vector<winapi::ComPtr<IBaseFilter>> FiltersOf(IFilterGraph* graph) {
    std::vector<winapi::ComPtr<IBaseFilter>> filters;
    winapi::ComPtr<IEnumFilters> list;
    if (FAILED(graph->EnumFilters(list.Put()))) return filters;
    winapi::ComPtr<IBaseFilter> filter;
    while (list->Next(1, filter.Put(), nullptr) == S_OK) {
        filters.push_back(filter);
    }
    return filters;
}

std::vector<winapi::ComPtr<IPin>> PinsOf(IBaseFilter* filter, PIN_DIRECTION direction) {
    std::vector<winapi::ComPtr<IPin>> pins;
    winapi::ComPtr<IEnumPins> list;
    if (FAILED(filter->EnumPins(list.Put()))) return pins;
    winapi::ComPtr<IPin> pin;
    while (list->Next(1, pin.Put(), nullptr) == S_OK) {
        PIN_DIRECTION found{};
        if (SUCCEEDED(pin->QueryDirection(&found)) && found == direction) pins.push_back(pin);
    }
    return pins;
}

winapi::ComPtr<IPin> FirstPin(IBaseFilter* filter, PIN_DIRECTION direction) {
    const auto pins = PinsOf(filter, direction);
    return pins.empty() ? winapi::ComPtr<IPin>() : pins.front();
}

winapi::ComPtr<IPin> ConnectedInput(IBaseFilter* filter) {
    for (const auto& pin : PinsOf(filter, PINDIR_INPUT)) {
        winapi::ComPtr<IPin> other;
        if (SUCCEEDED(pin->ConnectedTo(other.Put()))) return pin;
    }
    return {};
}

std::string NameOf(IBaseFilter* filter) {
    FILTER_INFO info{};
    if (FAILED(filter->QueryFilterInfo(&info))) return {};
    if (info.pGraph != nullptr) info.pGraph->Release();
    return winapi::Utf8(info.achName);
}

bool HasPropertyPages(IBaseFilter* filter) {
    const auto pages = winapi::ComPtr<IBaseFilter>::Share(filter).As<ISpecifyPropertyPages>();
    if (!pages) return false;
    CAUUID list{};
    if (FAILED(pages->GetPages(&list))) return false;
    CoTaskMemFree(list.pElems);
    return list.cElems > 0;
}

StreamFormats FormatsOf(IFilterGraph* graph) {
    StreamFormats formats;
    for (const auto& filter : FiltersOf(graph)) {
        for (const auto& input : PinsOf(filter.Get(), PINDIR_INPUT))
            ReadStream(input.Get(), formats);
    }
    return formats;
}

}  // namespace nqp::platform::directshow
