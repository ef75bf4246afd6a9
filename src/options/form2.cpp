#include "options/form2.h"

#include "base/file.h"
#include "base/text.h"
#include "forms/dialog_look.h"
#include "forms/run_time_error.h"
#include "options/schedule_summary.h"

namespace nqp::options {
namespace {

// Twips. The headers stand in a column on the left; the pages share the area beside it.
constexpr base::Size kClient{8400, 5700};
constexpr base::Twips kHeaderWidth = 2100;
constexpr base::Twips kHeaderHeight = 525;
constexpr base::Twips kFirstHeader = 225;
constexpr base::Twips kHeaderIndent = 300;
constexpr base::Rect kPage{kHeaderWidth, 0, kClient.width - kHeaderWidth, 4950};
constexpr base::Twips kLeft = kHeaderWidth + 360;
constexpr base::Twips kWidth = kClient.width - kLeft - 300;
constexpr base::Twips kLine = 300;  // height of a text or a box
// No less than a closed combo box needs for its line.
constexpr base::Twips kFieldHeight = 375;
// A text on the same line as a field.
constexpr base::Twips kTextDrop = (kFieldHeight - kLine) / 2;
constexpr base::Twips kFieldLeft = kLeft + 3450;
constexpr base::Twips kScheduleLeft = kLeft + 1320;
constexpr base::Twips kDecisionTop = 5130;
constexpr base::Twips kDecisionWidth = 1350;
constexpr base::Twips kDecisionRight = kClient.width - 300;

constexpr forms::Color kWhite = 0xFFFFFF;
constexpr forms::Color kBlack = 0;

constexpr base::Rect Header(int page) {
    return {0, kFirstHeader + kHeaderHeight * static_cast<base::Twips>(page), kHeaderWidth,
            kHeaderHeight};
}

base::Rect PageBounds(int) {
    return kPage;
}

constexpr base::Rect Row(base::Twips top) {
    return {kLeft, top, kWidth, kLine};
}

struct HeadingPlace {
    const char* caption;
    base::Twips top;
};

constexpr std::array<HeadingPlace, Form2::kHeadings> kHeadingPlaces = {{
    {"Windows", 270},
    {"System", 2130},
    {"When a file is opened", 270},
    {"On the screen", 1740},
    {"Sound", 270},
    {"Video", 1440},
}};

base::Rect HeadingBounds(int index) {
    return Row(kHeadingPlaces[static_cast<std::size_t>(index)].top);
}

std::vector<std::string> Months() {
    return {kMonthNames.begin(), kMonthNames.end()};
}

std::vector<std::string> Days() {
    constexpr int kDays = 31;
    std::vector<std::string> days;
    for (int day = 1; day <= kDays; ++day)
        days.push_back(std::to_string(day));
    return days;
}

constexpr char kScheduleCaption[] = "&Schedule";
constexpr char kHalfSetCaption[] = "&Schedule  (!)";

}  // namespace

Form2::Form2(const OptionsContext& context)
    : forms::Form({.name = "Form2",
                   .caption = "Nuvex Quillon Player - Options",
                   .frame = forms::FrameStyle::Dialog,
                   .bounds = {0, 0, kClient.width, kClient.height},
                   .backColor = kWhite}),
      Label16(*this, "Label16", 116, Header(0), "&General"),
      Label17(*this, "Label17", 117, Header(1), "&Playback"),
      Label18(*this, "Label18", 118, Header(2), "S&kin"),
      Label19(*this, "Label19", 119, Header(3), "&Fragments"),
      Label20(*this, "Label20", 120, Header(4), kScheduleCaption),
      Frame1(*this, "Frame1", 180, PageBounds),
      Heading(*this, "Heading", 190, HeadingBounds),

      Check1(*this, "Check1", 121, Row(660), "&Remember window position and size"),
      Check2(*this, "Check2", 122, Row(1050), "&Always on top"),
      Check6(*this, "Check6", 126, Row(1440), "&Move player window with remote window"),
      Check10(*this, "Check10", 130, Row(2520), "A&utostart player after system reboot"),
      Label4(*this, "Label4", 104, {kLeft, 3075, 2400, kLine}, "Use as &default player:"),
      Command3(*this, "Command3", 153, {kLeft + 2550, 3030, 2700, forms::look::kButtonHeight},
               "R&egister File Types"),

