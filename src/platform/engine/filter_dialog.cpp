#include "platform/engine/filter_dialog.h"

#include "forms/win32/winapi/text.h"

namespace nqp::platform {

namespace {

constexpr int kListId = 100;
constexpr int kPropertiesId = 101;

// Pixels at 96 dpi.
constexpr int kMargin = 12;
constexpr int kWidth = 360;
constexpr int kLabelHeight = 20;
constexpr int kListHeight = 150;
constexpr int kButtonWidth = 92;
constexpr int kButtonHeight = 26;

}  // namespace

FilterDialog::FilterDialog(HWND owner, ClipInformation& clip) : clip_(clip) {
    constexpr int kInner = kWidth - 2 * kMargin;
    constexpr int kListTop = kMargin + kLabelHeight;
    constexpr int kButtonTop = kListTop + kListHeight + kMargin;
    constexpr int kCloseLeft = kWidth - kMargin - kButtonWidth;
    constexpr int kHeight = kButtonTop + kButtonHeight + kMargin;
    if (!CreateDialogWindow(L"nqp.FilterSettings", L"Standard settings", owner,
                            {kWidth, kHeight})) {
        return;
    }
    AddControl(L"STATIC", L"&Filters that play this clip:", SS_LEFT, -1,
               {kMargin, kMargin, kInner, kLabelHeight});
    list_ = AddControl(L"LISTBOX", L"",
                       WS_BORDER | WS_VSCROLL | WS_TABSTOP | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT,
                       kListId, {kMargin, kListTop, kInner, kListHeight});
    properties_ =
        AddControl(L"BUTTON", L"&Properties", WS_TABSTOP | BS_DEFPUSHBUTTON, kPropertiesId,
                   {kCloseLeft - kMargin - kButtonWidth, kButtonTop, kButtonWidth, kButtonHeight});
    AddControl(L"BUTTON", L"Close", WS_TABSTOP | BS_PUSHBUTTON, IDCANCEL,
               {kCloseLeft, kButtonTop, kButtonWidth, kButtonHeight});
    Refresh();
    BringToFront();
    SetFocus(list_);
}

void FilterDialog::Refresh() {
    filters_ = clip_.Filters();
    SendMessageW(list_, LB_RESETCONTENT, 0, 0);
    for (const FilterEntry& filter : filters_) {
        const std::wstring name = winapi::Utf16(filter.name);
        SendMessageW(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
    }
    SendMessageW(list_, LB_SETCURSEL, 0, 0);
    UpdateButton();
}

void FilterDialog::OnCommand(int id, int notification) {
    if (id == kListId && notification == LBN_SELCHANGE) UpdateButton();
    const bool chosen = (id == kListId && notification == LBN_DBLCLK) ||
                        ((id == kPropertiesId || id == IDOK) && notification == BN_CLICKED);
    if (chosen) ShowProperties();
}

std::size_t FilterDialog::Selected() const {
    const LRESULT selected = SendMessageW(list_, LB_GETCURSEL, 0, 0);
    return selected == LB_ERR ? filters_.size() : static_cast<std::size_t>(selected);
}

void FilterDialog::UpdateButton() {
    const std::size_t selected = Selected();
    const bool possible = selected < filters_.size() && filters_[selected].hasProperties;
    EnableWindow(properties_, possible ? TRUE : FALSE);
}

void FilterDialog::ShowProperties() {
    const std::size_t selected = Selected();
    if (selected < filters_.size() && filters_[selected].hasProperties) {
        clip_.ShowFilterProperties(selected, Handle());
    }
}

}  // namespace nqp::platform
