#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

namespace nqp::platform {

class RegistryError : public std::runtime_error {
public:
    RegistryError(const char* call, LSTATUS code);
    LSTATUS Code() const { return code_; }

private:
    LSTATUS code_;
};

// As it is stored, so that it can be put back whatever its type is.
struct RegistryValue {
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
    bool operator==(const RegistryValue&) const = default;

    static RegistryValue OfText(const std::wstring& text);
    // Of a value of another type: nothing.
    std::optional<std::wstring> Text() const;
};

// A key; paths are below the root, which is the present user's part where nothing else is said.
// What the system refuses becomes a RegistryError; what is missing is none.
class RegistryKey {
public:
    // Opens the key for reading and writing, and makes what is missing of its path.
    static RegistryKey Create(const std::wstring& path, HKEY root = HKEY_CURRENT_USER);
    static std::optional<RegistryKey> OpenToRead(const std::wstring& path,
                                                 HKEY root = HKEY_CURRENT_USER);
    static std::optional<RegistryKey> OpenToWrite(const std::wstring& path,
                                                  HKEY root = HKEY_CURRENT_USER);

    // The value with the empty name is the key's default value.
    std::optional<RegistryValue> Value(const std::wstring& name) const;
    bool HasValues() const;
    bool Empty() const;

    void Set(const std::wstring& name, const RegistryValue& value);
    void SetText(const std::wstring& name, const std::wstring& text);
    void Delete(const std::wstring& name);

private:
    struct Closer {
        void operator()(HKEY key) const { RegCloseKey(key); }
    };

    explicit RegistryKey(HKEY key) : key_(key) {}
    static std::optional<RegistryKey> Open(const std::wstring& path, REGSAM access, HKEY root);

    std::unique_ptr<std::remove_pointer_t<HKEY>, Closer> key_;
};

bool RegistryKeyExists(const std::wstring& path);
std::optional<RegistryValue> RegistryValueAt(const std::wstring& path, const std::wstring& name,
                                             HKEY root = HKEY_CURRENT_USER);
void DeleteRegistryValue(const std::wstring& path, const std::wstring& name);
// Leaves a key that holds anything.
void DeleteEmptyRegistryKey(const std::wstring& path);
// With all that is in it.
void DeleteRegistryTree(const std::wstring& path, HKEY root = HKEY_CURRENT_USER);

}  // namespace nqp::platform
