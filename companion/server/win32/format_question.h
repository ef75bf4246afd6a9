#pragma once

#include "dialog/format_dialog.h"
#include "server/cut_work.h"
#include "server/win32/window_thread.h"

namespace nqp::companion {

// Where the format dialog goes: the monitor of the wizard that a person works with, or the main
// one.
base::Rect AreaForDialog();

// Shows the dialog on the window thread, in whatever message loop runs there.
class DialogQuestion final : public FormatQuestion {
public:
    DialogQuestion(FormatDialog& dialog, WindowThread& windows)
        : dialog_(dialog), windows_(windows) {}

    std::optional<FormatChoice> Ask(const FormatOffer& offer,
                                    std::function<bool()> cancelled) override;

private:
    FormatDialog& dialog_;
    WindowThread& windows_;
};

}  // namespace nqp::companion
