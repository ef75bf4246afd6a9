#include "platform/automation/late_bound.h"

#include <array>
#include <cstdio>
#include <vector>

#include "forms/win32/winapi/text.h"
#include "platform/automation/variant.h"

namespace nqp::platform {
namespace {

std::string Message(const std::string& step, HRESULT code, const std::string& description) {
    std::array<char, 16> number{};
    std::snprintf(number.data(), number.size(), "%08lx", static_cast<unsigned long>(code));
    std::string message = step;
    message.append(" failed with ").append(number.data());
    if (!description.empty()) message.append(": ").append(description);
    return message;
}

void Check(const std::string& step, HRESULT result) {
    if (FAILED(result)) throw AutomationError(step, result);
}

void Assign(VARIANT& target, std::int32_t value) {
    V_VT(&target) = VT_I4;
    V_I4(&target) = value;
}

void Assign(VARIANT& target, double value) {
    V_VT(&target) = VT_R8;
    V_R8(&target) = value;
}

void Assign(VARIANT& target, const std::string& value) {
    const BSTR text = NewText(value);
    if (text == nullptr) throw AutomationError("SysAllocStringLen", E_OUTOFMEMORY);
    V_VT(&target) = VT_BSTR;
    V_BSTR(&target) = text;
}

AutomationValue ValueOf(Variant& variant) {
    switch (V_VT(variant.Get())) {
        case VT_EMPTY:
        case VT_NULL:
            return {};
        case VT_BOOL:
            return V_BOOL(variant.Get()) != VARIANT_FALSE;
        case VT_R4:
        case VT_R8:
            Check("VariantChangeType", VariantChangeType(variant.Get(), variant.Get(), 0, VT_R8));
            return V_R8(variant.Get());
        case VT_BSTR:
            return TextOf(V_BSTR(variant.Get()));
        default:
            Check("VariantChangeType", VariantChangeType(variant.Get(), variant.Get(), 0, VT_I4));
            return std::int32_t{V_I4(variant.Get())};
    }
}

// The arguments of a call, which the platform wants last one first.
class Arguments {
public:
    explicit Arguments(std::span<const core::MemberValue> values) : variants_(values.size()) {
        try {
            for (std::size_t i = 0; i < values.size(); ++i) {
                VARIANT& target = variants_[values.size() - 1 - i];
                std::visit([&](const auto& value) { Assign(target, value); }, values[i]);
            }
        } catch (...) {
            Clear();
            throw;
        }
    }
    ~Arguments() { Clear(); }
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    DISPPARAMS Parameters() {
        return {variants_.data(), nullptr, static_cast<UINT>(variants_.size()), 0};
    }

private:
    void Clear() {
        for (VARIANT& variant : variants_)
            VariantClear(&variant);
    }

    std::vector<VARIANT> variants_;  // zero is VT_EMPTY
};

class ExceptionInfo {
public:
    ExceptionInfo() = default;
    ~ExceptionInfo() {
        SysFreeString(info_.bstrSource);
        SysFreeString(info_.bstrDescription);
        SysFreeString(info_.bstrHelpFile);
    }
    ExceptionInfo(const ExceptionInfo&) = delete;
    ExceptionInfo& operator=(const ExceptionInfo&) = delete;

