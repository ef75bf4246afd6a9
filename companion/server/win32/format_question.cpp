#include "server/win32/format_question.h"

#include <future>
#include <memory>
#include <utility>

#include "forms/backend.h"
#include "forms/run_time_error.h"
#include "forms/win32/screen.h"

namespace nqp::companion {
namespace {

constexpr wchar_t kWizardWindowClass[] = L"nqp.Form3";

HWND VisibleWizard() {
    HWND window = nullptr;
    while ((window = FindWindowExW(nullptr, window, kWizardWindowClass, nullptr)) != nullptr) {
        if (IsWindowVisible(window) != 0) return window;
    }
    return nullptr;
}

}  // namespace

base::Rect AreaForDialog() {
    RECT pixels{};
    if (const HWND wizard = VisibleWizard()) GetWindowRect(wizard, &pixels);
    const base::Rect window = forms::win32::ScreenRectangle(pixels);
    return forms::WorkAreaAt({window.left + window.width / 2, window.top + window.height / 2});
}

std::optional<FormatChoice> DialogQuestion::Ask(const FormatOffer& offer,
                                                std::function<bool()> cancelled) {
    const auto answer = std::make_shared<std::promise<std::optional<FormatChoice>>>();
    windows_.Post([this, answer, offer, cancelled = std::move(cancelled)] {
        std::optional<FormatChoice> choice;
        forms::Guarded(forms::Origin::Program,
                       [&] { choice = dialog_.AskForJob(offer, AreaForDialog(), cancelled); });
        answer->set_value(choice);
    });
    return answer->get_future().get();
}

}  // namespace nqp::companion
