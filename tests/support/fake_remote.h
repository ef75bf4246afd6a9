#pragma once

#include "core/remote_window.h"

namespace nqp::test {

// A remote window that does nothing but hold settings; a test overrides what it watches.
class FakeRemote : public core::RemoteWindow {
public:
    core::SharedSettings settings;

    const core::SharedSettings& Settings() const override { return settings; }
    void Picture1_Click() override {}
    void Picture7_Click() override {}
    void Picture9_Click() override {}
    void Picture10_Click() override {}
    void Picture11_Click() override {}
    void goskin() override {}
    void next_playlist_item() override {}
    void ShowRemote() override {}
    void ShowRemoteOnTop() override {}
    void HideRemote() override {}
    base::Point RemotePosition() const override { return {}; }
    void MoveRemote(base::Point) override {}
};

}  // namespace nqp::test
