#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>
#include <vector>

#include "base/geometry.h"
#include "forms/win32/message_loop.h"
#include "forms/win32/screen.h"
#include "forms/win32/winapi/text.h"
#include "win32/file_data.h"
#include "window_driver.h"

namespace nqp::test {
namespace {

HWND HandleOf(const forms::Form& form) {
    if (form.Handle() == nullptr) throw std::logic_error("the window is not loaded");
    return static_cast<HWND>(form.Handle());
}

// The control's window is found the way a tool outside of the program finds it: by its number.
HWND HandleOf(const forms::Control& control) {
    const HWND window = GetDlgItem(HandleOf(control.Parent()), control.Id());
    if (window == nullptr) throw std::logic_error(control.Name() + " is not on the screen");
    return window;
}

LPARAM PositionIn(const forms::Form& form, base::Twips x, base::Twips y) {
    const base::Twips perPixel = form.TwipsPerPixel();
    const auto pixels = [perPixel](base::Twips twips) {
        return static_cast<WORD>(base::RoundHalfEven(twips / perPixel));
    };
    return MAKELPARAM(pixels(x), pixels(y));
}

void HoldShiftKeys(int shift) {
    std::array<BYTE, 256> keys{};
    constexpr BYTE kDown = 0x80;
    if ((shift & base::kShiftKey) != 0) keys[VK_SHIFT] = kDown;
    if ((shift & base::kControlKey) != 0) keys[VK_CONTROL] = kDown;
    if ((shift & base::kAltKey) != 0) keys[VK_MENU] = kDown;
    SetKeyboardState(keys.data());
}

WPARAM HeldButton(int button) {
    return button == base::kRightButton ? MK_RBUTTON : MK_LBUTTON;
}

// A key that was typed while `window` had the focus.
void TypeKey(HWND window, int keyCode, int shift) {
    HoldShiftKeys(shift);
    MSG message{};
    message.hwnd = window;
    message.message = (shift & base::kAltKey) != 0 ? WM_SYSKEYDOWN : WM_KEYDOWN;
    message.wParam = static_cast<WPARAM>(keyCode);
    constexpr LPARAM kAltIsHeld = LPARAM{1} << 29;
    if ((shift & base::kAltKey) != 0) message.lParam = kAltIsHeld;
    forms::win32::Dispatch(message);
    HoldShiftKeys(0);
    RunMessages();
}

// Watches one form's window until it has done its work.
class Watch {
public:
    virtual ~Watch() = default;
    // True when the message was meant for it.
    virtual bool Handle(HWND window, UINT message, WPARAM wParam) = 0;

    static void Start(HWND window, std::unique_ptr<Watch> watch) {
        SetWindowSubclass(window, Procedure, kId, reinterpret_cast<DWORD_PTR>(watch.release()));
    }

private:
    static constexpr UINT_PTR kId = 1;

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                      UINT_PTR, DWORD_PTR data) {
        auto* watch = reinterpret_cast<Watch*>(data);
        if (!watch->Handle(window, message, wParam)) {
            return DefSubclassProc(window, message, wParam, lParam);
        }
        RemoveWindowSubclass(window, Procedure, kId);
        delete watch;
        return 0;
    }
};

class DragWatch final : public Watch {
public:
    explicit DragWatch(std::function<base::Rect(forms::HitCode)> drag) : drag_(std::move(drag)) {}

    bool Handle(HWND window, UINT message, WPARAM wParam) override {
        if (message != WM_NCLBUTTONDOWN) return false;
        const base::Rect to = drag_(static_cast<forms::HitCode>(wParam));
        const int dpi = static_cast<int>(GetDpiForWindow(window));
        const int screenDpi = forms::win32::ScreenDpi();
        SetWindowPos(window, nullptr, base::TwipsToPixels(to.left, screenDpi),
                     base::TwipsToPixels(to.top, screenDpi), base::TwipsToPixels(to.width, dpi),
                     base::TwipsToPixels(to.height, dpi), SWP_NOZORDER | SWP_NOACTIVATE);
        return true;
    }

private:
    std::function<base::Rect(forms::HitCode)> drag_;
};

// Types these keys into the next menu.
class MenuWatch final : public Watch {
public:
    explicit MenuWatch(std::vector<WPARAM> keys) : keys_(std::move(keys)) {}

