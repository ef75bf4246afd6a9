#pragma once

#include <cstdint>
#include <string>

#include "base/event.h"
#include "base/input.h"

namespace nqp::core {

enum class PlayState : std::int32_t { Stopped = 0, Paused = 1, Playing = 2 };

inline constexpr std::int32_t kLoudest = 0;      // hundredths of a decibel
inline constexpr std::int32_t kSilent = -10000;  // hundredths of a decibel
inline constexpr double kNothingLoaded = -1.0;   // CurrentPosition without a clip, seconds
inline constexpr double kSlowestRate = 0.25;
inline constexpr double kFastestRate = 4.0;
inline constexpr int kFullScreenDisplay = 3;  // DisplaySize
inline constexpr int kWindowDisplay = 0;      // DisplaySize: inside the video window
inline constexpr int kNormalCursor = 0;       // CursorType
inline constexpr int kSizingCursor = 1;       // CursorType
inline constexpr int kStatisticsDialog = 1;   // ShowDialog
inline constexpr int kPropertiesDialog = 2;   // ShowDialog

// The media player control inside the video window: it draws the clip in a window of its own and
// plays the sound. All members are called, and all events raised, on the window thread. None of
// them throws: what cannot be done leaves the state as it is. An Open, Play or Pause may raise
// PlayStateChange before it returns, and a handler may call any member, Open included.
class MediaEngine {
public:
    MediaEngine() = default;
    MediaEngine(const MediaEngine&) = delete;
    MediaEngine& operator=(const MediaEngine&) = delete;
    virtual ~MediaEngine() = default;

    // Raised on every change, with the old and the new state. At the end of a clip it is
    // (Playing, Stopped), once, and CurrentPosition then equals Duration to the last bit.
    base::Event<PlayState, PlayState> PlayStateChange;
    // Pointer events over the picture and its black bars, relative to the control.
    base::Event<const base::MouseEvent&> MouseMove;
    base::Event<const base::MouseEvent&> MouseDown;
    base::Event<const base::MouseEvent&> MouseUp;

    // Creates the control's window as a child of `parent`, hidden and without size. Until then,
    // and after Detach, Open loads nothing. Detach closes the clip and destroys the window; the
    // video window calls it before its own window goes.
    virtual void Attach(base::NativeWindow parent, int controlId) = 0;
    virtual void Detach() = 0;

    // Non-zero when a clip is loaded and play, pause and seek work.
    virtual std::int32_t Readiness() const = 0;
    // Path of the loaded clip as it was given to Open (UTF-8); empty when nothing is loaded.
    virtual std::string FileName() const = 0;
    virtual PlayState State() const = 0;

    // Closes the clip that is loaded and loads this one (path in UTF-8). Returns when it is ready
    // to play. With AutoStart it then plays and its picture is shown; without, it waits at its
    // beginning in state Stopped. A file that cannot be played leaves nothing loaded.
    virtual void Open(const std::string& path) = 0;
    // Starts or resumes; at the end of the clip starts again from the beginning.
    virtual void Play() = 0;
    // Keeps the position; does nothing when the clip is not playing.
    virtual void Pause() = 0;

    // Seconds from the beginning; kNothingLoaded without a clip. Setting it seeks in any state,
    // clamped to 0..Duration, and keeps the play state.
    virtual double CurrentPosition() const = 0;
    virtual void SetCurrentPosition(double seconds) = 0;
    // Seconds; 0 without a clip.
    virtual double Duration() const = 0;

    // Hundredths of a decibel, kSilent..kLoudest, clamped. Reads back exactly what was set, also
    // without a clip or a sound device, and holds for every later clip.
    virtual std::int32_t Volume() const = 0;
    virtual void SetVolume(std::int32_t hundredthsOfDecibel) = 0;

    // Playback speed, 1.0 is normal; clamped to kSlowestRate..kFastestRate. Holds for later clips.
    virtual double Rate() const = 0;
    virtual void SetRate(double rate) = 0;

    virtual bool AutoStart() const = 0;
    virtual void SetAutoStart(bool on) = 0;

    // kFullScreenDisplay covers the monitor that holds the window; Escape or a double click leaves
    // it again, and DisplaySize is then kWindowDisplay.
    virtual int DisplaySize() const = 0;
    virtual void SetDisplaySize(int size) = 0;

    virtual int CursorType() const = 0;
    virtual void SetCursorType(int type) = 0;

    // kStatisticsDialog or kPropertiesDialog, modeless; other numbers do nothing.
    virtual void ShowDialog(int dialog) = 0;

    // The control inside its window; the size is in twips at the parent's resolution.
    virtual bool Visible() const = 0;
    virtual void SetVisible(bool visible) = 0;
    virtual base::Twips Width() const = 0;
    virtual void SetWidth(base::Twips width) = 0;
    virtual base::Twips Height() const = 0;
    virtual void SetHeight(base::Twips height) = 0;
};

}  // namespace nqp::core
