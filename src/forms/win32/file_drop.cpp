#include "forms/win32/file_drop.h"

#include <ole2.h>

#include <utility>

#include "forms/drop_list.h"
#include "forms/win32/message_loop.h"
#include "forms/win32/winapi/com.h"
#include "forms/win32/winapi/text.h"

namespace nqp::forms::win32 {
namespace {

FORMATETC FileList() {
    return {CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
}

DropList ListIn(HGLOBAL memory) {
    const auto* bytes = static_cast<const char*>(GlobalLock(memory));
    if (bytes == nullptr) return {};
    DropList list = ReadDropList({bytes, GlobalSize(memory)});
    GlobalUnlock(memory);
    return list;
}

std::vector<std::string> FilesIn(IDataObject& data) {
    FORMATETC format = FileList();
    STGMEDIUM medium{};
    if (FAILED(data.GetData(&format, &medium))) return {};
    DropList list = ListIn(medium.hGlobal);
    ReleaseStgMedium(&medium);
    std::vector<std::string> paths = std::move(list.narrow);
    for (const std::u16string& path : list.wide)
        paths.push_back(winapi::Utf8(std::wstring(path.begin(), path.end())));
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
