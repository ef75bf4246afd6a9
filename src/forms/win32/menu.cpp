#include <windows.h>

#include <memory>
#include <type_traits>

#include "forms/menu.h"
#include "forms/run_time_error.h"
#include "forms/win32/winapi/text.h"
#include "forms/win32/window.h"

namespace nqp::forms::win32 {
namespace {

struct MenuDeleter {
    void operator()(HMENU menu) const { DestroyMenu(menu); }
};
using MenuHandle = std::unique_ptr<std::remove_pointer_t<HMENU>, MenuDeleter>;

MenuHandle Build(const Menu& menu) {
    MenuHandle handle(CreatePopupMenu());
    UINT_PTR command = 1;
    for (const MenuItem* item : menu.Items()) {
        const UINT mark = item->Checked() ? MF_CHECKED : MF_UNCHECKED;
        AppendMenuW(handle.get(), MF_STRING | mark, command++,
                    winapi::Utf16(item->Caption()).c_str());
    }
    return handle;
}

}  // namespace

void Window::PopUp(Menu& menu, const base::Point* at) {
    const MenuHandle handle = Build(menu);
    POINT place{};
    if (at != nullptr) {
        place = {base::TwipsToPixels(at->x, dpi_), base::TwipsToPixels(at->y, dpi_)};
        ClientToScreen(hwnd_, &place);
    } else {
        GetCursorPos(&place);
    }
    // Without these two a menu of a window in the background would not close on a click elsewhere.
    SetForegroundWindow(hwnd_);
    const int command = TrackPopupMenu(handle.get(), TPM_RETURNCMD | TPM_RIGHTBUTTON, place.x,
                                       place.y, 0, hwnd_, nullptr);
    PostMessageW(hwnd_, WM_NULL, 0, 0);
    if (IsWindowEnabled(hwnd_) == 0) Activate();  // which is a dialog's turn then
    if (command < 1) return;
    MenuItem* chosen = menu.Items()[static_cast<std::size_t>(command - 1)];
    Guarded(Origin::User, [chosen] { chosen->Click(); });
}

}  // namespace nqp::forms::win32
