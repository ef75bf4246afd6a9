#pragma once

#include "forms/win32/control_window.h"

namespace nqp::forms::win32 {

// A label, a line or a picture box.
class DrawnControl final : public ControlWindow {
public:
    DrawnControl(const ControlState& state, ControlEvents& events, Window& window);

    void Notify(UINT, WORD) override {}

private:
    static LRESULT CALLBACK Procedure(HWND hwnd, UINT message, WPARAM wParam,
                                      LPARAM lParam) noexcept;
    LRESULT Handle(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    bool HandleMouse(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    void ReleaseAt(HWND hwnd, LPARAM position, const base::MouseEvent& event) noexcept;
    void Paint(HWND hwnd);
    void UpdateKind() override;
};

}  // namespace nqp::forms::win32