    bool Handle(HWND window, UINT message, WPARAM) override {
        if (message != WM_INITMENUPOPUP) return false;
        for (const WPARAM key : keys_)
            PostMessageW(window, WM_KEYDOWN, key, 0);
        return true;
    }

private:
    std::vector<WPARAM> keys_;
};

// A window that belongs to no form stands for another program.
HWND OtherProgram() {
    static const HWND window =
        CreateWindowExW(0, L"STATIC", L"another program", WS_POPUP | WS_VISIBLE, 0, 0, 10, 10,
                        nullptr, nullptr, nullptr, nullptr);
    return window;
}

// A person comes to the window.
void Activate(HWND window) {
    forms::win32::NotePersonActed();
    SetForegroundWindow(window);
    SetActiveWindow(window);
    RunMessages();
}

bool IsPlatformButton(const forms::Control& control) {
    const forms::ControlKind kind = control.State().kind;
    return kind == forms::ControlKind::CommandButton || kind == forms::ControlKind::CheckBox ||
           kind == forms::ControlKind::OptionButton;
}

struct ModalAction {
    int depth;  // of dialogs, at which it runs
    std::function<void()> act;
};

std::vector<ModalAction>& ModalActions() {
    static std::vector<ModalAction> actions;
    return actions;
}

void CALLBACK ActInDialog(HWND, UINT, UINT_PTR timer, DWORD) {
    auto& actions = ModalActions();
    const auto due = std::find_if(actions.begin(), actions.end(), [](const ModalAction& action) {
        return forms::win32::ModalLoops() >= action.depth;
    });
    if (due == actions.end()) return;
    const auto act = std::move(due->act);
    actions.erase(due);
    KillTimer(nullptr, timer);
    act();
}

}  // namespace

void ClickOn(forms::Control& control) {
    if (!control.Visible() || !control.Enabled()) return;
    const HWND window = HandleOf(control);
    Activate(HandleOf(control.Parent()));
    if (IsPlatformButton(control)) {
        SendMessageW(window, BM_CLICK, 0, 0);
    } else {
        SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 1));
        SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(1, 1));
    }
    RunMessages();
}

void MovePointerOver(forms::Control& control, base::Twips x, base::Twips y) {
    SendMessageW(HandleOf(control), WM_MOUSEMOVE, 0, PositionIn(control.Parent(), x, y));
}

void MovePointerOver(forms::Form& form, base::Twips x, base::Twips y) {
    SendMessageW(HandleOf(form), WM_MOUSEMOVE, 0, PositionIn(form, x, y));
}

void PressOn(forms::Form& form, int button, base::Twips x, base::Twips y) {
    const UINT message = button == base::kRightButton ? WM_RBUTTONDOWN : WM_LBUTTONDOWN;
    SendMessageW(HandleOf(form), message, 0, PositionIn(form, x, y));
    RunMessages();
}

void PressKey(forms::Form& form, int keyCode, int shift) {
    TypeKey(HandleOf(form), keyCode, shift);
}

void PressKeyIn(forms::Control& control, int keyCode, int shift) {
    Activate(HandleOf(control.Parent()));
    control.SetFocus();
    TypeKey(HandleOf(control), keyCode, shift);
}

void PressOn(forms::Control& control, int button, base::Twips x, base::Twips y) {
    const UINT message = button == base::kRightButton ? WM_RBUTTONDOWN : WM_LBUTTONDOWN;
    SendMessageW(HandleOf(control), message, HeldButton(button),
                 PositionIn(control.Parent(), x, y));
    RunMessages();
}

void MoveHolding(forms::Control& control, int button, base::Twips x, base::Twips y) {
    SendMessageW(HandleOf(control), WM_MOUSEMOVE, HeldButton(button),
                 PositionIn(control.Parent(), x, y));
}

void ReleaseOn(forms::Control& control, int button, base::Twips x, base::Twips y) {
    const UINT message = button == base::kRightButton ? WM_RBUTTONUP : WM_LBUTTONUP;
    SendMessageW(HandleOf(control), message, 0, PositionIn(control.Parent(), x, y));
    RunMessages();
}

void RightClickOn(forms::Control& control, base::Twips x, base::Twips y) {
    PostMessageW(HandleOf(control), WM_RBUTTONUP, 0, PositionIn(control.Parent(), x, y));
    PressOn(control, base::kRightButton, x, y);
}

void DropFiles(forms::Form& form, const std::vector<std::string>& paths) {
    if (!DropOnto(HandleOf(form), paths)) throw std::logic_error("the window takes no files");
}

void DropFiles(forms::Control& control, const std::vector<std::string>& paths) {
    if (!DropOnto(HandleOf(control), paths)) throw std::logic_error("the control takes no files");
}

void MovePointerOff(forms::Control& control) {
    SendMessageW(HandleOf(control), WM_MOUSELEAVE, 0, 0);
}

