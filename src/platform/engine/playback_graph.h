#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/input.h"
#include "core/media_engine.h"
#include "platform/engine/picture_layout.h"

namespace nqp::platform {

enum class GraphEvent {
    None,
    Completed,       // everything was played
    Failed,          // playback broke off
    PictureChanged,  // the size of the picture is another one now
};

// What is really known about the playback; a figure that the platform does not give is absent.
struct PlaybackFigures {
    std::string pictureFormat;
    PixelSize pictureSize;
    std::string soundFormat;
    std::optional<double> nominalFrameRate;  // frames per second, from the clip
    std::optional<int> framesDrawn;
    bool drawnMeansDelivered = false;  // what is counted is the frames that reach the renderer
    std::optional<int> framesDropped;
    std::optional<double> averageFrameRate;  // frames per second, measured
    std::optional<double> jitter;            // milliseconds
    std::vector<std::string> filters;
};

// One part of the graph that does the work, as the properties dialog lists it.
struct FilterEntry {
    std::string name;
    bool hasProperties = false;
};

// One loaded clip on one of the platform's media stacks, ready and held still at its beginning.
// It only moves when it is told to; the play state and what the program sees of it are kept by the
// engine. Times are seconds. Every member is called on the window thread.
class PlaybackGraph {
public:
    PlaybackGraph() = default;
    PlaybackGraph(const PlaybackGraph&) = delete;
    PlaybackGraph& operator=(const PlaybackGraph&) = delete;
    virtual ~PlaybackGraph() = default;

    virtual bool Run() = 0;
    virtual bool Pause() = 0;
    // Called while held still; shows the picture of that time.
    virtual bool Seek(double seconds) = 0;
    // Called while held still; keeps the position. False when the clip goes on as before.
    virtual bool SetRate(double rate) = 0;
    virtual void SetVolume(std::int32_t hundredthsOfDecibel) = 0;

    virtual double Position() const = 0;
    virtual double Duration() const = 0;
    // The next thing that happened; to be called until it answers None.
    virtual GraphEvent NextEvent() = 0;

    // Some of the clip's picture could not be shown: another media stack may do better.
    virtual bool LacksPicture() const = 0;
    // The shape in which the picture is to be seen; empty without a picture.
    virtual PixelSize PictureShape() const = 0;
    // Moves the picture into another window; it takes no mouse input of its own there.
    virtual void MovePictureTo(base::NativeWindow window) = 0;
    virtual void PlacePicture(const PixelRect& place) = 0;
    virtual void ShowPicture(bool visible) = 0;
    // Called while held still at that time, after the picture's window changed. A renderer that
    // paints by itself what it holds needs nothing.
    virtual void PaintHeldPicture(double seconds) = 0;

    virtual PlaybackFigures Figures() const = 0;
    virtual std::vector<FilterEntry> Filters() const = 0;
    // Modal; `filter` is an index into Filters().
    virtual void ShowFilterProperties(std::size_t filter, base::NativeWindow owner) = 0;
};

// Loads the clip into `window`, which gets `message` posted when NextEvent has something new.
// Answers nothing when this media stack cannot play the file.
using GraphOpener = std::function<std::unique_ptr<PlaybackGraph>(
    const std::wstring& path, base::NativeWindow window, unsigned message)>;

// The engine over the given media stacks, in the order in which they are tried.
std::unique_ptr<core::MediaEngine> CreateMediaEngine(std::vector<GraphOpener> openers);

}  // namespace nqp::platform