      Check4(*this, "Check4", 124, Row(660), "A&utostart playback"),
      Check5(*this, "Check5", 125, Row(1050), "Au&toswitch to fullscreen on play"),
      Check3(*this, "Check3", 123, Row(2130), "&Hide control in fullscreen"),
      Check7(*this, "Check7", 127, Row(2520), "Use &mini-control bar"),
      Check8(*this, "Check8", 128, Row(2910), "Use su&btitles"),

      Label1(*this, "Label1", 101, Row(270), "&Choose skin from the list:"),
      List1(*this, "List1", 161, {kLeft, 660, kWidth, 3990}),

      Label2(*this, "Label2", 102, {kLeft, 690 + kTextDrop, 3300, kLine},
             "&Quality of MP3 sound (Hz):"),
      Text1(*this, "Text1", 141, {kFieldLeft, 690, 1200, kFieldHeight}),
      Option1(*this, "Option1", 171, Row(1830), "&Video for Windows interface", true),
      Option2(*this, "Option2", 172, Row(2220), "&DirectShow interface"),
      Label3(*this, "Label3", 103, {kLeft, 2760 + kTextDrop, 3300, kLine},
             "Frequency of a &target fragment:"),
      Text2(*this, "Text2", 142, {kFieldLeft, 2760, 1200, kFieldHeight}),
      Check9(*this, "Check9", 129, Row(3240), "&Insert picture in video fragment"),
      Command4(*this, "Command4", 154, {kLeft, 3660, 1350, forms::look::kButtonHeight}, "&Choose"),
      Command5(*this, "Command5", 155, {kLeft + 1500, 3660, 1350, forms::look::kButtonHeight},
               "P&osition"),
      PictureName(*this, "PictureName", 105, {kLeft, 4140, kWidth, kLine}),

      Label10(*this, "Label10", 110, {kLeft, 330 + kTextDrop, 1200, kLine}, "&Month:"),
      Combo1(*this, "Combo1", 173, {kScheduleLeft, 330, 1950, kFieldHeight}, Months()),
      Label11(*this, "Label11", 111, {kLeft + 3570, 330 + kTextDrop, 600, kLine}, "&Day:"),
      Combo2(*this, "Combo2", 174, {kLeft + 4200, 330, 900, kFieldHeight}, Days()),
      Label12(*this, "Label12", 112, {kLeft, 870 + kTextDrop, 1200, kLine}, "&Time:"),
      Text3(*this, "Text3", 143, {kScheduleLeft, 870, 600, kFieldHeight}),
      Label13(*this, "Label13", 113, {kScheduleLeft + 660, 870 + kTextDrop, 210, kLine}, "h"),
      Text4(*this, "Text4", 144, {kScheduleLeft + 960, 870, 600, kFieldHeight}),
      Label14(*this, "Label14", 114, {kScheduleLeft + 1620, 870 + kTextDrop, 270, kLine}, "m"),
      Label15(*this, "Label15", 115, {kLeft, 1410 + kTextDrop, 1260, kLine}, "Fi&le to play:"),
      Text5(*this, "Text5", 145,
            {kScheduleLeft, 1410, kWidth - (kScheduleLeft - kLeft), kFieldHeight}),
      Command6(*this, "Command6", 156, {kScheduleLeft, 1890, 1500, forms::look::kButtonHeight},
               "&Browse..."),
      Command7(*this, "Command7", 157,
               {kScheduleLeft + 1650, 1890, 1500, forms::look::kButtonHeight}, "&Clear"),
      Summary(*this, "Summary", 106, {kLeft, 2640, kWidth, 1200}),

