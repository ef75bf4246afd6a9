#pragma once

#include <memory>
#include <vector>

#include "platform/engine/playback_graph.h"

namespace nqp::platform {

// What the engine's own dialogs show.
class ClipInformation {
public:
    virtual const core::MediaEngine& Engine() const = 0;
    virtual PlaybackFigures Figures() const = 0;
    virtual std::vector<FilterEntry> Filters() const = 0;
    virtual void ShowFilterProperties(std::size_t filter, base::NativeWindow owner) = 0;

protected:
    ~ClipInformation() = default;
};

class StatisticsDialog;
class FilterDialog;

// The two modeless dialogs of the engine, one window of each at most.
class EngineDialogs {
public:
    explicit EngineDialogs(ClipInformation& clip);
    ~EngineDialogs();

    void ShowStatistics(base::NativeWindow owner);
    void ShowFilters(base::NativeWindow owner);
    // The clip was opened or closed.
    void Update();
    void Close();

private:
    ClipInformation& clip_;
    std::unique_ptr<StatisticsDialog> statistics_;
    std::unique_ptr<FilterDialog> filters_;
};

}  // namespace nqp::platform
