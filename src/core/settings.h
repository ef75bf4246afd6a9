#pragma once

#include <cstdint>
#include <string>

namespace nqp::core {

// The settings that several windows share; the remote window owns them. They start like this and
// take their values from the settings file.
struct SharedSettings {
    bool control_at_fullscreen = false;  // the remote stays in sight above a full-screen picture
    bool auto_start = false;             // a file plays as soon as it is opened
    bool auto_fullscreen = false;        // playing switches to full screen
    bool move_also = false;              // each of the two windows follows when the other is moved

    std::int32_t fragment_percentage = 0;  // share of a source's frames a fragment keeps
    bool insert_picture = false;           // lay a picture over video fragments
    std::string picture_path;
    std::int32_t picture_x = 0;
    std::int32_t picture_y = 0;
    bool use_directshow = false;  // fragment jobs run beside the player instead of being waited for

    std::int32_t scheduled_month = 0;  // 1 to 12; 0: no scheduled play
    std::int32_t scheduled_day = 0;    // 1 to 31
    std::int32_t scheduled_hour = 0;
    std::int32_t scheduled_minute = 0;
    std::string scheduled_file;
};

}  // namespace nqp::core