      Command2(*this, "Command2", 152,
               {kDecisionRight - 2 * kDecisionWidth - forms::look::kButtonGap, kDecisionTop,
                kDecisionWidth, forms::look::kButtonHeight},
               "OK", true),
      Command1(*this, "Command1", 151,
               {kDecisionRight - kDecisionWidth, kDecisionTop, kDecisionWidth,
                forms::look::kButtonHeight},
               "Cancel"),
      context_(context) {
    FillPages();
    PaintPages();
    BindHandlers();
    List1.SelectOne();
    List1.SetLines(skin_lines_);
    ShowPage(0);
}

void Form2::FillPages() {
    Frame1[0].Hold(
        {&Heading[0], &Check1, &Check2, &Check6, &Heading[1], &Check10, &Label4, &Command3});
    Frame1[1].Hold({&Heading[2], &Check4, &Check5, &Heading[3], &Check3, &Check7, &Check8});
    Frame1[2].Hold({&Label1, &List1});
    Frame1[3].Hold({&Heading[4], &Label2, &Text1, &Heading[5], &Option1, &Option2, &Label3, &Text2,
                    &Check9, &Command4, &Command5, &PictureName});
    Frame1[4].Hold({&Label10, &Combo1, &Label11, &Combo2, &Label12, &Text3, &Label13, &Text4,
                    &Label14, &Label15, &Text5, &Command6, &Command7, &Summary});
}

void Form2::PaintPages() {
    for (int page = 0; page < kPages; ++page)
        Frame1[page].SetForeColor(forms::look::kPaper);
    for (int index = 0; index < kHeadings; ++index) {
        Heading[index].SetCaption(kHeadingPlaces[static_cast<std::size_t>(index)].caption);
        Heading[index].SetFont(true, 1.0F);
        Heading[index].SetColors(forms::look::kInk, forms::look::kPaper);
    }
    for (forms::Control* control : std::initializer_list<forms::Control*>{
             &Check1, &Check2, &Check3, &Check4, &Check5, &Check6, &Check7, &Check8, &Check9,
             &Check10, &Option1, &Option2}) {
        control->SetColors(forms::look::kInk, forms::look::kPaper);
    }
    for (forms::Label* label : {&Label1, &Label2, &Label3, &Label4, &Label10, &Label11, &Label12,
                                &Label13, &Label14, &Label15, &Summary}) {
        label->SetColors(forms::look::kInk, forms::look::kPaper);
        label->MarkAccessKey();
    }
    PictureName.SetColors(forms::look::kFaintInk, forms::look::kPaper);
    PictureName.MarkAccessKey();
    Summary.Wrap();
    for (forms::Label* header : Headers()) {
        header->MakePageHeader();
        header->MarkAccessKey();
        header->SetIndent(kHeaderIndent);
    }
    Label16.SetAccessibleName("General");
    Label17.SetAccessibleName("Playback");
    Label18.SetAccessibleName("Skin");
    Label19.SetAccessibleName("Fragments");
    List1.SetAccessibleName("Skins");
    Text3.SetAccessibleName("Hour");
    Text4.SetAccessibleName("Minute");
}

void Form2::BindHandlers() {
    Label16.Click.calls<&Form2::Label16_Click>(this);
    Label17.Click.calls<&Form2::Label17_Click>(this);
    Label18.Click.calls<&Form2::Label18_Click>(this);
    Label19.Click.calls<&Form2::Label19_Click>(this);
    Label20.Click.calls<&Form2::Label20_Click>(this);
    Option1.Click.calls<&Form2::Option1_Click>(this);
    Option2.Click.calls<&Form2::Option2_Click>(this);
    Text2.Change.calls<&Form2::Text2_Change>(this);
    Text3.Change.calls<&Form2::Text3_Change>(this);
    Text4.Change.calls<&Form2::Text4_Change>(this);
    Text5.Change.calls<&Form2::Text5_Change>(this);
    Combo1.Change.calls<&Form2::Combo1_Change>(this);
    Combo2.Change.calls<&Form2::Combo2_Change>(this);
    Command1.Click.calls<&Form2::Command1_Click>(this);
    Command2.Click.calls<&Form2::Command2_Click>(this);
    Command3.Click.calls<&Form2::Command3_Click>(this);
    Command4.Click.calls<&Form2::Command4_Click>(this);
    Command5.Click.calls<&Form2::Command5_Click>(this);
    Command6.Click.calls<&Form2::Command6_Click>(this);
    Command7.Click.calls<&Form2::Command7_Click>(this);
}

void Form2::ShowOnTopModal() {
    if (Loaded()) return;
    filled_ = false;
    Load();
    if (!filled_) {
        Unload();
        throw forms::RunTimeError("The options could not be read.");
    }
    const base::Size screen = forms::ScreenSize();
    CentreOver({0, 0, screen.width, screen.height});
    SetTopmost(true);
    ShowModal();
}

void Form2::Form_Unload() {
    context_.InsertBMPForm.Close();
    context_.Form8.Unload();
}

std::array<forms::Label*, Form2::kPages> Form2::Headers() {
    return {&Label16, &Label17, &Label18, &Label19, &Label20};
}

void Form2::ShowPage(int page) {
    page_ = page;
    int index = 0;
    for (forms::Label* header : Headers()) {
        const bool chosen = index == page;
        header->SetColors(chosen ? kWhite : kBlack, chosen ? kBlack : kWhite);
        header->SetChosen(chosen);
        Frame1[index++].SetVisible(chosen);
    }
}

// The header of the page has the focus then, whatever turned to it.
void Form2::GoToPage(int page) {
    ShowPage((page + kPages) % kPages);
    Headers()[static_cast<std::size_t>(page_)]->SetFocus();
}

// With the focus on a header the arrows turn pages; Control and Tab do wherever it is.
bool Form2::TurnPage(const base::KeyEvent& key) {
    const bool onHeader = Headers()[static_cast<std::size_t>(page_)]->HasFocus();
    const bool back = (key.Shift & base::kShiftKey) != 0;
    switch (key.KeyCode) {
        case base::kKeyTab:
            if ((key.Shift & base::kControlKey) == 0) return false;
            GoToPage(page_ + (back ? -1 : 1));
            return true;
        case base::kKeyUp:
        case base::kKeyLeft:
            if (onHeader) GoToPage(page_ - 1);
            return onHeader;
        case base::kKeyDown:
        case base::kKeyRight:
            if (onHeader) GoToPage(page_ + 1);
            return onHeader;
        case base::kKeyHome:
            if (onHeader) GoToPage(0);
            return onHeader;
        case base::kKeyEnd:
            if (onHeader) GoToPage(kPages - 1);
            return onHeader;
        default:
            return false;
    }
}

bool Form2::Form_KeyDown(const base::KeyEvent& key) {
    if (key.KeyCode == base::kKeyEscape) {
        Unload();
        return true;
    }
    return TurnPage(key);
}

// What only the one of the two interfaces can do.
void Form2::EnableVideoForWindowsFields(bool enabled) {
    Text2.SetEnabled(enabled);
    Check9.SetEnabled(enabled);
}

void Form2::Command3_Click() {
    context_.Form8.SetOpener(*this);
    context_.Form8.Load();
    context_.Form8.CentreOver(context_.Form1.VideoBounds());
    context_.Form8.ShowModal();
}

void Form2::Command4_Click() {
    const auto path =
        context_.dialogs.OpenFile({.owner = Handle(),
                                   .title = "Nuvex Quillon Player - Options - Image to insert",
                                   .filter = {"Bitmap Image (*.bmp)", "*.bmp"}});
    if (!Loaded() || !path || !base::IsFile(base::PathFromUtf8(*path))) return;
    picture_path_ = *path;
    ShowPictureName();
}

// Where nothing was accepted the picture stays where it was.
void Form2::Command5_Click() {
    const auto place = context_.InsertBMPForm.Place(picture_path_);
    if (!place || !Loaded()) return;
    picture_x_ = place->x;
    picture_y_ = place->y;
}

void Form2::ShowPictureName() {
    Command5.SetEnabled(!picture_path_.empty());
    PictureName.SetCaption(picture_path_.empty()
                               ? "No picture is chosen."
                               : base::WithDoubledAmpersands(base::FileNameOf(picture_path_)));
    PictureName.SetToolTipText(picture_path_);
}

void Form2::Command6_Click() {
    const auto path =
        context_.dialogs.OpenFile({.owner = Handle(),
                                   .title = "Nuvex Quillon Player - Options - File to play",
                                   .filter = {"All Media Types", "*.*"}});
    if (!Loaded() || !path) return;
    Text5.SetText(*path);
    SummarizeSchedule();
}

void Form2::Command7_Click() {
    Combo1.SetListIndex(forms::ComboBox::kNone);
    Combo2.SetListIndex(forms::ComboBox::kNone);
    for (forms::TextBox* field : {&Text3, &Text4, &Text5})
        field->SetText({});
    SummarizeSchedule();
}

// On every page it is seen when a schedule is not whole.
void Form2::SummarizeSchedule() {
    const ScheduleSummary summary = Summarize({.month = Combo1.ListIndex() + 1,
                                               .day = Combo2.ListIndex() + 1,
                                               .hour = Text3.Text(),
                                               .minute = Text4.Text(),
                                               .file = Text5.Text()});
    Summary.SetForeColor(summary.halfSet ? forms::look::kWarningInk : forms::look::kInk);
    Summary.SetCaption(base::WithDoubledAmpersands(summary.sentence));
    Label20.SetCaption(summary.halfSet ? kHalfSetCaption : kScheduleCaption);
    Label20.SetAccessibleName(summary.halfSet ? "Schedule, not complete" : "Schedule");
    Label20.SetToolTipText(summary.halfSet ? summary.sentence : std::string());
}

}  // namespace nqp::options
