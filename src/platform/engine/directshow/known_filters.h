#pragma once

#include "forms/win32/winapi/com.h"

#include <string>

#include <dshow.h>

namespace nqp::platform::directshow {

// Remembers, for each kind of file, which filter took the file apart and which ones drew and
// sounded it. Put into the next graph beforehand they are tried first, which spares the search
// through all filters of the system: a clip of a known kind opens several times as fast. Decoders
// are not remembered, so that the choice among them stays the platform's.
void AddKnownFilters(IGraphBuilder* graph, const std::wstring& path);
void RememberFilters(IGraphBuilder* graph, const std::wstring& path);
// Takes out what was put in and not used.
void RemoveUnconnectedFilters(IGraphBuilder* graph);

}  // namespace nqp::platform::directshow
