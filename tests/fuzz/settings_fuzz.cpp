#include <cstdint>
#include <cstdlib>
#include <string>

#include "core/settings_file.h"
#include "temp_folder.h"

// Any bytes as "options.cfg": they load, and what is written over them reads back.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace nqp;
    static const test::TempFolder folder;
    folder.Put(core::kSettingsFileName, {reinterpret_cast<const char*>(data), size});
    core::SettingsFile file(folder.Path());
    core::SharedSettings settings;
    file.ApplyBehaviour(settings);
    file.ApplyFragmentsAndSchedule(settings);
    static_cast<void>(file.Geometry());
    static_cast<void>(file.VolumeKnobTop());

    std::string others;
    for (int record = 1; record < core::kVideoLeft; ++record) {
        others += file.Text(static_cast<core::SettingsRecord>(record)) + '\n';
    }
    file.SetVideoBounds(-1, 2, 3, 4);
    if (!file.Commit()) std::abort();
    const core::SettingsFile again(folder.Path());
    std::string kept;
    for (int record = 1; record < core::kVideoLeft; ++record) {
        kept += again.Text(static_cast<core::SettingsRecord>(record)) + '\n';
    }
    // The file may have been cut off inside of a record, which growing completes with zeros.
    const bool whole = size >= (core::kVideoLeft - 1) * core::kSettingsRecordBytes;
    if (again.Text(core::kVideoLeft) != "-1" || (whole && kept != others)) std::abort();
    return 0;
}
