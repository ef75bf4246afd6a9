#pragma once

#include <memory>
#include <optional>

#include "forms/win32/control_window.h"
#include "forms/win32/graphics.h"

namespace nqp::forms::win32 {

// A label or a picture box.
class DrawnControl final : public ControlWindow {
public:
    DrawnControl(const ControlState& state, ControlEvents& events, Window& window);

    void Notify(UINT, WORD) override {}

private:
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) noexcept override;
    bool HandleMouse(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    void ReleaseAt(HWND hwnd, LPARAM position, const base::MouseEvent& event) noexcept;
    void WatchForLeave(HWND hwnd);
    LRESULT WantedKeys(LPARAM message) const;
    void LeaveOrStay() noexcept;
    bool PointerIsOver() const;
    void LoseCapture(HWND to) noexcept;
    bool TakesKeys() const;
    void Paint(HWND hwnd);
    void DrawPicture(HDC target, const RECT& area);
    void DrawCaption(HDC target, RECT area);
    UINT AccessKeyFormat() const;
    void UpdateKind() override;
    void BecameVisible() override;

    std::string shownText_;
    Picture scaledFrom_;
    std::unique_ptr<Canvas> scaled_;  // the picture at the control's size
    bool opaque_ = false;
    std::optional<base::MouseEvent> held_;  // the press whose release is still to come
    bool watching_ = false;                 // the pointer is over the control
    bool focused_ = false;
};

}  // namespace nqp::forms::win32
