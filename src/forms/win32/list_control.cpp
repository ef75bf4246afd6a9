#include "forms/win32/list_control.h"

#include <algorithm>

#include "forms/win32/graphics.h"
#include "forms/win32/winapi/mouse.h"
#include "forms/win32/winapi/text.h"
#include "forms/win32/window.h"

namespace nqp::forms::win32 {
namespace {

constexpr UINT_PTR kSubclass = 1;
constexpr UINT kEverything = static_cast<UINT>(-1);
constexpr base::Twips kTextInset = 60;
// The longest lines are measured to find the widest one; letters differ in width, so some of them.
constexpr std::size_t kMeasuredLines = 32;

}  // namespace

ListControl::ListControl(const ControlState& state, ControlEvents& events, Window& window)
    : ControlWindow(state, events, window) {
    Create(WC_LISTVIEWW, WS_TABSTOP | LVS_REPORT | LVS_NOCOLUMNHEADER | LVS_OWNERDATA |
                             LVS_OWNERDRAWFIXED | LVS_SHOWSELALWAYS);
    ListView_SetExtendedListViewStyle(Hwnd(), LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
    LVCOLUMNW column{};
    column.mask = LVCF_WIDTH;
    column.cx = 1;
    SendMessageW(Hwnd(), LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
    SetWindowSubclass(Hwnd(), ListProcedure, kSubclass, 0);
    UpdateKind();
}

LRESULT CALLBACK ListControl::ListProcedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam,
                                            UINT_PTR id, DWORD_PTR) noexcept {
    auto* list = static_cast<ListControl*>(ControlWindow::Of(hwnd));
    if (message == WM_NCDESTROY) RemoveWindowSubclass(hwnd, ListProcedure, id);
    const bool key = message == WM_KEYDOWN || message == WM_SYSKEYDOWN;
    if (key && list != nullptr && list->Events() != nullptr && list->TakesKey(wParam)) {
        list->Events()->OnKeyDown({static_cast<int>(wParam), winapi::HeldShiftKeys()});
        return 0;
    }
    if (message == WM_GETDLGCODE && wParam == VK_RETURN) return DLGC_WANTALLKEYS;
    if (message == WM_SIZE && list != nullptr) {
        const LRESULT result = DefSubclassProc(hwnd, message, wParam, lParam);
        list->FitWidth();
        return result;
    }
    return DefSubclassProc(hwnd, message, wParam, lParam);
}

// The keys that mean something to the form; the list goes through its lines with all others.
bool ListControl::TakesKey(WPARAM key) const {
    return key == VK_RETURN || key == VK_DELETE || key == VK_APPS ||
           (key == VK_F10 && winapi::HeldShiftKeys() == base::kShiftKey);
}

int ListControl::Count() const {
    return State().lines != nullptr ? State().lines->Count() : 0;
}

std::string_view ListControl::Line(int index) const {
    if (index < 0 || index >= Count()) return {};
    const std::string_view line = State().lines->Line(index);
    return line.substr(0, line.find('\0'));
}

LRESULT ListControl::NotifyOfList(const NMHDR& header) {
    switch (header.code) {
        case LVN_GETDISPINFOW: {
            auto& info = const_cast<NMLVDISPINFOW&>(reinterpret_cast<const NMLVDISPINFOW&>(header));
            if ((info.item.mask & LVIF_TEXT) == 0 || info.item.cchTextMax < 1) return 0;
            lstrcpynW(info.item.pszText, winapi::Utf16(Line(info.item.iItem)).c_str(),
                      info.item.cchTextMax);
            return 0;
        }
        case LVN_ODFINDITEMW:
            return Find(reinterpret_cast<const NMLVFINDITEMW&>(header));
        case NM_DBLCLK:
            if (reinterpret_cast<const NMITEMACTIVATE&>(header).iItem >= 0 && Events() != nullptr) {
                Events()->OnDoubleClick();
            }
            return 0;
        case NM_RCLICK: {
            if (Events() == nullptr) return 0;
            const POINT at = reinterpret_cast<const NMITEMACTIVATE&>(header).ptAction;
            Events()->OnMouseUp({base::kRightButton, winapi::HeldShiftKeys(),
                                 base::PixelsToTwips(static_cast<int>(at.x), Dpi()),
                                 base::PixelsToTwips(static_cast<int>(at.y), Dpi())});
            return 1;
        }
        default:
            return 0;
    }
}

// Typed letters go to the next line that begins with them.
int ListControl::Find(const NMLVFINDITEMW& search) const {
    if ((search.lvfi.flags & LVFI_STRING) == 0 || search.lvfi.psz == nullptr) return -1;
    const std::wstring wanted = search.lvfi.psz;
    const int count = Count();
    for (int step = 0; step < count; ++step) {
        const int index = (search.iStart + step) % count;
        const std::wstring line = winapi::Utf16(Line(index));
        if (line.size() >= wanted.size() &&
            CompareStringOrdinal(line.c_str(), static_cast<int>(wanted.size()), wanted.c_str(),
                                 static_cast<int>(wanted.size()), TRUE) == CSTR_EQUAL) {
            return index;
        }
    }
    return -1;
}

void ListControl::DrawItem(const DRAWITEMSTRUCT& item) {
    const bool selected = (item.itemState & ODS_SELECTED) != 0;
    const Color paper = selected ? State().foreColor : State().backColor;
    const Color ink = selected ? State().backColor : State().foreColor;
    RECT area = item.rcItem;
    Fill(item.hDC, area, paper);
    InflateRect(&area, -base::TwipsToPixels(kTextInset, Dpi()), 0);
    const HGDIOBJ previous = SelectObject(item.hDC, Font());
    SetBkMode(item.hDC, TRANSPARENT);
    SetTextColor(item.hDC, ink);
    DrawTextW(item.hDC, winapi::Utf16(Line(static_cast<int>(item.itemID))).c_str(), -1, &area,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    SelectObject(item.hDC, previous);
    if ((item.itemState & ODS_FOCUS) != 0 && HasFocus()) {
        SetTextColor(item.hDC, ink);
        SetBkColor(item.hDC, paper);
        DrawFocusRect(item.hDC, &item.rcItem);
    }
}

std::vector<int> ListControl::SelectedLines() const {
    std::vector<int> lines;
    for (int line = ListView_GetNextItem(Hwnd(), -1, LVNI_SELECTED); line >= 0;
         line = ListView_GetNextItem(Hwnd(), line, LVNI_SELECTED)) {
        lines.push_back(line);
    }
    return lines;
}

int ListControl::FocusedLine() const {
    return ListView_GetNextItem(Hwnd(), -1, LVNI_FOCUSED);
}

void ListControl::SelectLines(std::span<const int> lines) {
    ListView_SetItemState(Hwnd(), -1, 0, LVIS_SELECTED);
    for (const int line : lines)
        ListView_SetItemState(Hwnd(), line, LVIS_SELECTED, LVIS_SELECTED);
}

void ListControl::FocusLine(int line) {
    ListView_SetItemState(Hwnd(), line, LVIS_FOCUSED, LVIS_FOCUSED);
    ListView_SetSelectionMark(Hwnd(), line);
    ListView_EnsureVisible(Hwnd(), line, FALSE);
}

void ListControl::UpdateKind() {
    ListView_SetBkColor(Hwnd(), State().backColor);
    ListView_SetTextBkColor(Hwnd(), State().backColor);
    ListView_SetTextColor(Hwnd(), State().foreColor);
    shownCount_ = Count();
    SendMessageW(Hwnd(), LVM_SETITEMCOUNT, static_cast<WPARAM>(shownCount_), LVSICF_NOSCROLL);
    widthOfLines_ = WidthOfLines();
    FitWidth();
    InvalidateRect(Hwnd(), nullptr, FALSE);
}

int ListControl::WidthOfLines() const {
    std::vector<std::pair<std::size_t, int>> longest;
    for (int line = 0; line < Count(); ++line)
        longest.emplace_back(Line(line).size(), line);
    const std::size_t measured = std::min(kMeasuredLines, longest.size());
    std::partial_sort(longest.begin(), longest.begin() + static_cast<std::ptrdiff_t>(measured),
                      longest.end(), std::greater<>());
    int width = 0;
    for (std::size_t index = 0; index < measured; ++index) {
        const std::wstring text = winapi::Utf16(Line(longest[index].second));
        width =
            std::max(width, static_cast<int>(SendMessageW(Hwnd(), LVM_GETSTRINGWIDTHW, 0,
                                                          reinterpret_cast<LPARAM>(text.c_str()))));
    }
    return width;
}

// The column is as wide as the widest line, so that a long one can be scrolled to its end.
void ListControl::FitWidth() {
    RECT area{};
    GetClientRect(Hwnd(), &area);
    const int text = widthOfLines_ + 2 * base::TwipsToPixels(kTextInset, Dpi());
    ListView_SetColumnWidth(Hwnd(), 0, std::max(static_cast<int>(area.right), text));
}

}  // namespace nqp::forms::win32
