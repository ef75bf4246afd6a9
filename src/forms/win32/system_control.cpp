#include <windows.h>

#include <commctrl.h>

#include <utility>

#include "forms/win32/control_window.h"
#include "forms/win32/drawn_control.h"
#include "forms/win32/graphics.h"
#include "forms/win32/line_control.h"
#include "forms/win32/list_control.h"
#include "forms/win32/winapi/text.h"
#include "forms/win32/window.h"

namespace nqp::forms {
namespace win32 {
namespace {

DWORD EditAlignment(Align align) {
    switch (align) {
        case Align::Center:
            return ES_CENTER;
        case Align::Right:
            return ES_RIGHT;
        default:
            return ES_LEFT;
    }
}

Color Halfway(Color from, Color to) {
    const auto part = [&](unsigned shift) {
        return ((from >> shift & 0xFFU) + (to >> shift & 0xFFU)) / 2;
    };
    return Rgb(part(0), part(8), part(16));
}

class EditControl final : public ControlWindow {
public:
    EditControl(const ControlState& state, ControlEvents& events, Window& window)
        : ControlWindow(state, events, window) {
        Create(L"EDIT", StyleOf(state),
               window.IsDialog() && !state.readOnly ? WS_EX_CLIENTEDGE : 0);
        if (state.digits > 0) {
            SendMessageW(Hwnd(), EM_SETLIMITTEXT, static_cast<WPARAM>(state.digits), 0);
        }
    }

    void Notify(UINT message, WORD code) override {
        if (message != WM_COMMAND || Events() == nullptr) return;
        if (code == EN_CHANGE && !setting_) Events()->OnTextTyped(Text());
        if (code == EN_KILLFOCUS) Events()->OnFocusLost();
    }

private:
    static DWORD StyleOf(const ControlState& state) {
        return ES_AUTOHSCROLL | EditAlignment(state.align) | (state.tabStop ? WS_TABSTOP : 0U) |
               (state.digits > 0 ? ES_NUMBER : 0U) | (state.readOnly ? ES_READONLY : 0U);
    }

    std::string Text() const {
        std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(Hwnd())) + 1, L'\0');
        const int length = GetWindowTextW(Hwnd(), text.data(), static_cast<int>(text.size()));
        text.resize(static_cast<std::size_t>(length));
        return winapi::Utf8(text);
    }

    void UpdateKind() override {
        if (Text() != State().text) {
            setting_ = true;
            SetWindowTextW(Hwnd(), winapi::Utf16(State().text).c_str());
            setting_ = false;
        }
        InvalidateRect(Hwnd(), nullptr, TRUE);
    }

    bool setting_ = false;  // the program changes the text, not the person
};

class ButtonControl final : public ControlWindow {
public:
    ButtonControl(const ControlState& state, ControlEvents& events, Window& window)
        : ControlWindow(state, events, window) {
        Create(L"BUTTON", WS_TABSTOP | StyleOf(state));
    }

    void Notify(UINT message, WORD code) override {
        // The second click of a quick pair comes under its own name from a button drawn here.
        const bool clicked = code == BN_CLICKED || code == BN_DOUBLECLICKED;
        if (message == WM_COMMAND && clicked && Events() != nullptr) Events()->OnClick();
    }

