#include "forms/win32/winapi/gdi.h"

#include <cmath>

namespace nqp::winapi {

RECT PixelsOf(const base::Rect& twips, int dpi) {
    return {base::TwipsToPixels(twips.left, dpi), base::TwipsToPixels(twips.top, dpi),
            base::TwipsToPixels(twips.right(), dpi), base::TwipsToPixels(twips.bottom(), dpi)};
}

namespace {

template <class Measure>
void WithFont(HFONT font, Measure measure) {
    const HDC context = CreateCompatibleDC(nullptr);
    const HGDIOBJ previous = SelectObject(context, font);
    measure(context);
    SelectObject(context, previous);
    DeleteDC(context);
}

}  // namespace

int HeightOf(HFONT font) {
    TEXTMETRICW metrics{};
    WithFont(font, [&](HDC context) { GetTextMetricsW(context, &metrics); });
    return static_cast<int>(metrics.tmHeight);
}

int WidthOf(HFONT font, const std::wstring& text) {
    SIZE size{};
    WithFont(font, [&](HDC context) {
        GetTextExtentPoint32W(context, text.c_str(), static_cast<int>(text.size()), &size);
    });
    return static_cast<int>(size.cx);
}

GdiObject MessageFont(int dpi, bool bold, float scale) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0,
                               static_cast<UINT>(dpi));
    LOGFONTW& font = metrics.lfMessageFont;
    font.lfHeight = static_cast<LONG>(std::lround(static_cast<float>(font.lfHeight) * scale));
    if (bold) font.lfWeight = FW_SEMIBOLD;
    return GdiObject(CreateFontIndirectW(&font));
}

}  // namespace nqp::winapi
