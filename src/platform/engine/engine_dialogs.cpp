#include "platform/engine/engine_dialogs.h"

#include "platform/engine/filter_dialog.h"
#include "platform/engine/statistics_dialog.h"

namespace nqp::platform {

namespace {

template <class Dialog>
bool IsOpen(const std::unique_ptr<Dialog>& dialog) {
    return dialog && dialog->Handle() != nullptr;
}

}  // namespace

EngineDialogs::EngineDialogs(ClipInformation& clip) : clip_(clip) {}
EngineDialogs::~EngineDialogs() = default;

void EngineDialogs::ShowStatistics(base::NativeWindow owner) {
    if (IsOpen(statistics_)) {
        statistics_->BringToFront();
    } else {
        statistics_ = std::make_unique<StatisticsDialog>(static_cast<HWND>(owner), clip_);
    }
}

void EngineDialogs::ShowFilters(base::NativeWindow owner) {
    if (IsOpen(filters_)) {
        filters_->BringToFront();
    } else {
        filters_ = std::make_unique<FilterDialog>(static_cast<HWND>(owner), clip_);
    }
}

void EngineDialogs::Update() {
    if (IsOpen(statistics_)) statistics_->Refresh();
    if (IsOpen(filters_)) filters_->Refresh();
}

void EngineDialogs::Close() {
    statistics_.reset();
    filters_.reset();
}

}  // namespace nqp::platform