    void DrawItem(const DRAWITEMSTRUCT& item) override {
        const bool pressed = (item.itemState & ODS_SELECTED) != 0;
        RECT area = item.rcItem;
        Fill(item.hDC, area, State().backColor);
        const HGDIOBJ previous = SelectObject(item.hDC, Font());
        SetBkMode(item.hDC, TRANSPARENT);
        SetTextColor(item.hDC, State().enabled ? State().foreColor
                                               : Halfway(State().foreColor, State().backColor));
        if (pressed) OffsetRect(&area, 1, 1);
        DrawTextW(item.hDC, winapi::Utf16(State().text).c_str(), -1, &area,
                  DT_SINGLELINE | DT_CENTER | DT_VCENTER | DT_END_ELLIPSIS);
        SelectObject(item.hDC, previous);
        if ((item.itemState & ODS_FOCUS) != 0) DrawFocusRing(item.hDC, item.rcItem, Dpi());
    }

private:
    // Enter presses one that is drawn here as it presses every other button; the dialog code only
    // knows the platform's.
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) noexcept override {
        const bool enter = wParam == VK_RETURN && State().flat;
        if (enter && message == WM_GETDLGCODE) return DLGC_BUTTON | DLGC_WANTMESSAGE;
        if (enter && message == WM_KEYDOWN) {
            Press();
            return 0;
        }
        return DefaultAnswer(message, wParam, lParam);
    }

    static DWORD StyleOf(const ControlState& state) {
        if (state.flat) return BS_OWNERDRAW;
        return state.isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
    }

    void UpdateKind() override {
        if (std::exchange(shownText_, State().text) != State().text) {
            SetWindowTextW(Hwnd(), winapi::Utf16(shownText_).c_str());
        }
        if (State().flat) InvalidateRect(Hwnd(), nullptr, FALSE);
    }

    std::string shownText_;
};

// A check box or an option button: the platform marks it, and its form hears of it.
class MarkControl final : public ControlWindow {
public:
    MarkControl(const ControlState& state, ControlEvents& events, Window& window)
        : ControlWindow(state, events, window) {
        Create(L"BUTTON", StyleOf(state));
    }

    void Notify(UINT message, WORD code) override {
        if (message != WM_COMMAND || code != BN_CLICKED || Events() == nullptr) return;
        const bool marked = SendMessageW(Hwnd(), BM_GETCHECK, 0, 0) == BST_CHECKED;
        // An option button that lost its mark hears of it from the one that took it.
        if (State().kind == ControlKind::OptionButton && !marked) return;
        Events()->OnValueChanged(marked ? 1 : 0);
    }

private:
    static DWORD StyleOf(const ControlState& state) {
        if (state.kind == ControlKind::CheckBox) return WS_TABSTOP | BS_AUTOCHECKBOX;
        return BS_AUTORADIOBUTTON | (state.startsGroup ? WS_TABSTOP : 0U);
    }

    void UpdateKind() override {
        if (std::exchange(shownText_, State().text) != State().text) {
            SetWindowTextW(Hwnd(), winapi::Utf16(shownText_).c_str());
        }
        SendMessageW(Hwnd(), BM_SETCHECK, State().value != 0 ? BST_CHECKED : BST_UNCHECKED, 0);
        InvalidateRect(Hwnd(), nullptr, TRUE);
    }

    std::string shownText_;
};

class ComboControl final : public ControlWindow {
public:
    ComboControl(const ControlState& state, ControlEvents& events, Window& window)
        : ControlWindow(state, events, window) {
        Create(L"COMBOBOX", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST);
        SendMessageW(Hwnd(), CB_SETMINVISIBLE, kLinesInSight, 0);
        for (const std::string& item : state.items) {
            SendMessageW(Hwnd(), CB_ADDSTRING, 0,
                         reinterpret_cast<LPARAM>(winapi::Utf16(item).c_str()));
        }
        UpdateKind();
    }

    void Notify(UINT message, WORD code) override {
        // A list that is left without a choice goes back to the item before, and tells of that
        // alone.
        const bool mayDiffer =
            code == CBN_SELCHANGE || code == CBN_SELENDCANCEL || code == CBN_CLOSEUP;
        if (message != WM_COMMAND || !mayDiffer || Events() == nullptr) return;
        const auto chosen = static_cast<int>(SendMessageW(Hwnd(), CB_GETCURSEL, 0, 0));
        if (chosen != State().value) Events()->OnValueChanged(chosen);
    }

private:
    static constexpr int kLinesInSight = 12;
    static constexpr WPARAM kClosedPart = static_cast<WPARAM>(-1);

