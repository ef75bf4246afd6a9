#include "platform/engine/media_foundation/player.h"

#include "forms/win32/winapi/com.h"

#include <algorithm>
#include <cmath>

#include <mfplay.h>
#include <propvarutil.h>

#include "platform/engine/media_foundation/player_events.h"
#include "platform/message_window.h"

namespace nqp::platform::media_foundation {

namespace {

constexpr double kReferenceTimePerSecond = 1e7;
constexpr double kHundredthsPerDecade = 2000.0;  // hundredths of a decibel for a factor of ten

using CreatePlayer = HRESULT(WINAPI*)(LPCWSTR, BOOL, MFP_CREATION_OPTIONS, IMFPMediaPlayerCallback*,
                                      HWND, IMFPMediaPlayer**);

// Looked up at run time: the program must start where the library is absent. It stays loaded, as
// its own threads may outlive a player.
CreatePlayer FindCreatePlayer() {
    const HMODULE library = LoadLibraryExW(L"mfplay.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (library == nullptr) return nullptr;
    return reinterpret_cast<CreatePlayer>(
        reinterpret_cast<void*>(GetProcAddress(library, "MFPCreateMediaPlayer")));
}

// The window that the player draws into; disabled, so that the mouse reaches the window around it.
class PictureWindow final : public MessageWindow {
public:
    explicit PictureWindow(HWND parent) {
        Create({.className = L"nqp.Picture",
                .style = WS_CHILD | WS_DISABLED | WS_CLIPSIBLINGS,
                .place = {},
                .parentOrOwner = parent});
    }

    void DrawWith(IMFPMediaPlayer* player) { player_ = player; }

private:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_ERASEBKGND) return 1;
        if (message == WM_PAINT) {
            PaintBlack(Handle());
            if (player_ != nullptr) player_->UpdateVideo();
            return 0;
        }
        return MessageWindow::OnMessage(message, wParam, lParam);
    }

    IMFPMediaPlayer* player_ = nullptr;
};

class Player final : public PlaybackGraph {
public:
    ~Player() override;

    // To be called once, before everything else.
    bool Open(const std::wstring& path, HWND window, UINT message);

    bool Run() override { return Request(Answer::Playing, &IMFPMediaPlayer::Play); }
    bool Pause() override;
    bool Seek(double seconds) override;
    bool SetRate(double rate) override;
    void SetVolume(std::int32_t hundredthsOfDecibel) override;
    double Position() const override;
    double Duration() const override { return duration_; }
    GraphEvent NextEvent() override { return events_->Take(); }
    bool LacksPicture() const override { return false; }
    PixelSize PictureShape() const override { return shape_; }
    void MovePictureTo(base::NativeWindow window) override;
    void PlacePicture(const PixelRect& place) override;
    void ShowPicture(bool visible) override;
    void PaintHeldPicture(double) override { player_->UpdateVideo(); }
    PlaybackFigures Figures() const override;
    std::vector<FilterEntry> Filters() const override {
        return {{"Media Foundation player", false}};
    }
    void ShowFilterProperties(std::size_t, base::NativeWindow) override {}

private:
    bool Request(Answer answer, HRESULT (STDMETHODCALLTYPE IMFPMediaPlayer::*request)());
    bool LoadItem(const std::wstring& path);
    void ReadItem();

