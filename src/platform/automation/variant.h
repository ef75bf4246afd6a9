#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>

namespace nqp::platform {

// Automation's texts know their length: NUL characters inside are part of them. In UTF-8 here.
std::string TextOf(BSTR text);  // null is an empty text
// Owned by the caller; null when memory is short.
BSTR NewText(const std::string& text);

// A VARIANT that lets go of what it holds.
class Variant {
public:
    Variant() { VariantInit(&value_); }
    ~Variant() { VariantClear(&value_); }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;

    VARIANT* Get() { return &value_; }
    const VARIANT* Get() const { return &value_; }

private:
    VARIANT value_;
};

}  // namespace nqp::platform