void TypeInto(forms::TextBox& field, const std::string& text) {
    const HWND window = HandleOf(field);
    SendMessageW(window, EM_SETSEL, 0, -1);
    SendMessageW(window, EM_REPLACESEL, TRUE,
                 reinterpret_cast<LPARAM>(winapi::Utf16(text).c_str()));
}

void ChooseItem(forms::ComboBox& combo, int index) {
    const HWND window = HandleOf(combo);
    SendMessageW(window, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    SendMessageW(HandleOf(combo.Parent()), WM_COMMAND, MAKEWPARAM(combo.Id(), CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(window));
}

void ChooseLine(forms::ListBox& list, int line) {
    SendMessageW(HandleOf(list), LB_SETCURSEL, static_cast<WPARAM>(line), 0);
}

void LeaveField(forms::TextBox& field) {
    Activate(HandleOf(field.Parent()));
    SetFocus(HandleOf(field));
    SetFocus(HandleOf(field.Parent()));
}

void DragSlider(forms::Slider& slider, int value) {
    const HWND window = HandleOf(slider);
    SendMessageW(window, TBM_SETPOS, TRUE, value);
    SendMessageW(HandleOf(slider.Parent()), WM_HSCROLL, TB_THUMBTRACK,
                 reinterpret_cast<LPARAM>(window));
}

void CloseBySystem(forms::Form& form) {
    SendMessageW(HandleOf(form), WM_CLOSE, 0, 0);
    RunMessages();
}

void GoTo(forms::Form& form) {
    Activate(HandleOf(form));
}

void GoToAnotherProgram() {
    Activate(OtherProgram());
}

void ReportFromTrayIcon(forms::Form& form, int messageNumber) {
    SendMessageW(HandleOf(form), WM_MOUSEMOVE, 0, messageNumber);
    RunMessages();
}

void OnNextDrag(forms::Form& form, std::function<base::Rect(forms::HitCode)> drag) {
    Watch::Start(HandleOf(form), std::make_unique<DragWatch>(std::move(drag)));
}

void ChooseInNextMenu(forms::Form& form, const forms::Menu& menu, const forms::MenuItem& item) {
    const auto& items = menu.Items();
    const auto place = std::find(items.begin(), items.end(), &item);
    std::vector<WPARAM> keys(static_cast<std::size_t>(place - items.begin()) + 1, VK_DOWN);
    keys.push_back(VK_RETURN);
    Watch::Start(HandleOf(form), std::make_unique<MenuWatch>(std::move(keys)));
}

void OnNextModal(std::function<void()> act) {
    ModalActions().push_back({forms::win32::ModalLoops() + 1, std::move(act)});
    SetTimer(nullptr, 0, USER_TIMER_MINIMUM, ActInDialog);
}

void CancelNextMenu(forms::Form& form) {
    Watch::Start(HandleOf(form), std::make_unique<MenuWatch>(std::vector<WPARAM>{VK_ESCAPE}));
}

bool OnScreen(const forms::Form& form) {
    return form.Handle() != nullptr && IsWindowVisible(HandleOf(form)) != 0;
}

bool Topmost(const forms::Form& form) {
    return (GetWindowLongPtrW(HandleOf(form), GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
}

bool Active(const forms::Form& form) {
    return form.Handle() != nullptr && GetActiveWindow() == HandleOf(form);
}

bool ShownOn(const forms::Control& control) {
    return (GetWindowLongPtrW(HandleOf(control), GWL_STYLE) & WS_VISIBLE) != 0;
}

std::string TextOn(const forms::Control& control) {
    const HWND window = HandleOf(control);
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return winapi::Utf8(text);
}

forms::Pointer PointerOf(const forms::Form& form) {
    const HWND window = HandleOf(form);
    SendMessageW(window, WM_SETCURSOR, reinterpret_cast<WPARAM>(window),
                 MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    return GetCursor() == LoadCursorW(nullptr, IDC_SIZEALL) ? forms::Pointer::FourWaySizing
                                                            : forms::Pointer::Arrow;
}

void RunMessages() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0)
        forms::win32::Dispatch(message);
    if (forms::win32::ModalLoops() == 0) forms::win32::RunPostedTasks();
}

bool WaitUntil(const std::function<bool()>& condition) {
    constexpr ULONGLONG kDeadline = 5000;  // milliseconds
    constexpr DWORD kSlice = 20;
    for (const ULONGLONG start = GetTickCount64(); GetTickCount64() - start < kDeadline;) {
        if (condition()) return true;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, kSlice, QS_ALLINPUT);
        RunMessages();
    }
    return condition();
}

}  // namespace nqp::test
