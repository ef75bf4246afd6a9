#include "wizard/form3.h"

#include "base/file.h"
#include "core/program_folder.h"
#include "forms/dialog_look.h"
#include "forms/run_time_error.h"

namespace nqp::wizard {
namespace {

// Twips.
constexpr base::Size kClient{7800, 5670};
constexpr base::Twips kMargin = 300;
constexpr base::Rect kJobsArea{0, 0, kClient.width, 4740};
constexpr base::Rect kStatusArea{0, kJobsArea.height, kClient.width,
                                 kClient.height - kJobsArea.height};
constexpr base::Twips kLine = 300;
constexpr base::Twips kFieldTop = 1080;
constexpr base::Twips kFirstJob = 1800;
constexpr base::Twips kJobPitch = 960;
constexpr base::Twips kPicture = 600;
constexpr base::Twips kButtonLeft = kMargin + kPicture + 360;
constexpr base::Twips kButtonWidth = 2100;
constexpr base::Twips kTextLeft = kButtonLeft + kButtonWidth + 210;
constexpr base::Twips kTwoLines = 560;
constexpr base::Twips kStatusTop = kStatusArea.top + 270;
constexpr base::Twips kCancelWidth = 1350;

constexpr forms::Color kWhite = 0xFFFFFF;

constexpr base::Twips JobTop(int row) {
    return kFirstJob + kJobPitch * static_cast<base::Twips>(row);
}

constexpr base::Rect PictureAt(int row) {
    return {kMargin, JobTop(row), kPicture, kPicture};
}

constexpr base::Rect ButtonAt(int row) {
    return {kButtonLeft, JobTop(row) + (kPicture - forms::look::kButtonHeight) / 2, kButtonWidth,
            forms::look::kButtonHeight};
}

// Without a frame it is as high as its line; a field's line begins a little below its top.
constexpr base::Rect FieldAt(base::Twips left, base::Twips top, base::Twips width) {
    constexpr base::Twips kRise = 30;
    return {left, top + kRise, width, kLine};
}

constexpr base::Rect TextAt(int row) {
    return {kTextLeft, JobTop(row) + (kPicture - kTwoLines) / 2,
            kClient.width - kMargin - kTextLeft, kTwoLines};
}

constexpr char kIdleStatus[] = "0 % copied";
constexpr int kPlayerPatience = 10;  // seconds

const core::FileFilter kAllFiles{"All files (*.*)", "*.*"};

}  // namespace

Form3::Form3(const WizardContext& context)
    : forms::Form({.name = "Form3",
                   .caption = "Quillon Wizard",
                   .frame = forms::FrameStyle::Dialog,
                   .bounds = {0, 0, kClient.width, kClient.height},
                   .backColor = kWhite,
                   .minimizable = true}),
      Frame1(*this, "Frame1", 181, kJobsArea),
      Label1(*this, "Label1", 101, {kMargin, 270, kClient.width - 2 * kMargin, 600},
             "Quillon Wizard makes it easy for you to set up and run necessary media operation."),
      Label2(*this, "Label2", 102, {kMargin, kFieldTop, kButtonLeft - kMargin - 45, kLine},
             "Fragment:"),
      Text1(*this, "Text1", 141, FieldAt(kButtonLeft, kFieldTop, 1050), "00:00:00 -"),
      Text2(*this, "Text2", 142, FieldAt(kButtonLeft + 1080, kFieldTop, 1050), "00:00:00"),
      Picture1(*this, "Picture1", 121, PictureAt(0)),
      Command1(*this, "Command1", 151, ButtonAt(0), "&Video fragment"),
      Label5(*this, "Label5", 105, TextAt(0),
             "- extract video fragment to one of system supported codec formats"),
      Picture2(*this, "Picture2", 122, PictureAt(1)),
      Command2(*this, "Command2", 152, ButtonAt(1), "&Audio fragment"),
      Label4(*this, "Label4", 104, TextAt(1),
             "- extract audio fragment and save it as MP3 or WAVE"),
      Picture4(*this, "Picture4", 124, PictureAt(2)),
      Command3(*this, "Command3", 153, ButtonAt(2), "&Image"),
      Label3(*this, "Label3", 103, TextAt(2),
             "- you can extract current frame and save image to file"),
      Frame2(*this, "Frame2", 182, kStatusArea),
      Label7(*this, "Label7", 107, {kMargin, kStatusTop + 45, 1800, kLine}, "Please, wait ... "),
      Text3(*this, "Text3", 143, FieldAt(kButtonLeft + 1080, kStatusTop + 45, 2700),
            "processing..."),
      Command4(*this, "Command4", 154,
               {kClient.width - kMargin - kCancelWidth, kStatusTop, kCancelWidth,
                forms::look::kButtonHeight},
               "&Cancel"),
      Timer1(*this, "Timer1", 1000),
      context_(context) {
    Paint();
    BindHandlers();
    for (forms::Control* control :
         std::initializer_list<forms::Control*>{&Label7, &Text3, &Command4})
        control->SetVisible(false);
}

void Form3::Paint() {
    Frame1.SetForeColor(kWhite);
    Frame2.SetForeColor(forms::look::kPaper);
    Label1.Wrap();
    Label1.SetFont(true, 1.0F);
    for (forms::Label* label : {&Label1, &Label2, &Label3, &Label4, &Label5})
        label->SetColors(forms::look::kInk, kWhite);
    for (forms::Label* text : {&Label3, &Label4, &Label5})
        text->Wrap();
    Label7.SetColors(forms::look::kInk, forms::look::kPaper);
    Label7.SetFont(true, 1.0F);
    for (forms::TextBox* field : {&Text1, &Text2, &Text3}) {
        field->MakeReadOnly();
        field->SetTabStop(false);
        field->SetColors(forms::look::kInk, kWhite);
    }
    Text3.SetColors(forms::look::kInk, forms::look::kPaper);
    Text1.SetAccessibleName("Fragment start");
    Text2.SetAccessibleName("Fragment end");
    Text3.SetAccessibleName("Progress");
    Picture1.SetPicture(context_.pictures.video);
    Picture2.SetPicture(context_.pictures.audio);
    Picture4.SetPicture(context_.pictures.image);
    for (forms::PictureBox* picture : {&Picture1, &Picture2, &Picture4})
        picture->SetColors(forms::look::kInk, kWhite);
}

void Form3::BindHandlers() {
    Command1.Click.calls<&Form3::Command1_Click>(this);
    Command2.Click.calls<&Form3::Command2_Click>(this);
    Command3.Click.calls<&Form3::Command3_Click>(this);
    Command4.Click.calls<&Form3::Command4_Click>(this);
    Timer1.Timer.calls<&Form3::Timer1_Timer>(this);
}

void Form3::ShowOnTopOfAll() {
    if (!Loaded()) {
        Load();
        const base::Size screen = forms::ScreenSize();
        CentreOver({0, 0, screen.width, screen.height});
    }
    Show();
    SetTopmost(true);
}

// The status window comes with this one, unseen, so that its caption can be written from the start.
void Form3::Form_Load() {
    SetTopmost(true);
    Form7_.Load();
}

// Whoever closes it does without what was asked for in it.
void Form3::Form_Unload() {
    wiz_video = wiz_audio = wiz_image = false;
    hide_status();
}

bool Form3::Form_KeyDown(const base::KeyEvent& key) {
    if (key.KeyCode != base::kKeyEscape) return false;
    CloseRequested();
    return true;
}

// The player's windows are hidden during a job: without this one nobody could cancel it. It can be
// closed all the same by asking twice, because the player may have ended.
void Form3::CloseRequested() {
    if (!JobUnderWay() || close_was_asked_) return Unload();
    close_was_asked_ = true;
    if (Command4.Visible() && Command4.Enabled()) Command4_Click();
}

void Form3::Command1_Click() {
    AskFor({.dialog = {.owner = Handle(),
                       .title = "Quillon Wizard - Save video fragment as...",
                       .filters = {{"Audio-Video Interleave (*.avi)", "*.avi"}, kAllFiles},
                       .defaultExtension = "avi"},
            .request = &Form3::wiz_video,
            .showsProgress = true});
}

void Form3::Command2_Click() {
    AskFor({.dialog = {.owner = Handle(),
                       .title = "Quillon Wizard - Save audio fragment as...",
                       .filters = {{"PCM Windows Audio (*.wav)", "*.wav"},
                                   {"MPEG Layer-3 (*.mp3)", "*.mp3"},
                                   kAllFiles},
                       .defaultExtension = "wav"},
            .request = &Form3::wiz_audio,
            .showsProgress = true});
}

void Form3::Command3_Click() {
    AskFor({.dialog = {.owner = Handle(),
                       .title = "Quillon Wizard - Save image as...",
                       .filters = {{"Bitmap Image (*.bmp)", "*.bmp"}, kAllFiles},
                       .defaultExtension = "bmp"},
            .request = &Form3::wiz_image,
            .showsProgress = false});
}

// The person may close the wizard from the task bar while the dialog is up.
void Form3::AskFor(const Job& job) {
    wiz_busy = false;
    const auto chosen = context_.dialogs.SaveFile(job.dialog);
    if (!chosen || !Loaded()) return;
    EnableJobs(false);
    close_was_asked_ = false;
    unfetched_seconds_ = 0;
    Label7.SetVisible(true);
    wiz_OutFilePath = *chosen;
    this->*job.request = true;
    wiz_busy = job.showsProgress;
}

void Form3::EnableJobs(bool enabled) {
    for (forms::CommandButton* button : {&Command1, &Command2, &Command3})
        button->SetEnabled(enabled);
}

// The file's being there is the sign; what is in it stays. The companion may take a moment to see
// it.
void Form3::Command4_Click() {
    if (!base::MakeFile(context_.programFolder / core::kFlagFileName)) {
        throw forms::RunTimeError("The job cannot be cancelled: nothing can be written to " +
                                  base::Utf8FromPath(context_.programFolder) + ".");
    }
    Command4.SetEnabled(false);
}

void Form3::Timer1_Timer() {
    if (RequestWaits() && ++unfetched_seconds_ > kPlayerPatience) return GiveUpOnPlayer();
    if (!wiz_busy || wiz_OutFilePath.empty()) return;
    const bool first = !Command4.Visible();
    Text3.SetVisible(true);
    Command4.SetVisible(true);
    if (first) Command4.SetFocus();
    Text3.SetText(Form7_.Caption());
}

// The player asks ten times a second.
void Form3::GiveUpOnPlayer() {
    wiz_video = wiz_audio = wiz_image = false;
    hide_status();
    forms::Guarded(forms::Origin::User, [] {
        throw forms::RunTimeError("The player that opened this wizard has been closed.");
    });
}

void Form3::set_status(const std::string& text) {
    Form7_.SetCaption(text);
}

void Form3::hide_status() {
    wiz_busy = false;
    Label7.SetVisible(false);
    Command4.SetVisible(false);
    Text3.SetText(kIdleStatus);
    Form7_.SetCaption(kIdleStatus);
    Form7_.Unload();
    Text3.SetVisible(false);
    Command4.SetEnabled(true);
    if (!JobUnderWay()) return;
    EnableJobs(true);
    Command1.SetFocus();
}

}  // namespace nqp::wizard
