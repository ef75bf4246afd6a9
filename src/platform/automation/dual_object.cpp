#include "platform/automation/dual_object.h"

#include "forms/win32/winapi/text.h"
#include "platform/process.h"

namespace nqp::platform {

winapi::ComPtr<ITypeInfo> TypeInfoInProgram(const IID& interfaceId) {
    winapi::ComPtr<ITypeLib> library;
    winapi::ComPtr<ITypeInfo> type;
    LoadTypeLibEx(ProgramFile().c_str(), REGKIND_NONE, library.Put());
    if (library) library->GetTypeInfoOfGuid(interfaceId, type.Put());
    if (!type) WriteDebugLine("the program holds no type library of its class");
    return type;
}

void SetErrorText(const IID& interfaceId, const char* progId, const std::string& text) {
    winapi::ComPtr<ICreateErrorInfo> creation;
    if (FAILED(CreateErrorInfo(creation.Put()))) return;
    creation->SetGUID(interfaceId);
    creation->SetSource(winapi::Utf16(progId).data());
    creation->SetDescription(winapi::Utf16(text).data());
    const auto error = creation.As<IErrorInfo>();
    if (error) SetErrorInfo(0, error.Get());
}

}  // namespace nqp::platform