    EXCEPINFO* Get() { return &info_; }
    std::string Description() {
        if (info_.pfnDeferredFillIn != nullptr) info_.pfnDeferredFillIn(&info_);
        return TextOf(info_.bstrDescription);
    }

private:
    EXCEPINFO info_{};
};

// A server that was killed leaves behind the one class object that it had on offer, and Wine also
// remembers a killed one's connection when another has the same process number. Only a client finds
// either out, and by asking it has used the offer up: the next time the system starts a server.
bool MetDeadServer(HRESULT creation) {
    switch (creation) {
        case HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE):
        case HRESULT_FROM_WIN32(RPC_S_CALL_FAILED_DNE):
        case CO_E_SERVER_STOPPING:
        case RPC_E_DISCONNECTED:
        case RPC_E_SERVER_DIED:
        case RPC_E_SERVER_DIED_DNE:
            return true;
        default:
            return false;
    }
}

winapi::ComPtr<IDispatch> CreateLocal(const char* progId) {
    CLSID classId{};
    Check("CLSIDFromProgID", CLSIDFromProgID(winapi::Utf16(progId).c_str(), &classId));
    winapi::ComPtr<IDispatch> object;
    const auto create = [&] {
        return CoCreateInstance(classId, nullptr, CLSCTX_LOCAL_SERVER, IID_IDispatch,
                                object.PutVoid());
    };
    HRESULT result = create();
    if (MetDeadServer(result)) result = create();
    Check("CoCreateInstance", result);
    return object;
}

}  // namespace

AutomationError::AutomationError(const std::string& step, HRESULT code,
                                 const std::string& description)
    : std::runtime_error(Message(step, code, description)),
      code_(code),
      description_(description) {}

bool AutomationError::ServerIsGone() const {
    switch (code_) {
        case HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE):
        case HRESULT_FROM_WIN32(RPC_S_CALL_FAILED):
        case HRESULT_FROM_WIN32(RPC_S_CALL_FAILED_DNE):
        case RPC_E_DISCONNECTED:
        case RPC_E_SERVER_DIED:
        case RPC_E_SERVER_DIED_DNE:
        case CO_E_OBJNOTCONNECTED:
            return true;
        default:
            return false;
    }
}

bool AutomationError::IsForNow() const {
    return code_ == RPC_E_CALL_REJECTED || code_ == RPC_E_SERVERCALL_RETRYLATER ||
           code_ == RPC_E_CANTCALLOUT_ININPUTSYNCCALL;
}

LateBound::LateBound(const char* progId) : object_(CreateLocal(progId)) {}

DISPID LateBound::IdOf(std::string_view member) const {
    const auto known = ids_.find(member);
    if (known != ids_.end()) return known->second;
    std::wstring name = winapi::Utf16(member);
    LPOLESTR names = name.data();
    DISPID id = DISPID_UNKNOWN;
    Check(std::string(member),
          object_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id));
    ids_.emplace(member, id);
    return id;
}

AutomationValue LateBound::Invoke(std::string_view member, WORD kind,
                                  DISPPARAMS& parameters) const {
    const DISPID id = IdOf(member);
    const bool put = (kind & DISPATCH_PROPERTYPUT) != 0;
    Variant result;
    ExceptionInfo exception;
    UINT argument = 0;
    const HRESULT answer =
        object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                        put ? nullptr : result.Get(), exception.Get(), &argument);
    if (answer == DISP_E_EXCEPTION)
        throw AutomationError(std::string(member), answer, exception.Description());
    Check(std::string(member), answer);
    return ValueOf(result);
}

void LateBound::Put(std::string_view member, const core::MemberValue& value) const {
    Arguments arguments({&value, 1});
    DISPPARAMS parameters = arguments.Parameters();
    DISPID named = DISPID_PROPERTYPUT;
    parameters.rgdispidNamedArgs = &named;
    parameters.cNamedArgs = 1;
    Invoke(member, DISPATCH_PROPERTYPUT, parameters);
}

AutomationValue LateBound::Get(std::string_view member) const {
    DISPPARAMS parameters{};
    return Invoke(member, DISPATCH_PROPERTYGET, parameters);
}

AutomationValue LateBound::Call(std::string_view member,
                                std::span<const core::MemberValue> arguments) const {
    Arguments given(arguments);
    DISPPARAMS parameters = given.Parameters();
    return Invoke(member, DISPATCH_METHOD, parameters);
}

void LateBound::AllowForeground() const {
    CoAllowSetForegroundWindow(object_.Get(), nullptr);
}

}  // namespace nqp::platform
