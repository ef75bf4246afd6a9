#pragma once

#include <windows.h>

#include <commctrl.h>

#include "forms/win32/control_window.h"

namespace nqp::forms::win32 {

// A list box over the platform's virtual list view: the lines stay with their owner.
class ListControl final : public ControlWindow, public ListPeer {
public:
    ListControl(const ControlState& state, ControlEvents& events, Window& window);

    void Notify(UINT, WORD) override {}
    LRESULT NotifyOfList(const NMHDR& header) override;
    void DrawItem(const DRAWITEMSTRUCT& item) override;

    ListPeer* AsList() override { return this; }
    std::vector<int> SelectedLines() const override;
    int FocusedLine() const override;
    void SelectLines(std::span<const int> lines) override;
    void FocusLine(int line) override;

private:
    static LRESULT CALLBACK ListProcedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam,
                                          UINT_PTR id, DWORD_PTR) noexcept;
    bool TakesKey(WPARAM key) const;
    int Count() const;
    std::string_view Line(int index) const;
    int Find(const NMLVFINDITEMW& search) const;
    int WidthOfLines() const;
    void FitWidth();
    void UpdateKind() override;

    int shownCount_ = 0;
    int widthOfLines_ = 0;  // pixels
};

}  // namespace nqp::forms::win32
