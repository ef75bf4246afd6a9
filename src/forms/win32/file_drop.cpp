#include "forms/win32/file_drop.h"

#include <ole2.h>
#include <shellapi.h>

#include <utility>

#include "forms/win32/message_loop.h"
#include "forms/win32/winapi/com.h"
#include "forms/win32/winapi/text.h"

namespace nqp::forms::win32 {
namespace {

FORMATETC FileList() {
    return {CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
}

std::vector<std::string> FilesIn(IDataObject& data) {
    FORMATETC format = FileList();
    STGMEDIUM medium{};
    if (FAILED(data.GetData(&format, &medium))) return {};
    const auto drop = static_cast<HDROP>(medium.hGlobal);
    std::vector<std::string> paths;
    const UINT count = DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0);
    for (UINT file = 0; file < count; ++file) {
        std::wstring path(DragQueryFileW(drop, file, nullptr, 0), L'\0');
        DragQueryFileW(drop, file, path.data(), static_cast<UINT>(path.size()) + 1);
        paths.push_back(winapi::Utf8(path));
    }
    ReleaseStgMedium(&medium);
    return paths;
}

class FileDropTarget final : public winapi::ComObject<IDropTarget> {
public:
    explicit FileDropTarget(std::function<void(const std::vector<std::string>&)> dropped)
        : dropped_(std::move(dropped)) {}

    HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD, POINTL, DWORD* effect) override {
        FORMATETC format = FileList();
        takes_ = data != nullptr && data->QueryGetData(&format) == S_OK;
        return Answer(effect);
    }
    HRESULT STDMETHODCALLTYPE DragOver(DWORD, POINTL, DWORD* effect) override {
        return Answer(effect);
    }
    HRESULT STDMETHODCALLTYPE DragLeave() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD, POINTL, DWORD* effect) override {
        const HRESULT result = Answer(effect);
        if (data == nullptr) return E_INVALIDARG;
        const std::vector<std::string> paths = FilesIn(*data);
        NotePersonActed();
        if (!paths.empty()) dropped_(paths);
        return result;
    }

private:
    HRESULT Answer(DWORD* effect) const {
        if (effect == nullptr) return E_INVALIDARG;
        *effect = takes_ ? *effect & DROPEFFECT_COPY : DROPEFFECT_NONE;
        return S_OK;
    }

    std::function<void(const std::vector<std::string>&)> dropped_;
    bool takes_ = false;
};

}  // namespace

void BeginFileDrop(HWND window, std::function<void(const std::vector<std::string>&)> dropped) {
    RegisterDragDrop(window, winapi::MakeCom<FileDropTarget>(std::move(dropped)).Get());
}

void EndFileDrop(HWND window) {
    RevokeDragDrop(window);
}

}  // namespace nqp::forms::win32
