#include "remote/form4.h"

#include "base/text.h"
#include "core/command_line.h"
#include "core/program_folder.h"
#include "forms/run_time_error.h"
#include "remote/face.h"

namespace nqp::remote {
namespace {

constexpr base::Rect kFirstBounds{3090, 4980, face::kSmallestWidth, face::kCompactHeight};
constexpr base::Point kRight{face::kPixel, 0};
constexpr base::Point kDown{0, face::kPixel};

// What the remote looks like without a skin.
constexpr forms::Color kPaper = forms::Rgb(36, 38, 43);
constexpr forms::Color kInk = forms::Rgb(236, 238, 242);
constexpr forms::Color kFieldPaper = forms::Rgb(52, 55, 62);
constexpr forms::Color kHighlightPaper = forms::Rgb(47, 101, 196);
constexpr forms::Color kRule = forms::Rgb(110, 115, 128);

constexpr char kNoBound[] = "00";
constexpr char kNoTime[] = "00:00:00";

constexpr base::Point Plus(base::Point point, base::Point offset) {
    return {point.x + offset.x, point.y + offset.y};
}

}  // namespace

Form4::Form4(const RemoteContext& context)
    : forms::Form({.name = "Form4",
                   .caption = core::kApplicationTitle,
                   .bounds = kFirstBounds,
                   .backColor = kPaper,
                   .backdrop = {nullptr, face::kBackdropSize, face::kBackdropStretch},
                   .takesFiles = true,
                   .tabMoves = true}),
      Picture2(*this, "Picture2", 122, face::kPlay, forms::Role::Button, "\u25B6"),
      Picture7(*this, "Picture7", 127, face::kPlay, forms::Role::Button, "\u25B6"),
      Picture4(*this, "Picture4", 124, face::kPause, forms::Role::Button, "\u275A\u275A"),
      Picture9(*this, "Picture9", 129, face::kPause, forms::Role::Button, "\u275A\u275A"),
      Picture3(*this, "Picture3", 123, face::kStop, forms::Role::Button, "\u25A0"),
      Picture8(*this, "Picture8", 128, face::kStop, forms::Role::Button, "\u25A0"),
      Picture6(*this, "Picture6", 126, face::kOpen, forms::Role::Button, "\u25B2"),
      Picture11(*this, "Picture11", 131, face::kOpen, forms::Role::Button, "\u25B2"),
      Picture12(*this, "Picture12", 132, face::kPositionKnob, forms::Role::Slider),
      Text1(*this, "Text1", 111, face::kBeginHours, kNoBound),
      Text2(*this, "Text2", 112, face::kBeginMinutes, kNoBound),
      Text3(*this, "Text3", 113, face::kBeginSeconds, kNoBound),
      Command1(*this, "Command1", 141, face::kMarkBegin, "Begin"),
      Command2(*this, "Command2", 142, face::kMarkEnd, "Cut"),
      Text5(*this, "Text5", 115, face::kEndHours, kNoBound),
      Text4(*this, "Text4", 114, face::kEndMinutes, kNoBound),
      Text6(*this, "Text6", 116, face::kEndSeconds, kNoBound),
      Picture13(*this, "Picture13", 133, face::kVolumeKnob, forms::Role::Slider),
      Picture10(*this, "Picture10", 130, face::kOptions, forms::Role::Button, "\u2699"),
      Picture14(*this, "Picture14", 134, face::kHelp, forms::Role::Button, "?"),
      Picture15(*this, "Picture15", 135, face::kPlaylist, forms::Role::Button, "\u2261"),
      Picture5(*this, "Picture5", 125, face::kHideRemote, forms::Role::Button, "_"),
      Picture16(*this, "Picture16", 136, face::kHideAll, forms::Role::Button, "\u25BC"),
      Picture1(*this, "Picture1", 121, face::kExit, forms::Role::Button, "\u00D7"),
      List1(*this, "List1", 151, {face::kListLeft, face::kListTop, 0, 0}),
      Picture17(*this, "Picture17", 137, face::kSizeGrip, forms::Role::Grip),
      Picture18(*this, "Picture18", 138, face::kWidthGrip, forms::Role::Grip),
      Label1(*this, "Label1", 101, face::kTitle, core::kApplicationTitle),
      Label2(*this, "Label2", 102, face::kTime, kNoTime),
      Label3(*this, "Label3", 103, face::kBeginColon1, ":"),
      Label4(*this, "Label4", 104, face::kBeginColon2, ":"),
      Label5(*this, "Label5", 105, face::kEndColon1, ":"),
      Label6(*this, "Label6", 106, face::kEndColon2, ":"),
      Line9(*this, "Line9", Plus(face::kPositionStart, kDown), Plus(face::kPositionEnd, kDown)),
      Line10(*this, "Line10", Plus(face::kVolumeTop, kRight), Plus(face::kVolumeBottom, kRight)),
      Line11(*this, "Line11", face::kPositionStart, face::kPositionEnd),
      Line12(*this, "Line12", face::kPositionStart, face::kPositionEnd),
      Line13(*this, "Line13", face::kVolumeTop, face::kVolumeBottom),
      Timer1(*this, "Timer1", 100),
      Timer2(*this, "Timer2", 50'000),
      context_(context),
      Form1_(context.Form1),
      transport_(context.Form1.MediaPlayer1(), *this),
      hover_({{{kPlayButton, Picture2, Picture7},
               {kStopButton, Picture3, Picture8},
               {kPauseButton, Picture4, Picture9},
               {kOpenButton, Picture6, Picture11}}}),
      remembered_height_(base::RoundHalfEven(face::kFirstExpandedHeight)),
      wizard_(context.wizards) {
    for (forms::Control* control : std::initializer_list<forms::Control*>{
             &Label2, &Text5, &Label5, &Text4, &Label6, &Text6, &Line13, &Line10, &Picture13,
             &Picture10, &Picture14, &Picture15, &Picture5, &Picture16, &Picture1, &Picture17,
             &Picture18}) {
        right_side_.emplace_back(control, control->Left());
    }
    List1.SetLines(playlist_lines_);
    List1.TakeFiles();
    DressPlainly();
    NameControls();
    BindHandlers();
    PlacePlaylist();
}

std::array<forms::TextBox*, 6> Form4::BoundFields() {
    return {&Text1, &Text2, &Text3, &Text5, &Text4, &Text6};
}

std::array<forms::Label*, 4> Form4::Colons() {
    return {&Label3, &Label4, &Label5, &Label6};
}

void Form4::DressPlainly() {
    for (forms::Control* control : Controls())
        control->SetColors(kInk, kPaper);
    for (forms::PictureBox* highlighted : {&Picture7, &Picture8, &Picture9, &Picture11})
        highlighted->SetColors(kInk, kHighlightPaper);
    for (forms::PictureBox* knob : {&Picture12, &Picture13})
        knob->SetColors(kInk, kInk);
    for (forms::PictureBox* grip : {&Picture17, &Picture18})
        grip->SetColors(kRule, kRule);
    for (forms::Line* line : {&Line9, &Line10, &Line11, &Line12, &Line13})
        line->SetBorderColor(kRule);
    for (forms::CommandButton* button : {&Command1, &Command2}) {
        button->SetColors(kInk, kFieldPaper);
        button->SetFlat(true);
    }
    for (forms::TextBox* field : BoundFields()) {
        field->SetColors(kInk, kFieldPaper);
        field->SetAlignment(forms::Align::Center);
        field->TakeDigits(2);
    }
    for (forms::Label* colon : Colons())
        colon->SetAlignment(forms::Align::Center);
    List1.SetColors(kInk, kFieldPaper);
    Label1.SetFont(true, 1.0F);
    Label2.SetAlignment(forms::Align::Right);
}

void Form4::NameControls() {
    const auto name = [](forms::Control& control, const std::string& text) {
        control.SetToolTipText(text);
        control.SetAccessibleName(text);
    };
    for (forms::PictureBox* play : {&Picture2, &Picture7})
        name(*play, "Play");
    for (forms::PictureBox* stop : {&Picture3, &Picture8})
        name(*stop, "Stop");
    for (forms::PictureBox* pause : {&Picture4, &Picture9})
        name(*pause, "Pause");
    for (forms::PictureBox* open : {&Picture6, &Picture11})
        name(*open, "Open");
    name(Picture12, "Position");
    name(Picture13, "Volume");
    name(Picture10, "Options");
    name(Picture14, "Help");
    name(Picture15, "Playlist");
    name(Picture5, "Hide the remote control");
    name(Picture16, "Hide both windows");
    name(Picture1, "Exit");
    name(Picture17, "Size");
    name(Picture18, "Width");
    name(Text1, "Fragment start: hours");
    name(Text2, "Fragment start: minutes");
    name(Text3, "Fragment start: seconds");
    name(Text5, "Fragment end: hours");
    name(Text4, "Fragment end: minutes");
    name(Text6, "Fragment end: seconds");
    name(Command1, "Mark the start of a fragment");
    name(Command2, "Mark the end of the fragment and cut it");
    List1.SetAccessibleName("Playlist");
    Label1.SetToolTipText(core::kApplicationTitle);
    Label2.SetToolTipText("Elapsed or total time");
}

void Form4::BindHandlers() {
    Picture1.Click.calls<&Form4::Picture1_Click>(this);
    Picture2.Click.calls<&Form4::Picture2_Click>(this);
    Picture2.MouseMove.calls<&Form4::Picture2_MouseMove>(this);
    Picture3.Click.calls<&Form4::Picture3_Click>(this);
    Picture3.MouseMove.calls<&Form4::Picture3_MouseMove>(this);
    Picture4.Click.calls<&Form4::Picture4_Click>(this);
    Picture4.MouseMove.calls<&Form4::Picture4_MouseMove>(this);
    Picture5.Click.calls<&Form4::Picture5_Click>(this);
    Picture6.Click.calls<&Form4::Picture6_Click>(this);
    Picture6.MouseMove.calls<&Form4::Picture6_MouseMove>(this);
    Picture7.Click.calls<&Form4::Picture7_Click>(this);
    Picture7.MouseLeave.calls<&Form4::Picture7_MouseLeave>(this);
    Picture8.Click.calls<&Form4::Picture8_Click>(this);
    Picture8.MouseLeave.calls<&Form4::Picture8_MouseLeave>(this);
    Picture9.Click.calls<&Form4::Picture9_Click>(this);
    Picture9.MouseLeave.calls<&Form4::Picture9_MouseLeave>(this);
    Picture10.Click.calls<&Form4::Picture10_Click>(this);
    Picture11.Click.calls<&Form4::Picture11_Click>(this);
    Picture11.MouseLeave.calls<&Form4::Picture11_MouseLeave>(this);
    Picture12.MouseDown.calls<&Form4::Picture12_MouseDown>(this);
    Picture12.MouseMove.calls<&Form4::Picture12_MouseMove>(this);
    Picture12.MouseUp.calls<&Form4::Picture12_MouseUp>(this);
    Picture12.KeyDown.calls<&Form4::Picture12_KeyDown>(this);
    Picture12.Resize.calls<&Form4::Picture12_Resize>(this);
    Picture13.MouseDown.calls<&Form4::Picture13_MouseDown>(this);
    Picture13.MouseMove.calls<&Form4::Picture13_MouseMove>(this);
    Picture13.MouseUp.calls<&Form4::Picture13_MouseUp>(this);
    Picture13.KeyDown.calls<&Form4::Picture13_KeyDown>(this);
    Picture14.Click.calls<&Form4::Picture14_Click>(this);
    Picture15.Click.calls<&Form4::Picture15_Click>(this);
    Picture16.Click.calls<&Form4::Picture16_Click>(this);
    Picture17.MouseDown.calls<&Form4::Picture17_MouseDown>(this);
    Picture17.MouseMove.calls<&Form4::Picture17_MouseMove>(this);
    Picture17.MouseUp.calls<&Form4::Picture17_MouseUp>(this);
    Picture18.MouseDown.calls<&Form4::Picture18_MouseDown>(this);
    Picture18.MouseMove.calls<&Form4::Picture18_MouseMove>(this);
    Picture18.MouseUp.calls<&Form4::Picture18_MouseUp>(this);
    List1.DblClick.calls<&Form4::List1_DblClick>(this);
    List1.MouseUp.calls<&Form4::List1_MouseUp>(this);
    List1.KeyDown.calls<&Form4::List1_KeyDown>(this);
    List1.OLEDragDrop.calls<&Form4::List1_OLEDragDrop>(this);
    add_files.Click.calls<&Form4::add_files_Click>(this);
    clear_items.Click.calls<&Form4::clear_items_Click>(this);
    clear_playlist.Click.calls<&Form4::clear_playlist_Click>(this);
    repeat.Click.calls<&Form4::repeat_Click>(this);
    Text1.LostFocus.calls<&Form4::Text1_LostFocus>(this);
    Text2.LostFocus.calls<&Form4::Text2_LostFocus>(this);
    Text3.LostFocus.calls<&Form4::Text3_LostFocus>(this);
    Text4.LostFocus.calls<&Form4::Text4_LostFocus>(this);
    Text5.LostFocus.calls<&Form4::Text5_LostFocus>(this);
    Text6.LostFocus.calls<&Form4::Text6_LostFocus>(this);
    Command1.Click.calls<&Form4::Command1_Click>(this);
    Command2.Click.calls<&Form4::Command2_Click>(this);
    Label2.Click.calls<&Form4::Label2_Click>(this);
    Label2.MouseDown.calls<&Form4::Label2_MouseDown>(this);
    Timer1.Timer.calls<&Form4::Timer1_Timer>(this);
    Timer2.Timer.calls<&Form4::Timer2_Timer>(this);
}

// The start sequence: playlist, flag file, skin, settings, flags, icon, position, command line. The
// order counts: the settings place what the skin has dressed, and a file on the command line plays
// with the settings applied.
void Form4::Form_Load() {
    load_playlist();
    core::DeleteFlagFile(context_.programFolder);
    tray_restore_ = true;
    // A skin that fails leaves the window as far dressed as it came.
    forms::Guarded(forms::Origin::Program, [this] { goskin(); });
    ApplySettingsFile();
    transport_.Reset();
    position_drag_.Release();
    time_.show_total = false;
    SayVolume();
    context_.tray.SetTrayIcon(core::TrayMessage::Add, Handle(), core::kApplicationTitle);
    RecordPosition();
    if (core::NamesMediaFile(context_.commandLine)) OpenFromCommandLine();
}

// The shell puts a path with blanks in quotes, which no path has of its own.
void Form4::OpenFromCommandLine() {
    file_path_ = base::WithoutQuotes(context_.commandLine);
    Form1_.MediaPlayer1().Open(file_path_);
    time_.StartClip();
    ShowTitle(file_path_);
    ResetFragmentBounds();
    transport_.ready_to_play = true;
    transport_.bPause = false;
}

void Form4::ShowTitle(const std::string& path) {
    PutTitle(base::TitleOf(base::FileNameOf(path)));
}

void Form4::PutTitle(const std::string& title) {
    title_ = title;
    Label1.SetCaption(title_);
    Label1.SetToolTipText(title_);
}

void Form4::ResetFragmentBounds() {
    for (forms::TextBox* field : BoundFields())
        field->SetText(kNoBound);
}

void Form4::Form_Unload() {
    context_.Form2.Close();
    save_playlist();
    SaveSettingsFile();
    context_.tray.SetTrayIcon(core::TrayMessage::Delete, Handle(), {});
    EndCompanions();
    Form1_.UnloadWindow();
    wizard_.Close();
}

}  // namespace nqp::remote
