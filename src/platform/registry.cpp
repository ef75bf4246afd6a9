#include "platform/registry.h"

#include <algorithm>
#include <cstring>

namespace nqp::platform {
namespace {

struct Counts {
    DWORD subkeys = 0;
    DWORD values = 0;
};

bool Missing(LSTATUS status) {
    return status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND;
}

void Check(const char* call, LSTATUS status) {
    if (status != ERROR_SUCCESS) throw RegistryError(call, status);
}

Counts CountsOf(HKEY key) {
    Counts counts;
    Check("RegQueryInfoKeyW",
          RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &counts.subkeys, nullptr, nullptr,
                           &counts.values, nullptr, nullptr, nullptr, nullptr));
    return counts;
}

}  // namespace

RegistryError::RegistryError(const char* call, LSTATUS code)
    : std::runtime_error(std::string(call) + " failed with " + std::to_string(code)), code_(code) {}

RegistryValue RegistryValue::OfText(const std::wstring& text) {
    RegistryValue value{REG_SZ, std::vector<BYTE>((text.size() + 1) * sizeof(wchar_t))};
    std::memcpy(value.data.data(), text.c_str(), value.data.size());
    return value;
}

std::optional<std::wstring> RegistryValue::Text() const {
    if (type != REG_SZ && type != REG_EXPAND_SZ) return std::nullopt;
    std::wstring text(data.size() / sizeof(wchar_t), L'\0');
    if (!text.empty()) std::memcpy(text.data(), data.data(), text.size() * sizeof(wchar_t));
    // Not every program stores the end of its text.
    text.resize(std::min(text.find(L'\0'), text.size()));
    return text;
}

RegistryKey RegistryKey::Create(const std::wstring& path, HKEY root) {
    HKEY key = nullptr;
    Check("RegCreateKeyExW",
          RegCreateKeyExW(root, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                          KEY_READ | KEY_WRITE, nullptr, &key, nullptr));
    return RegistryKey(key);
}

std::optional<RegistryKey> RegistryKey::Open(const std::wstring& path, REGSAM access, HKEY root) {
    HKEY key = nullptr;
    const LSTATUS status = RegOpenKeyExW(root, path.c_str(), 0, access, &key);
    if (Missing(status)) return std::nullopt;
    Check("RegOpenKeyExW", status);
    return RegistryKey(key);
}

std::optional<RegistryKey> RegistryKey::OpenToRead(const std::wstring& path, HKEY root) {
    return Open(path, KEY_READ, root);
}

std::optional<RegistryKey> RegistryKey::OpenToWrite(const std::wstring& path, HKEY root) {
    return Open(path, KEY_READ | KEY_WRITE, root);
}

std::optional<RegistryValue> RegistryKey::Value(const std::wstring& name) const {
    constexpr std::size_t kUsualSize = 512;
    RegistryValue value{REG_NONE, std::vector<BYTE>(kUsualSize)};
    for (;;) {
        DWORD size = static_cast<DWORD>(value.data.size());
        const LSTATUS status = RegQueryValueExW(key_.get(), name.c_str(), nullptr, &value.type,
                                                value.data.data(), &size);
        if (Missing(status)) return std::nullopt;
        if (status != ERROR_MORE_DATA) Check("RegQueryValueExW", status);
        value.data.resize(size);
        if (status == ERROR_SUCCESS) return value;
    }
}

bool RegistryKey::HasValues() const {
    return CountsOf(key_.get()).values != 0;
}

bool RegistryKey::Empty() const {
    const Counts counts = CountsOf(key_.get());
    return counts.values == 0 && counts.subkeys == 0;
}

void RegistryKey::Set(const std::wstring& name, const RegistryValue& value) {
    Check("RegSetValueExW",
          RegSetValueExW(key_.get(), name.c_str(), 0, value.type, value.data.data(),
                         static_cast<DWORD>(value.data.size())));
}

void RegistryKey::SetText(const std::wstring& name, const std::wstring& text) {
    Set(name, RegistryValue::OfText(text));
}

void RegistryKey::Delete(const std::wstring& name) {
    const LSTATUS status = RegDeleteValueW(key_.get(), name.c_str());
    if (!Missing(status)) Check("RegDeleteValueW", status);
}

bool RegistryKeyExists(const std::wstring& path) {
    return RegistryKey::OpenToRead(path).has_value();
}

std::optional<RegistryValue> RegistryValueAt(const std::wstring& path, const std::wstring& name,
                                             HKEY root) {
    const auto key = RegistryKey::OpenToRead(path, root);
    return key ? key->Value(name) : std::nullopt;
}

void DeleteRegistryValue(const std::wstring& path, const std::wstring& name) {
    // A key that may only be read is no obstacle where there is nothing to delete.
    if (!RegistryValueAt(path, name)) return;
    if (auto key = RegistryKey::OpenToWrite(path)) key->Delete(name);
}

void DeleteEmptyRegistryKey(const std::wstring& path) {
    const auto key = RegistryKey::OpenToRead(path);
    if (!key || !key->Empty()) return;
    const LSTATUS status = RegDeleteKeyW(HKEY_CURRENT_USER, path.c_str());
    if (!Missing(status)) Check("RegDeleteKeyW", status);
}

void DeleteRegistryTree(const std::wstring& path, HKEY root) {
    const LSTATUS status = RegDeleteTreeW(root, path.c_str());
    if (!Missing(status)) Check("RegDeleteTreeW", status);
}

}  // namespace nqp::platform
