#pragma once

#include <windows.h>

#include <vector>

namespace nqp::test {

// Where the system does not say how many GDI objects there are, the ones that can still be made
// tell: the more are in use, the fewer are left.
inline double CountGdiObjects() {
    const DWORD known = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    if (known != 0) return known;
    constexpr double kTableSize = 65536;
    std::vector<HBRUSH> brushes;
    while (const HBRUSH brush = CreateSolidBrush(RGB(1, 2, 3)))
        brushes.push_back(brush);
    for (const HBRUSH brush : brushes)
        DeleteObject(brush);
    return kTableSize - static_cast<double>(brushes.size());
}

}  // namespace nqp::test
