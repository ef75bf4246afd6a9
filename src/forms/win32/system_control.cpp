#include <windows.h>

#include <commctrl.h>

#include "forms/win32/control_window.h"
#include "forms/win32/drawn_control.h"
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
        Create(L"BUTTON", WS_TABSTOP | (state.isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON));
    }

    void Notify(UINT message, WORD code) override {
        if (message == WM_COMMAND && code == BN_CLICKED && Events() != nullptr) Events()->OnClick();
    }

private:
    void UpdateKind() override { SetWindowTextW(Hwnd(), winapi::Utf16(State().text).c_str()); }
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
        default:
            return std::make_unique<win32::DrawnControl>(state, events, window);
    }
}

}  // namespace nqp::forms
