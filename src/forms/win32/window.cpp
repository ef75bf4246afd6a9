#include "forms/win32/window.h"

#include <commctrl.h>
#include <dwmapi.h>

#include <algorithm>
#include <unordered_map>

#include "base/resample.h"
#include "forms/run_time_error.h"
#include "forms/win32/control_window.h"
#include "forms/win32/file_drop.h"
#include "forms/win32/line_control.h"
#include "forms/win32/message_loop.h"
#include "forms/win32/screen.h"
#include "forms/win32/winapi/gdi.h"
#include "forms/win32/winapi/mouse.h"
#include "forms/win32/winapi/text.h"

namespace nqp::forms {
namespace win32 {
namespace {

std::unordered_map<HWND, Window*>& Windows() {
    static std::unordered_map<HWND, Window*> windows;
    return windows;
}

struct Styles {
    DWORD style;
    DWORD extended;
};

Styles StylesOf(const WindowState& state) {
    const DWORD topmost = state.topmost ? WS_EX_TOPMOST : 0;
    switch (state.frame) {
        case FrameStyle::Popup:
            return {WS_POPUP | WS_CLIPCHILDREN, WS_EX_TOOLWINDOW | topmost};
        case FrameStyle::Dialog:
            return {WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN |
                        (state.maximized ? WS_THICKFRAME | WS_MAXIMIZEBOX : 0U) |
                        (state.minimizable ? WS_MINIMIZEBOX : 0U),
                    WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT | topmost};
        default:
            return {WS_POPUP | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN,
                    WS_EX_APPWINDOW | topmost | (state.tabMoves ? WS_EX_CONTROLPARENT : 0U)};
    }
}

std::wstring RegisterWindowClass(const WindowState& state, WNDPROC procedure) {
    const std::wstring name = L"nqp." + winapi::Utf16(state.name);
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.style = CS_DBLCLKS | (state.frame == FrameStyle::Popup ? CS_DROPSHADOW : 0U);
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hIcon = LoadIconW(windowClass.hInstance, MAKEINTRESOURCEW(winapi::kProgramIcon));
    windowClass.lpszClassName = name.c_str();
    RegisterClassExW(&windowClass);  // fails, harmlessly, from the second time on
    return name;
}

HCURSOR CursorOf(Pointer pointer) {
    switch (pointer) {
        case Pointer::FourWaySizing:
            return LoadCursorW(nullptr, IDC_SIZEALL);
        default:
            return LoadCursorW(nullptr, IDC_ARROW);
    }
}

// Small rounded corners where the system has them, like its own menus.
void RoundCorners(HWND hwnd) {
    constexpr DWORD kCornerPreference = 33;
    constexpr int kRoundSmall = 3;
    DwmSetWindowAttribute(hwnd, kCornerPreference, &kRoundSmall, sizeof kRoundSmall);
}

}  // namespace

Window::Window(const WindowState& state, WindowEvents& events, HWND owner) : state_(state) {
    Create(owner);
    events_ = &events;
    if (!state_.takesFiles) return;
    BeginFileDrop(hwnd_, [this](const std::vector<std::string>& paths) {
        if (events_ != nullptr) events_->OnFilesDropped(paths);
    });
}

Window::~Window() {
    events_ = nullptr;
    if (toolTips_ != nullptr) DestroyWindow(toolTips_);
    if (state_.takesFiles) EndFileDrop(hwnd_);
    if (hwnd_ != nullptr) DestroyWindow(hwnd_);
}

Window* Window::Of(HWND hwnd) {
    const auto found = Windows().find(hwnd);
    return found == Windows().end() ? nullptr : found->second;
}

void Window::Create(HWND owner) {
    const std::wstring className = RegisterWindowClass(state_, Procedure);
    const Styles styles = StylesOf(state_);
    const int screenDpi = ScreenDpi();
    CreateWindowExW(styles.extended, className.c_str(), winapi::Utf16(state_.caption).c_str(),
                    styles.style, base::TwipsToPixels(state_.bounds.left, screenDpi),
                    base::TwipsToPixels(state_.bounds.top, screenDpi), 0, 0, owner, nullptr,
                    GetModuleHandleW(nullptr), this);
    dpi_ = static_cast<int>(GetDpiForWindow(hwnd_));
    RECT frame{0, 0, base::TwipsToPixels(state_.bounds.width, dpi_),
               base::TwipsToPixels(state_.bounds.height, dpi_)};
    if (IsDialog()) {
        AdjustWindowRectExForDpi(&frame, styles.style, FALSE, styles.extended,
                                 static_cast<UINT>(dpi_));
    }
    SetWindowPos(hwnd_, nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    if (state_.frame == FrameStyle::Popup) RoundCorners(hwnd_);
}

LRESULT CALLBACK Window::Procedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (message == WM_NCCREATE) {
        auto* window =
            static_cast<Window*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        window->hwnd_ = hwnd;
        Windows()[hwnd] = window;
    }
    Window* window = Of(hwnd);
    if (window == nullptr) return DefWindowProcW(hwnd, message, wParam, lParam);
    return window->Handle(message, wParam, lParam);
}

LRESULT Window::Handle(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    // A handler may unload this window; its object stays until the message loop runs again.
    const HWND hwnd = hwnd_;
    if (message == WM_NCDESTROY) {
        Windows().erase(hwnd);
        hwnd_ = nullptr;
        if (events_ != nullptr) events_->OnDestroyed();
        return DefWindowProcW(hwnd, message, wParam, lParam);
    }
    if (HandleMouse(message, wParam, lParam)) return 0;
    if (HandleNotification(message, wParam, lParam)) return 0;
    switch (message) {
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            Paint();
            return 0;
        case WM_SETCURSOR:
            if (reinterpret_cast<HWND>(wParam) != hwnd || LOWORD(lParam) != HTCLIENT) break;
            SetCursor(CursorOf(state_.pointer));
            return TRUE;
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORLISTBOX:
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLORBTN:
            return ColourOfControl(reinterpret_cast<HWND>(lParam), reinterpret_cast<HDC>(wParam));
        case DM_GETDEFID:
            return DefaultButton();
        case WM_GETMINMAXINFO:
            // The form decides how small it may become, not the width of a caption it has not got.
            reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {1, 1};
            return 0;
        default:
            break;
    }
    return DefWindowProcW(hwnd, message, wParam, lParam);
}

bool Window::HandleMouse(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    const auto mouse = winapi::ReadMouse(message, wParam, lParam, dpi_);
    if (!mouse || events_ == nullptr) return false;
    switch (mouse->action) {
        case winapi::MouseAction::Down:
            events_->OnMouseDown(mouse->event);
            break;
        case winapi::MouseAction::Move:
            events_->OnMouseMove(mouse->event);
            break;
        case winapi::MouseAction::Up:
            events_->OnMouseUp(mouse->event);
            break;
    }
    return true;
}

bool Window::HandleNotification(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (events_ == nullptr) return false;
    switch (message) {
        case WM_WINDOWPOSCHANGED:
            // A minimised window is parked far outside of every screen.
            if (IsIconic(hwnd_) == 0) events_->OnBoundsChanged(Bounds());
            if ((reinterpret_cast<const WINDOWPOS*>(lParam)->flags & SWP_NOSIZE) == 0) Resized();
            return false;
        case WM_ACTIVATE:
            HandleActivation(LOWORD(wParam) != WA_INACTIVE, reinterpret_cast<HWND>(lParam));
            return TabMoves() && LOWORD(wParam) != WA_INACTIVE;
        case WM_MOUSEACTIVATE:
            // A click that is to activate the window; a menu's hit code comes from a window manager
            // that gives the focus on its own account.
            if (LOWORD(lParam) != HTMENU) NotePersonActed();
            return false;
        case WM_NEXTDLGCTL:
            GoToControl(LOWORD(lParam) != 0 ? reinterpret_cast<HWND>(wParam)
                                            : GetNextDlgTabItem(hwnd_, ::GetFocus(), wParam != 0));
            return true;
        case WM_CLOSE:
            events_->OnCloseRequested();
            return true;
        case WM_ENDSESSION:
            if (wParam != 0) events_->OnCloseRequested();
            return true;
        case WM_DPICHANGED:
            ChangeDpi(LOWORD(wParam), *reinterpret_cast<const RECT*>(lParam));
            return true;
        case WM_DRAWITEM: {
            const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
            if (ControlWindow* control = ControlWindow::Of(item.hwndItem)) control->DrawItem(item);
            return true;
        }
        case WM_COMMAND:
        case WM_HSCROLL:
            if (ControlWindow* control = ControlWindow::Of(reinterpret_cast<HWND>(lParam))) {
                control->Notify(message, HIWORD(wParam));
            }
            return true;
        default:
            return false;
    }
}

// As the platform's dialogs do it: a field that is come to by a key is selected whole.
void Window::GoToControl(HWND control) {
    if (control == nullptr) return;
    ::SetFocus(control);
    const LRESULT kind = SendMessageW(control, WM_GETDLGCODE, 0, 0);
    if ((kind & DLGC_HASSETSEL) != 0) SendMessageW(control, EM_SETSEL, 0, -1);
}

// `other` is the window that was active before, or is next; null for one of another program.
void Window::HandleActivation(bool active, HWND other) {
    RememberFocus(active);
    if (!active) {
        deactivating_ = true;
        events_->OnDeactivated();
        deactivating_ = false;
        return;
    }
    if (PersonActedLast() && Of(other) != nullptr && !Opened(other)) events_->OnActivated();
}

// Whether a window of the platform, also one that is no form, was opened by this one.
bool Window::Opened(HWND other) const {
    for (HWND owner = GetWindow(other, GW_OWNER); owner != nullptr;
         owner = GetWindow(owner, GW_OWNER)) {
        if (owner == hwnd_) return true;
    }
    return false;
}

// The focus goes back to the control that had it; the system would leave it on the window itself.
// Only a dialog starts with the focus on its first control.
void Window::RememberFocus(bool active) {
    if (!TabMoves()) return;
    active_ = active;
    if (!active) {
        focus_ = ::GetFocus();
        return;
    }
    const bool usable = IsChild(hwnd_, focus_) != 0 && IsWindowVisible(focus_) != 0;
    if (!usable) focus_ = IsDialog() ? GetNextDlgTabItem(hwnd_, nullptr, FALSE) : hwnd_;
    ::SetFocus(focus_);
}

HWND Window::Focus() const {
    return active_ || !TabMoves() ? ::GetFocus() : focus_;
}

void Window::SetFocusTo(HWND control) {
    if (active_ || !TabMoves()) ::SetFocus(control);
    focus_ = control;
}

void Window::ChangeDpi(int dpi, const RECT& suggested) {
    dpi_ = dpi;
    scaledBackdrop_ = {};
    backdrop_.reset();
    SetWindowPos(hwnd_, nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
                 suggested.bottom - suggested.top, SWP_NOZORDER | SWP_NOACTIVATE);
    for (ControlWindow* control : controls_)
        control->Update();
    FaceChanged();
    if (events_ != nullptr) events_->OnResolutionChanged();
}

void Window::Paint() {
    Guarded(Origin::Program, [this] {
        const BufferedPaint paint(hwnd_);
        DrawFace(paint.Target());
    });
}

void Window::DrawFace(HDC target) {
    RECT area{};
    GetClientRect(hwnd_, &area);
    const Canvas* backdrop = DrawnBackdrop();
    if (backdrop == nullptr || !backdropIsOpaque_) Fill(target, area, state_.backColor);
    if (backdrop != nullptr)
        backdropIsOpaque_ ? backdrop->CopyTo(target) : backdrop->BlendTo(target);
    for (const LineControl* line : lines_)
        line->Draw(target, dpi_);
}

// Null when there is none. Scaling is the slow step and does not depend on the window's size.
const Canvas* Window::DrawnBackdrop() {
    const Backdrop& wanted = state_.backdrop;
    if (wanted.picture == nullptr || wanted.picture->Empty()) return nullptr;
    if (scaledBackdrop_.Empty()) {
        backdropIsOpaque_ = wanted.picture->Opaque();
        scaledBackdrop_ =
            base::Resample(*wanted.picture, base::TwipsToPixels(wanted.designSize.width, dpi_),
                           base::TwipsToPixels(wanted.designSize.height, dpi_));
    }
    RECT area{};
    GetClientRect(hwnd_, &area);
    const bool fits = backdrop_ != nullptr && backdrop_->Size().cx == area.right &&
                      backdrop_->Size().cy == area.bottom;
    if (!fits && area.right > 0 && area.bottom > 0) {
        backdrop_ = std::make_unique<Canvas>(
            base::ExtendAt(scaledBackdrop_, base::TwipsToPixels(wanted.stretchPoint.x, dpi_),
                           base::TwipsToPixels(wanted.stretchPoint.y, dpi_),
                           static_cast<int>(area.right), static_cast<int>(area.bottom)));
    }
    return backdrop_.get();
}

void Window::SetBackdrop(const Backdrop& backdrop) {
    state_.backdrop = backdrop;
    scaledBackdrop_ = {};
    backdrop_.reset();
    FaceChanged();
}

// The right and the lower part of a backdrop move with their edges.
void Window::Resized() {
    if (state_.backdrop.picture != nullptr) FaceChanged();
}

// Controls that are not opaque show the face too.
void Window::FaceChanged() {
    RedrawWindow(hwnd_, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN);
}

LRESULT Window::ColourOfControl(HWND hwnd, HDC canvas) noexcept {
    const ControlWindow* control = ControlWindow::Of(hwnd);
    const Color fore = control != nullptr ? control->State().foreColor : 0;
    const Color back = control != nullptr ? control->State().backColor : state_.backColor;
    SetTextColor(canvas, fore);
    SetBkColor(canvas, back);
    SetDCBrushColor(canvas, back);
    return reinterpret_cast<LRESULT>(GetStockObject(DC_BRUSH));
}

LRESULT Window::DefaultButton() const {
    for (const ControlWindow* control : controls_) {
        if (control->State().isDefault) return MAKELRESULT(control->State().id, DC_HASDEFID);
    }
    return 0;
}

bool Window::HandleKey(WPARAM key) {
    return events_ != nullptr &&
           events_->OnKeyDown({static_cast<int>(key), winapi::HeldShiftKeys()});
}

void Window::Remove(ControlWindow& control) {
    std::erase(controls_, &control);
}

void Window::Remove(LineControl& line) {
    std::erase(lines_, &line);
}

void Window::SetToolTip(HWND control, const std::string& text) {
    if (toolTips_ == nullptr) {
        // Topmost by itself: as a window owned by this one it would hold this one down.
        toolTips_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                                    WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0, 0, nullptr,
                                    nullptr, GetModuleHandleW(nullptr), nullptr);
    }
    std::wstring wide = winapi::Utf16(text);
    TOOLINFOW tool{};
    tool.cbSize = sizeof tool;
    tool.uFlags = TTF_IDISHWND;
    tool.hwnd = hwnd_;
    tool.uId = reinterpret_cast<UINT_PTR>(control);
    tool.lpszText = wide.data();
    SendMessageW(toolTips_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    if (!text.empty()) SendMessageW(toolTips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

void Window::ShowToolTips(MSG message) const {
    SendMessageW(toolTips_, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&message));
}

void Window::ShowModal(const std::function<void()>& shown) {
    modal_.emplace(hwnd_);
    Show();
    shown();
    RunModalLoop([this] { return !modal_; });
    modal_.reset();
}

void Window::Retire() {
    NoteProgramActed();
    events_ = nullptr;
    LeaveToOwner();
    ShowWindow(hwnd_, SW_HIDE);
}

// The owner becomes active before this window goes, so that nobody has to look for a successor and
// finds one after the program has already put another window in front.
void Window::LeaveToOwner() {
    modal_.reset();  // first, so that the owner can become active
    const HWND owner = GetWindow(hwnd_, GW_OWNER);
    const bool active = GetActiveWindow() == hwnd_ && !deactivating_;
    const bool usable =
        IsWindowVisible(owner) != 0 && IsWindowEnabled(owner) != 0 && IsIconic(owner) == 0;
    if (active && usable) SetActiveWindow(owner);
}

void Window::Show() {
    NoteProgramActed();
    ShowWindow(hwnd_, ShowCommand());
    Activate();
}

int Window::ShowCommand() const {
    if (IsIconic(hwnd_) != 0) return SW_RESTORE;
    if (state_.maximized) return SW_SHOWMAXIMIZED;
    return IsWindowEnabled(hwnd_) != 0 ? SW_SHOW : SW_SHOWNA;
}

// A window that takes no input leaves the keys to the dialog that it waits for.
void Window::Activate() {
    SetForegroundWindow(IsWindowEnabled(hwnd_) != 0 ? hwnd_ : ModalState::Dialog());
}

void Window::ShowInactive() {
    NoteProgramActed();
    // Where it was in the order: the active window stays above it.
    SetWindowPos(hwnd_, nullptr, 0, 0, 0, 0,
                 SWP_SHOWWINDOW | SWP_NOACTIVATE | SWP_NOZORDER | SWP_NOMOVE | SWP_NOSIZE);
}

void Window::ShowOnTop() {
    NoteProgramActed();
    ShowWindow(hwnd_, SW_SHOWNOACTIVATE);
    SetWindowPos(hwnd_, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void Window::Hide() {
    NoteProgramActed();
    if (modal_) LeaveToOwner();
    ShowWindow(hwnd_, SW_HIDE);
}

void Window::Move(const base::Rect& bounds) {
    const int screenDpi = ScreenDpi();
    SetWindowPos(hwnd_, nullptr, base::TwipsToPixels(bounds.left, screenDpi),
                 base::TwipsToPixels(bounds.top, screenDpi),
                 base::TwipsToPixels(bounds.width, dpi_), base::TwipsToPixels(bounds.height, dpi_),
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

base::Rect Window::Bounds() const {
    RECT pixels{};
    GetWindowRect(hwnd_, &pixels);
    if (IsIconic(hwnd_) != 0) {
        WINDOWPLACEMENT placement{};
        placement.length = sizeof placement;
        GetWindowPlacement(hwnd_, &placement);
        pixels = placement.rcNormalPosition;
    }
    base::Rect bounds = ScreenRectangle(pixels);
    bounds.width = base::PixelsToTwips(static_cast<int>(pixels.right - pixels.left), dpi_);
    bounds.height = base::PixelsToTwips(static_cast<int>(pixels.bottom - pixels.top), dpi_);
    return bounds;
}

base::Size Window::ClientSize() const {
    RECT area{};
    GetClientRect(hwnd_, &area);
    return {base::PixelsToTwips(static_cast<int>(area.right), dpi_),
            base::PixelsToTwips(static_cast<int>(area.bottom), dpi_)};
}

void Window::SetCaption(const std::string& caption) {
    SetWindowTextW(hwnd_, winapi::Utf16(caption).c_str());
}

void Window::Maximize() {
    state_.maximized = true;
    if (IsWindowVisible(hwnd_) != 0) ShowWindow(hwnd_, SW_SHOWMAXIMIZED);
}

base::Twips Window::TwipsPerPixel() const {
    return base::PixelsToTwips(1, dpi_);
}

float Window::ScreenScale() const {
    return static_cast<float>(dpi_) / static_cast<float>(ScreenDpi());
}

void Window::SetTopmost(bool topmost) {
    NoteProgramActed();
    SetWindowPos(hwnd_, topmost ? HWND_TOPMOST : HWND_NOTOPMOST, 1, 1, 1, 1,
                 SWP_NOMOVE | SWP_NOSIZE);
}

void Window::BringToFront() {
    NoteProgramActed();
    const UINT waits = IsWindowEnabled(hwnd_) != 0 ? 0U : SWP_NOACTIVATE;
    SetWindowPos(hwnd_, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | waits);
    Activate();
}

void Window::SetPointer(Pointer pointer) {
    if (state_.pointer == pointer) return;
    state_.pointer = pointer;
    // The system asks for the shape before it reports the move that changed it.
    POINT position{};
    GetCursorPos(&position);
    if (WindowFromPoint(position) == hwnd_) SetCursor(CursorOf(pointer));
}

void Window::Drag(HitCode code) {
    ReleaseCapture();
    SendMessageW(hwnd_, WM_NCLBUTTONDOWN, static_cast<WPARAM>(code), 0);
}

}  // namespace win32

std::unique_ptr<WindowPeer> CreateWindowPeer(const WindowState& state, WindowEvents& events,
                                             WindowPeer* opener) {
    const HWND owner = opener != nullptr ? static_cast<HWND>(opener->Handle()) : nullptr;
    return std::make_unique<win32::Window>(state, events, owner);
}

}  // namespace nqp::forms
