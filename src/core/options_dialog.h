#pragma once

namespace nqp::core {

// The dialog for the settings. It reads the settings file when it opens and writes it when the
// person accepts.
class OptionsDialog {
public:
    // Above all other windows; returns when it is closed.
    virtual void ShowOnTopModal() = 0;
    // As if it was cancelled; nothing when it is not open.
    virtual void Close() = 0;

protected:
    ~OptionsDialog() = default;
};

}  // namespace nqp::core
