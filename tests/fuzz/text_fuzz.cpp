#include <cstdint>
#include <cstdlib>
#include <string>

#include "base/text.h"
#include "core/command_line.h"
#include "core/media_engine.h"
#include "video/play_rate.h"

// Any text as a number, a path, a command line and a play rate.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace nqp;
    const std::string text(reinterpret_cast<const char*>(data), size);
    static_cast<void>(base::ParseWholeNumber(text));
    if (const auto number = base::ParseSingle(text)) {
        if (base::ParseSingle(base::ShortestDecimal(*number)) != number) std::abort();
    }
    if (const auto rate = video::RateOfText(text)) {
        if (*rate < core::kSlowestRate || *rate > core::kFastestRate) std::abort();
        static_cast<void>(video::TextOfRate(*rate));
    }
    const std::string title = base::TitleOf(base::FileNameOf(text));
    if (title.find('.') != std::string::npos || title.find('\\') != std::string::npos) std::abort();
    if (base::WithoutQuotes(text).size() > size) std::abort();
    const std::wstring line(text.begin(), text.end());
    if (core::ArgumentsOf(line).size() > line.size()) std::abort();
    static_cast<void>(core::WithoutAutomationSwitch(text));
    return 0;
}
