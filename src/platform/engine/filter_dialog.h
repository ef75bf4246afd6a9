#pragma once

#include <vector>

#include "platform/engine/dialog_window.h"
#include "platform/engine/engine_dialogs.h"

namespace nqp::platform {

// Lists the filters that play the clip, and opens the settings of one that has any.
class FilterDialog final : public DialogWindow {
public:
    FilterDialog(HWND owner, ClipInformation& clip);

    void Refresh();

private:
    void OnCommand(int id, int notification) override;
    std::size_t Selected() const;
    void UpdateButton();
    void ShowProperties();

    ClipInformation& clip_;
    std::vector<FilterEntry> filters_;
    HWND list_ = nullptr;
    HWND properties_ = nullptr;
};

}  // namespace nqp::platform
