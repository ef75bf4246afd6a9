#pragma once

#include <windows.h>

#include <oaidl.h>

#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

#include "core/companion.h"
#include "forms/win32/winapi/com.h"

namespace nqp::platform {

// What the automation layer or the object itself answered.
class AutomationError : public std::runtime_error {
public:
    AutomationError(const std::string& step, HRESULT code, const std::string& description = {});
    HRESULT Code() const { return code_; }
    // The object's own words in UTF-8; empty when it has none.
    const std::string& Description() const { return description_; }
    // The process that served the object is gone.
    bool ServerIsGone() const;
    // It cannot answer at the moment.
    bool IsForNow() const;

private:
    HRESULT code_;
    std::string description_;
};

using AutomationValue = std::variant<std::monostate, bool, std::int32_t, double, std::string>;

// An automation object in another process, whose members are reached by their names. Failures are
// AutomationErrors. Used by the thread that created it, which has entered a COM apartment.
class LateBound {
public:
    // A new object of the class with this ProgID, served by a local server.
    explicit LateBound(const char* progId);

    void Put(std::string_view member, const core::MemberValue& value) const;
    AutomationValue Get(std::string_view member) const;
    AutomationValue Call(std::string_view member,
                         std::span<const core::MemberValue> arguments = {}) const;

    // Lets the object's process bring its windows to the front.
    void AllowForeground() const;

private:
    DISPID IdOf(std::string_view member) const;
    AutomationValue Invoke(std::string_view member, WORD kind, DISPPARAMS& parameters) const;

    winapi::ComPtr<IDispatch> object_;
    mutable std::map<std::string, DISPID, std::less<>> ids_;  // that were asked for already
};

}  // namespace nqp::platform
