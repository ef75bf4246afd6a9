#pragma once

#include <filesystem>
#include <string>

// The classes in the registry, as the system and its clients see them.
namespace nqp::test {

// The default value of a key below the classes; "none" without one.
std::string ClassText(const std::wstring& key, const std::wstring& name = {});
// The same in the present user's own part.
std::string UserClassText(const std::wstring& key, const std::wstring& name = {});
void SetClassText(const std::wstring& key, const std::string& text);
void RemoveUserClasses();
// In every part of the registry that a registration may have written.
void RemoveClasses();

std::string Quoted(const std::filesystem::path& path);

}  // namespace nqp::test
