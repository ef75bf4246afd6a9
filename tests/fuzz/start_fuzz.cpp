#include <cstdint>
#include <cstdlib>
#include <string>

#include "player.h"

// Any bytes as "options.cfg" through a whole start and end of the program, with the options opened
// and accepted twice in between: the second time nothing is left to be put right.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    nqp::test::Player player("C:\\clip.avi");
    player.folder.Put("options.cfg", {reinterpret_cast<const char*>(data), size});
    player.Start();
    if (!player.form1.Visible() || !player.form4.Visible()) std::abort();
    if (player.form1.Width() < 400 || player.form1.Height() < 400) std::abort();
    player.ChangeOptions();
    const std::string accepted = player.folder.Content("options.cfg");
    player.ChangeOptions();
    if (player.form2.Loaded() || player.folder.Content("options.cfg") != accepted) std::abort();
    player.form4.Picture1_Click();
    if (player.form1.Loaded() || player.form4.Loaded()) std::abort();
    return 0;
}
