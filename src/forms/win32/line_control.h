#pragma once

#include <windows.h>

#include "forms/backend.h"

namespace nqp::forms::win32 {

class Window;

// A line on the face of its window; no window of its own.
class LineControl final : public ControlPeer {
public:
    LineControl(const ControlState& state, Window& window);
    ~LineControl() override;
    LineControl(const LineControl&) = delete;
    LineControl& operator=(const LineControl&) = delete;

    void Draw(HDC target, int dpi) const;

    void Update() override;
    void SetFocus() override {}
    bool HasFocus() const override { return false; }
    void Retire() override {}

private:
    const ControlState& state_;
    Window& window_;
};

}  // namespace nqp::forms::win32
