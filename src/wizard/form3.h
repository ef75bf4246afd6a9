#pragma once

#include <filesystem>
#include <string>

#include "core/file_dialogs.h"
#include "forms/command_button.h"
#include "forms/form.h"
#include "forms/frame.h"
#include "forms/label.h"
#include "forms/picture_box.h"
#include "forms/text_box.h"
#include "forms/timer_control.h"
#include "wizard/form7.h"

namespace nqp::wizard {

// Beside the three buttons; null for none.
struct JobPictures {
    forms::Picture video;
    forms::Picture audio;
    forms::Picture image;
};

// What the window works with; all of it outlives the window.
struct WizardContext {
    std::filesystem::path programFolder;
    core::FileDialogs& dialogs;
    JobPictures pictures;
};

// The Quillon Wizard: a person picks what is to be made of a fragment, and where it goes. The
// window only records the request; the player fetches it through CWizard, has the job done, and
// tells when it has ended.
class Form3 final : public forms::Form {
public:
    explicit Form3(const WizardContext& context);

    std::string wiz_OutFilePath;  // as the last save dialog left its buffer
    bool wiz_busy = false;        // a video or audio job was asked for and has not ended
    std::string wiz_FilePath;     // of the clip
    // A job that waits to be fetched.
    bool wiz_video = false;
    bool wiz_audio = false;
    bool wiz_image = false;

    void show_status() {}
    // The job has ended: ready for the next one.
    void hide_status();
    // The progress text of the running job, at any time.
    void set_status(const std::string& text);
    // Above all other windows.
    void ShowOnTopOfAll();

    // In the order that Tab goes through them.
    forms::Frame Frame1;
    forms::Label Label1;            // introduction
    forms::Label Label2;            // names the two texts
    forms::TextBox Text1;           // begin of the fragment
    forms::TextBox Text2;           // its end
    forms::PictureBox Picture1;     // video
    forms::CommandButton Command1;  // video
    forms::Label Label5;
    forms::PictureBox Picture2;     // audio
    forms::CommandButton Command2;  // audio
    forms::Label Label4;
    forms::PictureBox Picture4;     // image
    forms::CommandButton Command3;  // image
    forms::Label Label3;
    forms::Frame Frame2;
    forms::Label Label7;            // asks for patience
    forms::TextBox Text3;           // progress
    forms::CommandButton Command4;  // Cancel
    forms::TimerControl Timer1;

private:
    struct Job {
        core::SaveFileRequest dialog;
        bool Form3::*request;
        bool showsProgress;
    };

    void Form_Load() override;
    void Form_Unload() override;
    bool Form_KeyDown(const base::KeyEvent& key) override;
    void CloseRequested() override;
    void Command1_Click();
    void Command2_Click();
    void Command3_Click();
    void Command4_Click();
    void Timer1_Timer();

    void Paint();
    void BindHandlers();
    void AskFor(const Job& job);
    void EnableJobs(bool enabled);
    bool JobUnderWay() const { return !Command1.Enabled(); }
    bool RequestWaits() const { return wiz_video || wiz_audio || wiz_image; }
    void GiveUpOnPlayer();

    WizardContext context_;
    Form7 Form7_;
    bool close_was_asked_ = false;  // during the job that is under way
    int unfetched_seconds_ = 0;     // since a job was asked for
};

}  // namespace nqp::wizard
