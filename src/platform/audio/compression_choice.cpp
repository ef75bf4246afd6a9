#include "platform/audio/compression_choice.h"

#include <utility>

#include "platform/message_window.h"

namespace nqp::platform {
namespace {

constexpr UINT kChoices = ICMF_CHOOSE_KEYFRAME | ICMF_CHOOSE_DATARATE | ICMF_CHOOSE_PREVIEW;

// Sees whether this thread makes a dialog while the object lives: the platform answers the same to
// a dialog that did not come up as to one that was cancelled.
class DialogWatch {
public:
    DialogWatch()
        : outer_(std::exchange(innermost_, this)),
          hook_(SetWindowsHookExW(WH_CBT, OnEvent, nullptr, GetCurrentThreadId())) {}
    ~DialogWatch() {
        if (hook_ != nullptr) UnhookWindowsHookEx(hook_);
        innermost_ = outer_;
    }
    DialogWatch(const DialogWatch&) = delete;
    DialogWatch& operator=(const DialogWatch&) = delete;

    // True also where it could not be watched.
    bool Came() const { return came_ || hook_ == nullptr; }

private:
    static LRESULT CALLBACK OnEvent(int code, WPARAM window, LPARAM detail) {
        if (code == HCBT_CREATEWND && innermost_ != nullptr) {
            const auto made = reinterpret_cast<HWND>(window);
            if (GetClassLongPtrW(made, GCW_ATOM) == kDialogClass) innermost_->came_ = true;
        }
        return CallNextHookEx(nullptr, code, window, detail);
    }

    static constexpr ULONG_PTR kDialogClass = 0x8002;

    static inline DialogWatch* innermost_ = nullptr;  // of the window thread

    DialogWatch* outer_;
    HHOOK hook_;
    bool came_ = false;
};

// Owns a dialog that has no other owner. It is never shown; what it owns stands above all windows,
// as it would.
class TopmostOwner final : public MessageWindow {
public:
    TopmostOwner() {
        Description description;
        description.className = L"nqp.TopmostOwner";
        description.style = WS_POPUP;
        description.extendedStyle = WS_EX_TOPMOST | WS_EX_TOOLWINDOW;
        Create(description);
    }
    ~TopmostOwner() override { Destroy(); }
};

}  // namespace

CompressionChoice::~CompressionChoice() {
    LPAVICOMPRESSOPTIONS options = &options_;
    AVISaveOptionsFree(1, &options);
}

bool CompressionChoice::Ask(HWND owner, IAVIStream& stream) {
    if (owner != nullptr) {
        const DialogWatch dialog;
        const bool accepted = Show(owner, stream);
        if (accepted || dialog.Came()) return accepted;
    }
    const TopmostOwner topmost;
    return Show(topmost.Handle(), stream);
}

bool CompressionChoice::Show(HWND owner, IAVIStream& stream) {
    PAVISTREAM streams = &stream;
    LPAVICOMPRESSOPTIONS options = &options_;
    if (AVISaveOptions(owner, kChoices, 1, &streams, &options) != 1) return false;
    // Wine leaves it out, and then takes the options themselves for a format.
    options_.fccType = streamtypeAUDIO;
    return true;
}

}  // namespace nqp::platform
