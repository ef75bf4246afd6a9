#include "forms/win32/list_control.h"

#include <algorithm>

#include "forms/win32/graphics.h"
#include "forms/win32/winapi/mouse.h"
#include "forms/win32/winapi/text.h"
#include "forms/win32/window.h"

namespace nqp::forms::win32 {
namespace {

constexpr base::Twips kTextInset = 60;
constexpr base::Twips kLineSpace = 15;  // above and below the text
// Bytes of one character.
constexpr std::size_t kLongestLetter = 4;
// The longest lines are measured to find the widest one; letters differ in width, so some of them.
constexpr std::size_t kMeasuredLines = 32;

}  // namespace

ListControl::ListControl(const ControlState& state, ControlEvents& events, Window& window)
    : ControlWindow(state, events, window) {
    Create(L"LISTBOX",
           WS_TABSTOP | WS_VSCROLL | WS_HSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT |
               LBS_OWNERDRAWFIXED | LBS_NODATA | (state.multiSelect ? LBS_EXTENDEDSEL : 0U),
           window.IsDialog() ? WS_EX_CLIENTEDGE : 0);
}

LRESULT ListControl::Handle(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    const bool enter = wParam == VK_RETURN && !Parent().IsDialog();
    if (message == WM_GETDLGCODE && enter) return DLGC_WANTALLKEYS;
    if (HandleInput(message, wParam, lParam)) return 0;
    return DefaultAnswer(message, wParam, lParam);
}

// What means something to the form; the list goes through its lines with all other keys.
bool ListControl::HandleInput(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (Events() == nullptr) return false;
    const bool key = message == WM_KEYDOWN || message == WM_SYSKEYDOWN;
    if (key && TakesKey(wParam)) {
        Events()->OnKeyDown({static_cast<int>(wParam), winapi::HeldShiftKeys()});
        return true;
    }
    if (message == WM_CHAR && wParam > VK_SPACE) {
        GoToLineBeginningWith(static_cast<wchar_t>(wParam));
        return true;
    }
    const auto mouse = winapi::ReadMouse(message, wParam, lParam, Dpi());
    if (mouse && mouse->action == winapi::MouseAction::Up) {
        DefaultAnswer(message, wParam, lParam);
        if (Events() != nullptr) Events()->OnMouseUp(mouse->event);
        return true;
    }
    return false;
}

bool ListControl::TakesKey(WPARAM key) const {
    return key == VK_RETURN || key == VK_DELETE || key == VK_APPS ||
           (key == VK_F10 && winapi::HeldShiftKeys() == base::kShiftKey);
}

void ListControl::Notify(UINT message, WORD code) {
    if (message == WM_COMMAND && code == LBN_DBLCLK && Events() != nullptr) {
        Events()->OnDoubleClick();
    }
}

// The next one behind the focused line, round the end.
void ListControl::GoToLineBeginningWith(wchar_t letter) {
    const int count = Count();
    const int from = FocusedLine();
    for (int step = 1; step <= count; ++step) {
        const int line = (from + step) % count;
        const std::wstring text = winapi::Utf16(Line(line).substr(0, kLongestLetter));
        if (text.empty() || CompareStringOrdinal(text.c_str(), 1, &letter, 1, TRUE) != CSTR_EQUAL) {
            continue;
        }
        SelectLines(std::span(&line, 1));
        FocusLine(line);
        return;
    }
}

int ListControl::Count() const {
    return State().lines != nullptr ? State().lines->Count() : 0;
}

std::string_view ListControl::Line(int index) const {
    if (index < 0 || index >= Count()) return {};
    const std::string_view line = State().lines->Line(index);
    return line.substr(0, line.find('\0'));
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
    if (!State().multiSelect) {
        const auto line = static_cast<int>(SendMessageW(Hwnd(), LB_GETCURSEL, 0, 0));
        return line >= 0 ? std::vector{line} : std::vector<int>{};
    }
    const auto count =
        static_cast<std::size_t>(std::max<LRESULT>(0, SendMessageW(Hwnd(), LB_GETSELCOUNT, 0, 0)));
    std::vector<int> lines(count);
    SendMessageW(Hwnd(), LB_GETSELITEMS, count, reinterpret_cast<LPARAM>(lines.data()));
    return lines;
}

int ListControl::FocusedLine() const {
    return static_cast<int>(SendMessageW(Hwnd(), LB_GETCARETINDEX, 0, 0));
}

void ListControl::SelectLines(std::span<const int> lines) {
    if (!State().multiSelect) {
        const WPARAM line = lines.empty() ? static_cast<WPARAM>(-1) : static_cast<WPARAM>(lines[0]);
        SendMessageW(Hwnd(), LB_SETCURSEL, line, 0);
        return;
    }
    SendMessageW(Hwnd(), WM_SETREDRAW, FALSE, 0);
    const LRESULT top = SendMessageW(Hwnd(), LB_GETTOPINDEX, 0, 0);
    const int focused = FocusedLine();
    SendMessageW(Hwnd(), LB_SETSEL, FALSE, -1);
    // A range at a time, which unlike a single line does not scroll.
    for (std::size_t first = 0, last = 0; first < lines.size(); first = last + 1) {
        last = first;
        while (last + 1 < lines.size() && lines[last + 1] == lines[last] + 1)
            ++last;
        SendMessageW(Hwnd(), LB_SELITEMRANGEEX, static_cast<WPARAM>(lines[first]), lines[last]);
    }
    SendMessageW(Hwnd(), LB_SETCARETINDEX, static_cast<WPARAM>(focused), TRUE);
    SendMessageW(Hwnd(), LB_SETTOPINDEX, static_cast<WPARAM>(top), 0);
    SendMessageW(Hwnd(), WM_SETREDRAW, TRUE, 0);
    InvalidateRect(Hwnd(), nullptr, FALSE);
}

void ListControl::FocusLine(int line) {
    SendMessageW(Hwnd(), LB_SETCARETINDEX, static_cast<WPARAM>(line), FALSE);
    InvalidateRect(Hwnd(), nullptr, FALSE);
}

void ListControl::UpdateKind() {
    const int height = winapi::HeightOf(Font()) + 2 * base::TwipsToPixels(kLineSpace, Dpi());
    SendMessageW(Hwnd(), LB_SETITEMHEIGHT, 0, height);
    if (shownVersion_ != State().linesVersion) ShowLines();
    shownVersion_ = State().linesVersion;
    SendMessageW(Hwnd(), LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(WidthOfLines()), 0);
    InvalidateRect(Hwnd(), nullptr, TRUE);
}

// Takes the selection away; the lines that are in sight stay there.
void ListControl::ShowLines() {
    const LRESULT top = SendMessageW(Hwnd(), LB_GETTOPINDEX, 0, 0);
    const LRESULT caret = SendMessageW(Hwnd(), LB_GETCARETINDEX, 0, 0);
    SendMessageW(Hwnd(), LB_SETCOUNT, static_cast<WPARAM>(Count()), 0);
    SendMessageW(Hwnd(), LB_SETTOPINDEX, static_cast<WPARAM>(top), 0);
    SendMessageW(Hwnd(), LB_SETCARETINDEX, static_cast<WPARAM>(caret), TRUE);
    SendMessageW(Hwnd(), LB_SETTOPINDEX, static_cast<WPARAM>(top), 0);
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
        width =
            std::max(width, winapi::WidthOf(Font(), winapi::Utf16(Line(longest[index].second))));
    }
    return width + 2 * base::TwipsToPixels(kTextInset, Dpi());
}

}  // namespace nqp::forms::win32
