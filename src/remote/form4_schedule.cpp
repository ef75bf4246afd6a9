#include "core/program_folder.h"
#include "remote/form4.h"

// Play at a set time.
namespace nqp::remote {

// Slower than once a minute would miss some minutes; so one minute may open the file twice.
void Form4::Timer2_Timer() {
    if (!core::IsScheduled(settings_, context_.clock.Now())) return;
    Form1_.MediaPlayer1().Open(settings_.scheduled_file);
    time_.StartClip();
    file_path_ = settings_.scheduled_file;
    PutTitle(core::kApplicationTitle);
    ResetFragmentBounds();
    transport_.bPause = false;
    Form1_.ShowWindow();
    Show();
    transport_.ready_to_play = true;
    // The video window hid the picture as it came.
    PlayWhatWasOpened();
}

}  // namespace nqp::remote
