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
        Create(L"EDIT", WS_TABSTOP | ES_AUTOHSCROLL | EditAlignment(state.align),
               window.IsDialog() ? WS_EX_CLIENTEDGE : 0);
    }

    void Notify(UINT message, WORD code) override {
        if (message != WM_COMMAND || Events() == nullptr) return;
        if (code == EN_CHANGE && !setting_) Events()->OnTextTyped(Text());
        if (code == EN_KILLFOCUS) Events()->OnFocusLost();
    }

private:
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
        case ControlKind::Slider:
            return std::make_unique<win32::SliderControl>(state, events, window);
        case ControlKind::ListBox:
            return std::make_unique<win32::ListControl>(state, events, window);
        case ControlKind::Line:
            return std::make_unique<win32::LineControl>(state, window);
        default:
            return std::make_unique<win32::DrawnControl>(state, events, window);
    }
}

}  // namespace nqp::forms
