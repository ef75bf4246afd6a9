#pragma once

#include <windows.h>

#include "forms/win32/control_window.h"

namespace nqp::forms::win32 {

// The platform's list box without lines of its own: it knows how many there are and which are
// selected, and they are drawn as they come into sight.
class ListControl final : public ControlWindow, public ListPeer {
public:
    ListControl(const ControlState& state, ControlEvents& events, Window& window);

    void Notify(UINT message, WORD code) override;
    void DrawItem(const DRAWITEMSTRUCT& item) override;

    ListPeer* AsList() override { return this; }
    std::vector<int> SelectedLines() const override;
    int FocusedLine() const override;
    void SelectLines(std::span<const int> lines) override;
    void FocusLine(int line) override;

private:
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) noexcept override;
    bool HandleInput(UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    bool TakesKey(WPARAM key) const;
    void GoToLineBeginningWith(wchar_t letter);
    int Count() const;
    std::string_view Line(int index) const;
    int WidthOfLines() const;
    void ShowLines();
    void UpdateKind() override;

    int shownVersion_ = -1;  // none yet
};

}  // namespace nqp::forms::win32
