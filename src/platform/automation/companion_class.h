#pragma once

namespace nqp::platform {

// The numbers of the class behind core::kCompanionProgId, which the companion's program serves, of
// its interface and of the type library inside that program. companion.idl has the same ones, in
// lower case.
inline constexpr wchar_t kCompanionClass[] = L"{20149CC1-4C8C-4D27-BDDF-752721E79395}";
inline constexpr wchar_t kCompanionInterface[] = L"{6E4EA3C0-BC0B-4107-9B05-E1DF3CEC19F3}";
inline constexpr wchar_t kCompanionTypeLibrary[] = L"{48092A87-7033-4E37-AAEA-412D304F9C96}";
inline constexpr wchar_t kCompanionTypeLibraryVersion[] = L"1.0";

}  // namespace nqp::platform
