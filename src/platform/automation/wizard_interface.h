#pragma once

#include <windows.h>

#include <oaidl.h>

namespace nqp::platform {

// wizard.idl has the same numbers, in lower case.
inline constexpr wchar_t kWizardTypeLibrary[] = L"{B797963A-B223-4AC0-936F-49A76145A598}";
inline constexpr wchar_t kWizardTypeLibraryVersion[] = L"1.0";
inline constexpr wchar_t kWizardInterface[] = L"{7182305F-98FD-4FF1-86BC-EF270A5B8319}";
inline constexpr wchar_t kWizardClass[] = L"{52381C03-78FB-4CD9-B32A-744D117119A1}";
inline constexpr CLSID kWizardClassId = {
    0x52381c03, 0x78fb, 0x4cd9, {0xb3, 0x2a, 0x74, 0x4d, 0x11, 0x71, 0x19, 0xa1}};

// core::Wizard as other processes see it.
class IWizard : public IDispatch {
public:
    virtual HRESULT STDMETHODCALLTYPE init() = 0;
    virtual HRESULT STDMETHODCALLTYPE hide_status() = 0;
    virtual HRESULT STDMETHODCALLTYPE set_filepath(BSTR fpath) = 0;
    virtual HRESULT STDMETHODCALLTYPE set_form7_status(BSTR stat) = 0;
    virtual HRESULT STDMETHODCALLTYPE update_numbers(BSTR str_n1, BSTR str_n2) = 0;
    virtual HRESULT STDMETHODCALLTYPE Get_frwt_video(VARIANT_BOOL* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE Get_frwt_audio(VARIANT_BOOL* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE Get_frwt_image(VARIANT_BOOL* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE Get_frwt_unload(VARIANT_BOOL* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE Get_frwt_OutFilePath(BSTR* result) = 0;
};

}  // namespace nqp::platform

__CRT_UUID_DECL(nqp::platform::IWizard, 0x7182305f, 0x98fd, 0x4ff1, 0x86, 0xbc, 0xef, 0x27, 0x0a,
                0x5b, 0x83, 0x19)
