#pragma once

#include <windows.h>

#include <oaidl.h>

namespace nqp::companion {

// One job as other processes see it; core::companion_member says what the members hold.
// companion.idl has the same ones in the same order.
class IFragmentJob : public IDispatch {
public:
    virtual HRESULT STDMETHODCALLTYPE get_Mode(LONG* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Mode(LONG value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ImageX(LONG* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_ImageX(LONG value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ImageY(LONG* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_ImageY(LONG value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ImagePath(BSTR* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_ImagePath(BSTR value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Percentage(LONG* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Percentage(LONG value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_StatusFile(BSTR* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_StatusFile(BSTR value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_CancelFile(BSTR* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_CancelFile(BSTR value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_OutputFile(BSTR* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_OutputFile(BSTR value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_SourceFile(BSTR* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_SourceFile(BSTR value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_FragmentStart(DOUBLE* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_FragmentStart(DOUBLE value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_FragmentEnd(DOUBLE* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_FragmentEnd(DOUBLE value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ProcessId(LONG* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE Run() = 0;
    virtual HRESULT STDMETHODCALLTYPE Start() = 0;
};

}  // namespace nqp::companion

// platform::kCompanionInterface
__CRT_UUID_DECL(nqp::companion::IFragmentJob, 0x6e4ea3c0, 0xbc0b, 0x4107, 0x9b, 0x05, 0xe1, 0xdf,
                0x3c, 0xec, 0x19, 0xf3)
