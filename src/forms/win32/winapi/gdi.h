#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <type_traits>

#include "base/geometry.h"

namespace nqp::winapi {

inline constexpr int kProgramIcon = 1;  // number of the resource

struct GdiDeleter {
    using pointer = HGDIOBJ;
    void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
using GdiObject = std::unique_ptr<std::remove_pointer_t<HGDIOBJ>, GdiDeleter>;

// Every edge on its nearest pixel.
RECT PixelsOf(const base::Rect& twips, int dpi);

// Of a line of text, pixels.
int HeightOf(HFONT font);
int WidthOf(HFONT font, const std::wstring& text);

// The system's message font at a resolution.
GdiObject MessageFont(int dpi, bool bold, float scale);

}  // namespace nqp::winapi
