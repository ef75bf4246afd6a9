#pragma once

#include <windows.h>

#include <ole2.h>
#include <shellapi.h>
#include <shlobj.h>

#include <string>
#include <utility>
#include <vector>

#include "forms/win32/winapi/com.h"
#include "forms/win32/winapi/text.h"

namespace nqp::test {

// What the shell hands over when files are dragged: their full paths, UTF-8.
class FileData final : public winapi::ComObject<IDataObject> {
public:
    explicit FileData(std::vector<std::string> paths) : paths_(std::move(paths)) {}

    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* format, STGMEDIUM* medium) override {
        if (QueryGetData(format) != S_OK) return DV_E_FORMATETC;
        *medium = {};
        medium->tymed = TYMED_HGLOBAL;
        medium->hGlobal = Paths();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* format) override {
        const bool known = format->cfFormat == CF_HDROP && (format->tymed & TYMED_HGLOBAL) != 0;
        return known ? S_OK : DV_E_FORMATETC;
    }
    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC*, FORMATETC*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD, IEnumFORMATETC**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override {
        return OLE_E_ADVISENOTSUPPORTED;
    }
    HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
    HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA**) override {
        return OLE_E_ADVISENOTSUPPORTED;
    }

private:
    HGLOBAL Paths() const {
        std::wstring list;
        for (const std::string& path : paths_)
            list += winapi::Utf16(path) + L'\0';
        list += L'\0';
        const std::size_t bytes = list.size() * sizeof(wchar_t);
        const HGLOBAL memory = GlobalAlloc(GHND, sizeof(DROPFILES) + bytes);
        auto* header = static_cast<DROPFILES*>(GlobalLock(memory));
        header->pFiles = sizeof(DROPFILES);
        header->fWide = TRUE;
        CopyMemory(header + 1, list.data(), bytes);
        GlobalUnlock(memory);
        return memory;
    }

    std::vector<std::string> paths_;
};

// Drags the files over the window and lets go, as the platform does it.
inline bool DropOnto(HWND window, const std::vector<std::string>& paths) {
    auto* target = static_cast<IDropTarget*>(GetPropW(window, L"OleDropTargetInterface"));
    if (target == nullptr) return false;
    const auto data = winapi::MakeCom<FileData>(paths);
    RECT place{};
    GetWindowRect(window, &place);
    const POINTL point{place.left + 1, place.top + 1};
    DWORD effect = DROPEFFECT_COPY | DROPEFFECT_MOVE | DROPEFFECT_LINK;
    target->DragEnter(data.Get(), MK_LBUTTON, point, &effect);
    effect = DROPEFFECT_COPY | DROPEFFECT_MOVE | DROPEFFECT_LINK;
    target->DragOver(MK_LBUTTON, point, &effect);
    if (effect != DROPEFFECT_COPY) return false;
    return target->Drop(data.Get(), 0, point, &effect) == S_OK && effect == DROPEFFECT_COPY;
}

}  // namespace nqp::test
