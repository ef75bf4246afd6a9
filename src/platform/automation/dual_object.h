#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>
#include <utility>

#include "forms/win32/winapi/com.h"

namespace nqp::platform {

// What a method answers that failed with a text.
inline constexpr HRESULT kMethodFailed = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_ITF, 0x200);

// Of an interface, out of the type library inside the program, so that nothing depends on its
// registration. Empty when there is none; then the methods are reached through the interface only.
winapi::ComPtr<ITypeInfo> TypeInfoInProgram(const IID& interfaceId);

// For clients that ask for the text of a failure.
void SetErrorText(const IID& interfaceId, const char* progId, const std::string& text);

// Base of the objects whose members are reached through their interface and by their names. The
// object may be without types.
template <class Interface>
class DualObject : public winapi::ComObject<Interface>, public ISupportErrorInfo {
public:
    explicit DualObject(winapi::ComPtr<ITypeInfo> type) : type_(std::move(type)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        if (object == nullptr) return E_POINTER;
        if (IsEqualIID(id, IID_IDispatch)) {
            *object = static_cast<IDispatch*>(this);
        } else if (IsEqualIID(id, IID_ISupportErrorInfo)) {
            *object = static_cast<ISupportErrorInfo*>(this);
        } else {
            return winapi::ComObject<Interface>::QueryInterface(id, object);
        }
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return winapi::ComObject<Interface>::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return winapi::ComObject<Interface>::Release(); }

    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) override {
        return IsEqualIID(id, __uuidof(Interface)) ? S_OK : S_FALSE;
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (count == nullptr) return E_POINTER;
        *count = type_ ? 1 : 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** type) override {
        if (type == nullptr) return E_POINTER;
        *type = nullptr;
        if (index != 0) return DISP_E_BADINDEX;
        if (!type_) return TYPE_E_CANTLOADLIBRARY;
        *type = type_.Get();
        (*type)->AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                            DISPID* ids) override {
        if (!type_) return TYPE_E_CANTLOADLIBRARY;
        return type_->GetIDsOfNames(names, count, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                     UINT* argument) override {
        if (!type_) return TYPE_E_CANTLOADLIBRARY;
        SetErrorInfo(0, nullptr);
        return type_->Invoke(static_cast<Interface*>(this), member, flags, parameters, result,
                             exception, argument);
    }

private:
    winapi::ComPtr<ITypeInfo> type_;
};

}  // namespace nqp::platform
