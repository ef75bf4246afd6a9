#include "platform/engine/directshow/graph.h"

#include "forms/win32/winapi/com.h"

#include <algorithm>
#include <cmath>

#include <dshow.h>
#include <ocidl.h>
#include <olectl.h>

#include <amvideo.h>  // needs dshow.h before it

#include "forms/win32/winapi/text.h"
#include "platform/engine/directshow/filters.h"
#include "platform/engine/directshow/frame_counter.h"
#include "platform/engine/directshow/known_filters.h"
#include "platform/engine/directshow/scaled_clock.h"

namespace nqp::platform::directshow {

namespace {

constexpr double kReferenceTimePerSecond = 1e7;
constexpr long kCueDeadline = 5000;  // milliseconds
constexpr double kHundredths = 100.0;

REFERENCE_TIME ToReferenceTime(double seconds) {
    return std::llround(seconds * kReferenceTimePerSecond);
}

double ToSeconds(REFERENCE_TIME time) {
    return static_cast<double>(time) / kReferenceTimePerSecond;
}

// The renderer's window must not take the mouse: a disabled child lets it through to our window.
BOOL CALLBACK DisableWindow(HWND window, LPARAM) {
    EnableWindow(window, FALSE);
    return TRUE;
}

class Graph final : public PlaybackGraph {
public:
    ~Graph() override;

    // To be called once, before everything else. RenderFile picks the renderers: the platform
    // documents its default one as the choice that falls back by itself to what the graphics
    // hardware can do, and all of them answer the window interfaces that are used here.
    bool Open(const std::wstring& path, HWND window, UINT message);

    bool Run() override;
    bool Pause() override;
    bool Seek(double seconds) override;
    bool SetRate(double rate) override;
    void SetVolume(std::int32_t hundredthsOfDecibel) override;
    double Position() const override;
    double Duration() const override { return duration_; }
    GraphEvent NextEvent() override;
    bool LacksPicture() const override { return lacksPicture_; }
    PixelSize PictureShape() const override;
    void MovePictureTo(base::NativeWindow window) override;
    void PlacePicture(const PixelRect& place) override;
    void ShowPicture(bool visible) override;
    void PaintHeldPicture(double seconds) override;
    PlaybackFigures Figures() const override;
    std::vector<FilterEntry> Filters() const override;
    void ShowFilterProperties(std::size_t filter, base::NativeWindow owner) override;

private:
    bool TakeInterfaces();
    bool HasPicture() const;
    PixelSize PictureSize() const;
    void CountFrames();
    void PrepareRates();
    bool UseScaledClock();
    void AddRendererFigures(PlaybackFigures& figures) const;

