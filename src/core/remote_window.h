#pragma once

#include <cstdint>

#include "base/geometry.h"
#include "core/settings.h"

namespace nqp::core {

// What the video window and its menu do with the remote window.
class RemoteWindow {
public:
    // Where the remote was after its last move, whole twips: the reference for moving the video
    // window along with it.
    std::int32_t plX = 0;
    std::int32_t plY = 0;
    // The volume that a mute gives back, hundredths of a decibel, and whether it is muted.
    std::int32_t CurrentVolume = 0;
    bool muted = false;

    virtual const SharedSettings& Settings() const = 0;

    virtual void Picture1_Click() = 0;   // exit
    virtual void Picture7_Click() = 0;   // play
    virtual void Picture9_Click() = 0;   // pause, resume
    virtual void Picture10_Click() = 0;  // options
    virtual void Picture11_Click() = 0;  // open a media file
    virtual void next_playlist_item() = 0;
    // Dresses the remote anew. Throws forms::RunTimeError at a file of the skin it cannot use; what
    // came before it stays.
    virtual void goskin() = 0;

    virtual void ShowRemote() = 0;
    virtual void ShowRemoteOnTop() = 0;
    virtual void HideRemote() = 0;
    virtual base::Point RemotePosition() const = 0;
    virtual void MoveRemote(base::Point topLeft) = 0;

protected:
    ~RemoteWindow() = default;
};

}  // namespace nqp::core
