#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "forms/run_time_error.h"
#include "player.h"
#include "skin_files.h"

// Any bytes as the colour file of a skin, and what comes behind them as one of its pictures, put
// onto the remote again and again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kColorBytes = 12 * 128;
    constexpr nqp::forms::Color kBrightest = 0xFFFFFF;
    static nqp::test::Player player;
    static const nqp::test::SkinFiles skin(player.folder, "Fuzz");
    static const bool started = [] {
        player.PutSetting(nqp::core::kSkinName, "Fuzz");
        player.Start();
        return true;
    }();
    const auto* bytes = reinterpret_cast<const char*>(data);
    const std::size_t colors = std::min(size, kColorBytes);
    skin.Put("nqp_colors.cfg", {bytes, colors});
    skin.Put("exit.bmp", {bytes + colors, size - colors});
    try {
        player.form4.goskin();
    } catch (const nqp::forms::RunTimeError&) {
        // as it is to be
    }
    for (const nqp::forms::Control* control : player.form4.Controls()) {
        if (control->ForeColor() > kBrightest || control->BackColor() > kBrightest) std::abort();
    }
    if (!started || !player.form4.Visible()) std::abort();
    return 0;
}
