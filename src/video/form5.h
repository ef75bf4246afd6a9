#pragma once

#include "core/remote_window.h"
#include "core/video_window.h"
#include "forms/control_array.h"
#include "forms/form.h"
#include "forms/label.h"
#include "forms/line.h"

namespace nqp::video {

class Form6;

// The context menu over the video: a small topmost window of twelve labels. The pointer or the
// arrow keys highlight one, a click or Enter runs it; Escape and a click elsewhere close the menu.
class Form5 final : public forms::Form {
public:
    Form5();

    // To be called before the window is loaded; all of them outlive it.
    void Connect(forms::Form& videoForm, core::VideoWindow& video, core::RemoteWindow& remote,
                 Form6& playRate);

    // Puts the top left corner at a point of the screen, as far as the menu then stays on it.
    void PlaceAt(base::Point topLeft);

    // Also the play-rate dialog.
    void CloseAll();
    void ShowFullScreen();

    // The highlighted label, counted from 1; 0 for none.
    int highlighted_item = 0;

    static constexpr int kLabelCount = 12;
    forms::ControlArray<forms::Label, kLabelCount> Label1;
    forms::Line Line1;

private:
    void Form_Load() override;
    void Form_Unload() override;
    void Form_Deactivate() override;
    void Form_MouseMove(const base::MouseEvent& mouse) override;
    bool Form_KeyDown(const base::KeyEvent& key) override;

    void Label1_Click(int Index);
    void Label1_MouseMove(int Index, const base::MouseEvent& mouse);

    void Highlight(int item);
    void HighlightNeighbour(int step);
    void RunCommand(int index);
    void ShowPlayRate();
    void ToggleMute();

    core::VideoWindow* Form1_ = nullptr;
    core::RemoteWindow* Form4_ = nullptr;
    Form6* Form6_ = nullptr;
};

}  // namespace nqp::video