    winapi::ComPtr<IGraphBuilder> graph_;
    winapi::ComPtr<IMediaControl> control_;
    winapi::ComPtr<IMediaSeeking> seeking_;
    winapi::ComPtr<IMediaEventEx> events_;
    winapi::ComPtr<IMediaFilter> timing_;
    winapi::ComPtr<IBasicAudio> sound_;    // empty when the platform offers none
    winapi::ComPtr<IBasicVideo> picture_;  // empty without a picture
    winapi::ComPtr<IVideoWindow> pictureWindow_;
    winapi::ComPtr<IQualProp> quality_;        // empty when the renderer keeps no figures
    winapi::ComPtr<FrameCounter> counter_;     // in its place
    winapi::ComPtr<ScaledClock> scaledClock_;  // empty while the platform keeps the rate itself
    double duration_ = 0;                      // seconds
    bool lacksPicture_ = false;
};

Graph::~Graph() {
    if (events_) events_->SetNotifyWindow(0, 0, 0);
    // A graph that is stopped while it runs may keep a thread for ever; a paused one does not.
    if (control_) {
        Pause();
        control_->Stop();
    }
    if (picture_) {
        // A renderer that still has an owner when it dies posts messages to it for ever.
        pictureWindow_->put_Visible(OAFALSE);
        pictureWindow_->put_Owner(0);
    }
    // A renderer that is the clock of its own graph may else keep itself, and the clock's thread.
    if (timing_) timing_->SetSyncSource(nullptr);
}

bool Graph::Open(const std::wstring& path, HWND window, UINT message) {
    graph_ = winapi::ComPtr<IGraphBuilder>::Create(CLSID_FilterGraph);
    if (!graph_ || !TakeInterfaces()) return false;
    AddKnownFilters(graph_.Get(), path);
    const HRESULT rendered = graph_->RenderFile(path.c_str(), nullptr);
    if (FAILED(rendered)) return false;
    RemoveUnconnectedFilters(graph_.Get());
    RememberFilters(graph_.Get(), path);
    if (!HasPicture()) picture_.Reset();
    lacksPicture_ =
        rendered == VFW_S_VIDEO_NOT_RENDERED || (rendered == VFW_S_PARTIAL_RENDER && !picture_);
    if (picture_) {
        pictureWindow_->put_AutoShow(OAFALSE);
        MovePictureTo(window);
        CountFrames();
    }
    PrepareRates();
    if (!Pause()) return false;
    REFERENCE_TIME duration = 0;
    if (SUCCEEDED(seeking_->GetDuration(&duration))) duration_ = ToSeconds(duration);
    events_->SetNotifyWindow(reinterpret_cast<OAHWND>(window), static_cast<long>(message), 0);
    return true;
}

bool Graph::TakeInterfaces() {
    control_ = graph_.As<IMediaControl>();
    seeking_ = graph_.As<IMediaSeeking>();
    events_ = graph_.As<IMediaEventEx>(IID_IMediaEventEx);
    timing_ = graph_.As<IMediaFilter>();
    sound_ = graph_.As<IBasicAudio>(IID_IBasicAudio);
    picture_ = graph_.As<IBasicVideo>(IID_IBasicVideo);
    pictureWindow_ = graph_.As<IVideoWindow>(IID_IVideoWindow);
    return control_ && seeking_ && events_ && timing_ && picture_ && pictureWindow_;
}

bool Graph::HasPicture() const {
    long visible = OAFALSE;
    return SUCCEEDED(pictureWindow_->get_Visible(&visible));
}

void Graph::CountFrames() {
    const auto filters = FiltersOf(graph_.Get());
    for (const auto& filter : filters) {
        quality_ = filter.As<IQualProp>(IID_IQualProp);
        if (quality_) return;
    }
    for (const auto& filter : filters) {
        if (!filter.As<IVideoWindow>(IID_IVideoWindow)) continue;
        counter_ = FrameCounter::InsertBefore(filter.Get(), graph_.Get());
        return;
    }
}

bool Graph::Run() {
    return SUCCEEDED(control_->Run());
}

bool Graph::Pause() {
    const bool accepted = SUCCEEDED(control_->Pause());
    OAFilterState reached = State_Stopped;
    if (accepted) control_->GetState(kCueDeadline, &reached);
    if (counter_) counter_->ForgetLastArrival();
    return accepted;
}

// A seek in a paused graph makes every renderer seek the same source in turn, under the threads
// that deliver; stopped, nothing is under way, and the source starts once at the new place.
bool Graph::Seek(double seconds) {
    control_->Stop();
    LONGLONG target = ToReferenceTime(seconds);
    const HRESULT moved = seeking_->SetPositions(&target, AM_SEEKING_AbsolutePositioning, nullptr,
                                                 AM_SEEKING_NoPositioning);
    return Pause() && SUCCEEDED(moved);
}

bool Graph::SetRate(double rate) {
    if (!scaledClock_ && SUCCEEDED(seeking_->SetRate(rate))) return true;
    const double position = Position();
    control_->Stop();
    if (UseScaledClock()) scaledClock_->SetRate(rate);
    return Seek(position) && scaledClock_;
}

// A platform that takes another rate and does not keep it is found out beforehand.
void Graph::PrepareRates() {
    constexpr double kTrialRate = 2.0;
    double inForce = 0;
    const bool taken = SUCCEEDED(seeking_->SetRate(kTrialRate)) &&
                       SUCCEEDED(seeking_->GetRate(&inForce)) && inForce == kTrialRate;
    seeking_->SetRate(1.0);
    if (!taken) UseScaledClock();
}

// A clock that can go at any rate, for a stopped graph whose platform, or sound, cannot.
bool Graph::UseScaledClock() {
    if (scaledClock_) return true;
    auto systemClock = SharedSystemClock();
    if (!systemClock) return false;
    seeking_->SetRate(1.0);
    scaledClock_ = winapi::MakeCom<ScaledClock>(std::move(systemClock));
    timing_->SetSyncSource(scaledClock_.Get());
    return true;
}

void Graph::SetVolume(std::int32_t hundredthsOfDecibel) {
    if (sound_) sound_->put_Volume(hundredthsOfDecibel);
}

double Graph::Position() const {
    LONGLONG position = 0;
    return SUCCEEDED(seeking_->GetCurrentPosition(&position)) ? ToSeconds(position) : 0;
}

GraphEvent Graph::NextEvent() {
    long code = 0;
    LONG_PTR first = 0;
    LONG_PTR second = 0;
    while (SUCCEEDED(events_->GetEvent(&code, &first, &second, 0))) {
        events_->FreeEventParams(code, first, second);
        switch (code) {
            case EC_COMPLETE:
                return GraphEvent::Completed;
            case EC_VIDEO_SIZE_CHANGED:
                return GraphEvent::PictureChanged;
            case EC_USERABORT:
            case EC_ERRORABORT:
            case EC_STREAM_ERROR_STOPPED:
                return GraphEvent::Failed;
            default:
                break;
        }
    }
    return GraphEvent::None;
}

PixelSize Graph::PictureSize() const {
    long width = 0;
    long height = 0;
    if (!picture_ || FAILED(picture_->GetVideoSize(&width, &height))) return {};
    return {static_cast<int>(width), static_cast<int>(height)};
}

PixelSize Graph::PictureShape() const {
    long width = 0;
    long height = 0;
    const auto shaped = picture_.As<IBasicVideo2>(IID_IBasicVideo2);
    const bool known = shaped && SUCCEEDED(shaped->GetPreferredAspectRatio(&width, &height)) &&
                       width > 0 && height > 0;
    if (known) return {static_cast<int>(width), static_cast<int>(height)};
    if (!picture_) return {};
    const PixelSize shape = FormatsOf(graph_.Get()).pictureShape;
    return shape.width > 0 && shape.height > 0 ? shape : PictureSize();
}

void Graph::MovePictureTo(base::NativeWindow window) {
    if (!picture_) return;
    const HWND owner = static_cast<HWND>(window);
    pictureWindow_->put_Owner(reinterpret_cast<OAHWND>(owner));
    pictureWindow_->put_WindowStyle(WS_CHILD | WS_CLIPSIBLINGS | WS_CLIPCHILDREN);
    EnumChildWindows(owner, DisableWindow, 0);
}

void Graph::PlacePicture(const PixelRect& place) {
    if (!picture_) return;
    pictureWindow_->SetWindowPosition(place.left, place.top, place.width, place.height);
}

void Graph::ShowPicture(bool visible) {
    if (picture_) pictureWindow_->put_Visible(visible ? OATRUE : OAFALSE);
}

void Graph::PaintHeldPicture(double seconds) {
    // The plain renderer, which keeps no figures, draws a frame once and forgets it.
    const bool plain = picture_ && !quality_;
    constexpr double kBeforeTheEnd = 0.05;  // at the very end there is no frame to draw
    if (plain) Seek(std::max(0.0, std::min(seconds, duration_ - kBeforeTheEnd)));
}

PlaybackFigures Graph::Figures() const {
    PlaybackFigures figures;
    const StreamFormats formats = FormatsOf(graph_.Get());
    figures.pictureFormat = formats.picture;
    figures.pictureSize = PictureSize();
    figures.soundFormat = formats.sound;
    if (formats.frameRate > 0) figures.nominalFrameRate = formats.frameRate;
    for (const auto& filter : FiltersOf(graph_.Get())) {
        figures.filters.push_back(NameOf(filter.Get()));
    }
    AddRendererFigures(figures);
    return figures;
}

void Graph::AddRendererFigures(PlaybackFigures& figures) const {
    if (counter_) {
        const FrameCount count = counter_->Count();
        figures.framesDrawn = count.frames;
        figures.drawnMeansDelivered = true;
        figures.averageFrameRate = count.averageRate;
        figures.jitter = count.jitter;
        return;
    }
    if (!quality_) return;
    int value = 0;
    if (SUCCEEDED(quality_->get_FramesDrawn(&value))) figures.framesDrawn = value;
    if (SUCCEEDED(quality_->get_FramesDroppedInRenderer(&value))) figures.framesDropped = value;
    if (SUCCEEDED(quality_->get_AvgFrameRate(&value))) {
        figures.averageFrameRate = value / kHundredths;
    }
    if (SUCCEEDED(quality_->get_Jitter(&value))) figures.jitter = value;
}

std::vector<FilterEntry> Graph::Filters() const {
    std::vector<FilterEntry> entries;
    for (const auto& filter : FiltersOf(graph_.Get())) {
        entries.push_back({NameOf(filter.Get()), HasPropertyPages(filter.Get())});
    }
    return entries;
}

void Graph::ShowFilterProperties(std::size_t index, base::NativeWindow owner) {
    const auto filters = FiltersOf(graph_.Get());
    if (index >= filters.size()) return;
    const auto filter = filters[index];
    const auto pages = filter.As<ISpecifyPropertyPages>();
    CAUUID list{};
    if (!pages || FAILED(pages->GetPages(&list))) return;
    const std::wstring title = winapi::Utf16(NameOf(filter.Get()));
    IUnknown* object = filter.Get();
    OleCreatePropertyFrame(static_cast<HWND>(owner), 0, 0, title.c_str(), 1, &object, list.cElems,
                           list.pElems, LOCALE_USER_DEFAULT, 0, nullptr);
    CoTaskMemFree(list.pElems);
}

}  // namespace

std::unique_ptr<PlaybackGraph> OpenGraph(const std::wstring& path, base::NativeWindow window,
                                         unsigned message) {
    auto graph = std::make_unique<Graph>();
    return graph->Open(path, static_cast<HWND>(window), message) ? std::move(graph) : nullptr;
}

}  // namespace nqp::platform::directshow
