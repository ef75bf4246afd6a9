#include "platform/engine/directshow/known_filters.h"

#include <algorithm>
#include <cwctype>
#include <map>
#include <vector>

#include "forms/win32/winapi/text.h"
#include "platform/engine/directshow/filters.h"

namespace nqp::platform::directshow {

namespace {

struct KnownFilter {
    CLSID classId;
    std::wstring name;
};

// Used on the window thread only.
std::map<std::wstring, std::vector<KnownFilter>>& KnownByExtension() {
    static std::map<std::wstring, std::vector<KnownFilter>> known;
    return known;
}

std::wstring ExtensionOf(const std::wstring& path) {
    const std::size_t dot = path.find_last_of(L".\\/");
    if (dot == std::wstring::npos || path[dot] != L'.') return {};
    std::wstring extension = path.substr(dot);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](wchar_t letter) { return static_cast<wchar_t>(std::towlower(letter)); });
    return extension;
}

bool IsConnected(IPin* pin) {
    winapi::ComPtr<IPin> other;
    return SUCCEEDED(pin->ConnectedTo(other.Put()));
}

bool HasConnection(IBaseFilter* filter, PIN_DIRECTION direction) {
    const auto pins = PinsOf(filter, direction);
    return std::any_of(pins.begin(), pins.end(),
                       [](const winapi::ComPtr<IPin>& pin) { return IsConnected(pin.Get()); });
}

// Fed by a filter that is fed by none: it takes the file apart.
bool FollowsTheSource(IBaseFilter* filter) {
    const auto input = ConnectedInput(filter);
    winapi::ComPtr<IPin> upstream;
    if (!input || FAILED(input->ConnectedTo(upstream.Put()))) return false;
    PIN_INFO info{};
    if (FAILED(upstream->QueryPinInfo(&info)) || info.pFilter == nullptr) return false;
    const bool source = !HasConnection(info.pFilter, PINDIR_INPUT);
    info.pFilter->Release();
    return source;
}

bool IsRenderer(IBaseFilter* filter) {
    return HasConnection(filter, PINDIR_INPUT) && PinsOf(filter, PINDIR_OUTPUT).empty();
}

}  // namespace

void AddKnownFilters(IGraphBuilder* graph, const std::wstring& path) {
    const auto known = KnownByExtension().find(ExtensionOf(path));
    if (known == KnownByExtension().end()) return;
    for (const KnownFilter& entry : known->second) {
        const auto filter = winapi::ComPtr<IBaseFilter>::Create(entry.classId);
        if (filter) graph->AddFilter(filter.Get(), entry.name.c_str());
    }
}

void RememberFilters(IGraphBuilder* graph, const std::wstring& path) {
    auto& known = KnownByExtension()[ExtensionOf(path)];
    for (const auto& filter : FiltersOf(graph)) {
        CLSID classId{};
        if (!FollowsTheSource(filter.Get()) && !IsRenderer(filter.Get())) continue;
        if (FAILED(filter->GetClassID(&classId))) continue;
        const bool isNew = std::none_of(known.begin(), known.end(), [&](const KnownFilter& entry) {
            return IsEqualCLSID(entry.classId, classId);
        });
        if (isNew) known.push_back({classId, winapi::Utf16(NameOf(filter.Get()))});
    }
}

void RemoveUnconnectedFilters(IGraphBuilder* graph) {
    for (const auto& filter : FiltersOf(graph)) {
        const bool used =
            HasConnection(filter.Get(), PINDIR_INPUT) || HasConnection(filter.Get(), PINDIR_OUTPUT);
        if (!used) graph->RemoveFilter(filter.Get());
    }
}

}  // namespace nqp::platform::directshow