    std::unique_ptr<PictureWindow> window_;
    winapi::ComPtr<PlayerEvents> events_;
    winapi::ComPtr<IMFPMediaPlayer> player_;
    double duration_ = 0;  // seconds
    bool hasPicture_ = false;
    PixelSize size_;
    PixelSize shape_;
};

Player::~Player() {
    if (events_) events_->Silence();
    if (window_) window_->DrawWith(nullptr);
    if (player_) player_->Shutdown();
}

bool Player::Open(const std::wstring& path, HWND window, UINT message) {
    static const CreatePlayer create = FindCreatePlayer();
    if (create == nullptr) return false;
    window_ = std::make_unique<PictureWindow>(window);
    events_ = winapi::MakeCom<PlayerEvents>(window, message);
    if (FAILED(create(nullptr, FALSE, MFP_OPTION_FREE_THREADED_CALLBACK, events_.Get(),
                      window_->Handle(), player_.Put()))) {
        return false;
    }
    if (!LoadItem(path)) return false;
    window_->DrawWith(player_.Get());
    ReadItem();
    ShowPicture(true);
    Pause();  // brings up the first frame; some versions refuse it before the first Play
    return true;
}

bool Player::LoadItem(const std::wstring& path) {
    winapi::ComPtr<IMFPMediaItem> item;
    if (FAILED(player_->CreateMediaItemFromURL(path.c_str(), TRUE, 0, item.Put()))) return false;
    events_->Expect(Answer::ItemSet);
    return SUCCEEDED(player_->SetMediaItem(item.Get())) && events_->WaitFor(Answer::ItemSet);
}

void Player::ReadItem() {
    PROPVARIANT time{};
    LONGLONG duration = 0;
    if (SUCCEEDED(player_->GetDuration(MFP_POSITIONTYPE_100NS, &time))) {
        duration = static_cast<LONGLONG>(time.uhVal.QuadPart);
        PropVariantClear(&time);
    }
    duration_ = static_cast<double>(duration) / kReferenceTimePerSecond;
    SIZE size{};
    SIZE shape{};
    hasPicture_ = SUCCEEDED(player_->GetNativeVideoSize(&size, &shape)) && size.cx > 0;
    if (!hasPicture_) return;
    size_ = {static_cast<int>(size.cx), static_cast<int>(size.cy)};
    shape_ = shape.cx > 0 && shape.cy > 0
                 ? PixelSize{static_cast<int>(shape.cx), static_cast<int>(shape.cy)}
                 : size_;
}

bool Player::Request(Answer answer, HRESULT (STDMETHODCALLTYPE IMFPMediaPlayer::*request)()) {
    events_->Expect(answer);
    return SUCCEEDED((player_.Get()->*request)()) && events_->WaitFor(answer);
}

bool Player::Pause() {
    return Request(Answer::Paused, &IMFPMediaPlayer::Pause);
}

bool Player::Seek(double seconds) {
    PROPVARIANT target{};
    target.vt = VT_I8;
    target.hVal.QuadPart = std::llround(seconds * kReferenceTimePerSecond);
    events_->Expect(Answer::PositionSet);
    return SUCCEEDED(player_->SetPosition(MFP_POSITIONTYPE_100NS, &target)) &&
           events_->WaitFor(Answer::PositionSet);
}

bool Player::SetRate(double rate) {
    events_->Expect(Answer::RateSet);
    return SUCCEEDED(player_->SetRate(static_cast<float>(rate))) &&
           events_->WaitFor(Answer::RateSet);
}

void Player::SetVolume(std::int32_t hundredthsOfDecibel) {
    const bool silent = hundredthsOfDecibel <= core::kSilent;
    player_->SetMute(silent ? TRUE : FALSE);
    player_->SetVolume(
        silent ? 0.0F
               : static_cast<float>(std::pow(10.0, hundredthsOfDecibel / kHundredthsPerDecade)));
}

double Player::Position() const {
    PROPVARIANT time{};
    if (FAILED(player_->GetPosition(MFP_POSITIONTYPE_100NS, &time))) return 0;
    return static_cast<double>(time.hVal.QuadPart) / kReferenceTimePerSecond;
}

void Player::MovePictureTo(base::NativeWindow window) {
    SetParent(window_->Handle(), static_cast<HWND>(window));
}

void Player::PlacePicture(const PixelRect& place) {
    SetWindowPos(window_->Handle(), nullptr, place.left, place.top, place.width, place.height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    if (hasPicture_) player_->UpdateVideo();
}

void Player::ShowPicture(bool visible) {
    ShowWindow(window_->Handle(), visible && hasPicture_ ? SW_SHOWNA : SW_HIDE);
}

PlaybackFigures Player::Figures() const {
    PlaybackFigures figures;
    figures.pictureSize = size_;
    figures.filters = {"Media Foundation player"};
    return figures;
}

}  // namespace

std::unique_ptr<PlaybackGraph> OpenPlayer(const std::wstring& path, base::NativeWindow window,
                                          unsigned message) {
    auto player = std::make_unique<Player>();
    return player->Open(path, static_cast<HWND>(window), message) ? std::move(player) : nullptr;
}

}  // namespace nqp::platform::media_foundation
