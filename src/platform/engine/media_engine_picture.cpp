// The window side of the media player control: size, place of the picture, full screen, dialogs.

#include <algorithm>

#include "platform/engine/media_engine_impl.h"

namespace nqp::platform {

void MediaEngineImpl::SetVisible(bool visible) {
    visible_ = visible;
    if (view_) view_->SetVisible(visible);
    if (graph_ && fullScreen_) graph_->ShowPicture(visible);
    if (view_ && visible) view_->AskForPicture();
}

void MediaEngineImpl::OnPictureWanted() {
    const bool held = graph_ && state_ != core::PlayState::Playing;
    if (held && visible_) graph_->PaintHeldPicture(restingPosition_);
}

void MediaEngineImpl::SetWidth(base::Twips width) {
    width_ = width;
    ResizeView();
}

void MediaEngineImpl::SetHeight(base::Twips height) {
    height_ = height;
    ResizeView();
}

void MediaEngineImpl::ResizeView() {
    if (!view_) return;
    const int dpi = view_->Dpi();
    view_->Resize({std::max(0, base::TwipsToPixels(width_, dpi)),
                   std::max(0, base::TwipsToPixels(height_, dpi))});
}

void MediaEngineImpl::SetCursorType(int type) {
    cursorType_ = type;
    if (view_) view_->SetCursorType(type);
}

void MediaEngineImpl::PlacePicture() {
    if (!graph_ || !view_) return;
    const PixelSize area = fullScreen_ ? fullScreen_->ClientSize() : view_->ClientSize();
    graph_->PlacePicture(FitPicture(area, graph_->PictureShape()));
    view_->AskForPicture();
}

void MediaEngineImpl::SetDisplaySize(int size) {
    if (size == core::kFullScreenDisplay) {
        EnterFullScreen();
    } else if (size == core::kWindowDisplay) {
        LeaveFullScreen();
    }
}

void MediaEngineImpl::EnterFullScreen() {
    if (fullScreen_ || !graph_) return;
    VideoViewClient& client = *this;
    auto window = std::make_unique<FullScreenWindow>(view_->Handle(), client);
    if (window->Handle() == nullptr) return;
    fullScreen_ = std::move(window);
    graph_->MovePictureTo(fullScreen_->Handle());
    PlacePicture();
    graph_->ShowPicture(visible_);
}

void MediaEngineImpl::LeaveFullScreen() {
    if (!fullScreen_) return;
    const auto leaving = std::move(fullScreen_);
    if (!graph_) return;
    graph_->MovePictureTo(view_->Handle());
    PlacePicture();
    graph_->ShowPicture(true);
}

void MediaEngineImpl::ShowDialog(int dialog) {
    if (!view_) return;
    const HWND owner = fullScreen_ ? fullScreen_->Handle() : GetAncestor(view_->Handle(), GA_ROOT);
    if (dialog == core::kStatisticsDialog) dialogs_.ShowStatistics(owner);
    if (dialog == core::kPropertiesDialog) dialogs_.ShowFilters(owner);
}

PlaybackFigures MediaEngineImpl::Figures() const {
    return graph_ ? graph_->Figures() : PlaybackFigures{};
}

std::vector<FilterEntry> MediaEngineImpl::Filters() const {
    return graph_ ? graph_->Filters() : std::vector<FilterEntry>{};
}

void MediaEngineImpl::ShowFilterProperties(std::size_t filter, base::NativeWindow owner) {
    if (graph_) graph_->ShowFilterProperties(filter, owner);
}

}  // namespace nqp::platform