    // The height is set for the one line alone; what the platform adds to it is seen afterwards.
    void FitClosedPart() {
        const RECT place = ControlWindow::PlaceOnScreen();
        RECT window{};
        GetWindowRect(Hwnd(), &window);
        const LONG missing = (place.bottom - place.top) - (window.bottom - window.top);
        const auto line = static_cast<LONG>(SendMessageW(Hwnd(), CB_GETITEMHEIGHT, kClosedPart, 0));
        if (missing != 0 && line + missing > 0) {
            SendMessageW(Hwnd(), CB_SETITEMHEIGHT, kClosedPart, line + missing);
        }
    }

    // The platform counts the open list in.
    RECT PlaceOnScreen() const override {
        RECT place = ControlWindow::PlaceOnScreen();
        place.bottom += kLinesInSight * (place.bottom - place.top);
        return place;
    }
    void UpdateKind() override {
        FitClosedPart();
        SendMessageW(Hwnd(), CB_SETCURSEL, static_cast<WPARAM>(State().value), 0);
        InvalidateRect(Hwnd(), nullptr, TRUE);
    }
};

class SliderControl final : public ControlWindow {
public:
    SliderControl(const ControlState& state, ControlEvents& events, Window& window)
        : ControlWindow(state, events, window) {
        Create(TRACKBAR_CLASSW, WS_TABSTOP | TBS_HORZ | TBS_AUTOTICKS);
        SendMessageW(Hwnd(), TBM_SETRANGEMIN, FALSE, state.minimum);
        SendMessageW(Hwnd(), TBM_SETRANGEMAX, FALSE, state.maximum);
        SendMessageW(Hwnd(), TBM_SETTICFREQ, static_cast<WPARAM>(Range() / kTicks), 0);
        SendMessageW(Hwnd(), TBM_SETPAGESIZE, 0, Range() / kPages);
        UpdateKind();
    }

    void Notify(UINT message, WORD) override {
        if (message != WM_HSCROLL || Events() == nullptr) return;
        Events()->OnValueChanged(static_cast<int>(SendMessageW(Hwnd(), TBM_GETPOS, 0, 0)));
    }

private:
    static constexpr int kTicks = 4;
    static constexpr int kPages = 16;

    int Range() const { return State().maximum - State().minimum; }
    void UpdateKind() override {
        SendMessageW(Hwnd(), TBM_SETPOS, TRUE, State().value);
        InvalidateRect(Hwnd(), nullptr, TRUE);
    }
};

void LoadCommonControls() {
    INITCOMMONCONTROLSEX classes{sizeof classes, ICC_STANDARD_CLASSES | ICC_BAR_CLASSES};
    static const BOOL loaded = InitCommonControlsEx(&classes);
    static_cast<void>(loaded);
}

}  // namespace
}  // namespace win32

std::unique_ptr<ControlPeer> CreateControlPeer(const ControlState& state, ControlEvents& events,
                                               WindowPeer& peer) {
    win32::LoadCommonControls();
    auto& window = static_cast<win32::Window&>(peer);
    switch (state.kind) {
        case ControlKind::TextBox:
            return std::make_unique<win32::EditControl>(state, events, window);
        case ControlKind::CommandButton:
            return std::make_unique<win32::ButtonControl>(state, events, window);
        case ControlKind::CheckBox:
        case ControlKind::OptionButton:
            return std::make_unique<win32::MarkControl>(state, events, window);
        case ControlKind::ComboBox:
            return std::make_unique<win32::ComboControl>(state, events, window);
        case ControlKind::Slider:
            return std::make_unique<win32::SliderControl>(state, events, window);
        case ControlKind::ListBox:
            return std::make_unique<win32::ListControl>(state, events, window);
        case ControlKind::Line:
        case ControlKind::Frame:
            return std::make_unique<win32::LineControl>(state, window);
        default:
            return std::make_unique<win32::DrawnControl>(state, events, window);
    }
}

}  // namespace nqp::forms
