#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/bitmap.h"
#include "base/geometry.h"

namespace nqp::forms {

// 0x00BBGGRR, red in the low byte.
using Color = std::uint32_t;

constexpr Color Rgb(unsigned red, unsigned green, unsigned blue) {
    return red | green << 8U | blue << 16U;
}

// Shared by all that show it; null for none.
using Picture = std::shared_ptr<const base::Bitmap>;

enum class Pointer { Arrow, FourWaySizing };
enum class Align { Left, Center, Right };
enum class ControlKind {
    Label,
    Line,
    Frame,
    PictureBox,
    TextBox,
    CommandButton,
    CheckBox,
    OptionButton,
    Slider,
    ListBox,
    ComboBox,
};

// What a picture box or a label is to a person who cannot see or point. Buttons, sliders and the
// headers of pages are reached with Tab.
enum class Role { Image, Button, Slider, Grip, PageHeader };

// The lines of a list box, which count from 0. They are asked for as they come into sight.
class ListLines {
public:
    virtual int Count() const = 0;
    // Valid until the lines change.
    virtual std::string_view Line(int index) const = 0;

protected:
    ~ListLines() = default;
};

// All that a backend needs to show a control. The control owns it; the backend reads it.
struct ControlState {
    ControlKind kind = ControlKind::Label;
    std::string name;
    // Fixed, and above 100, where no number of the platform's dialogs is: tools outside the program
    // address the control by it. Lines are no windows of the platform and have none.
    int id = 0;
    base::Rect bounds;
    std::string text;  // of a picture box: shown as long as it has no picture
    std::string toolTip;
    Picture picture;  // stretched over the whole picture box
    Role role = Role::Image;
    // What assistive tools call the control and its value; empty for what the platform makes of it.
    std::string accessibleName;
    std::string accessibleValue;
    bool visible = true;
    bool enabled = true;
    bool bold = false;
    bool isDefault = false;    // a command button that Enter presses
    bool flat = false;         // a command button that is drawn in the control's own colours
    bool tabStop = true;       // what takes keys is reached with Tab
    bool accessKey = false;    // "&" in a label marks the key that goes to the control behind it
    bool wraps = false;        // a label of several lines
    bool readOnly = false;     // a text box that cannot be edited
    int digits = 0;            // a text box takes so many digits; 0: any text
    bool startsGroup = false;  // the first of the option buttons of which one is chosen
    Align align = Align::Left;
    base::Twips indent = 0;  // blank space at both ends of a label's text
    float fontScale = 1.0F;  // of the system's message font
    Color foreColor = Rgb(0, 0, 0);
    Color backColor = Rgb(255, 255, 255);
    const ListLines* lines = nullptr;  // of a list box
    bool multiSelect = true;           // many of them can be selected
    std::vector<std::string> items;    // of a combo box
    bool takesFiles = false;           // a person may drop files on it
    int linesVersion = 0;              // another one each time the lines change
    // Slider: whole steps. Check box, option button, header of a page: 1 when it is chosen. Combo
    // box: the chosen item from 0, -1 for none.
    int minimum = 0;
    int maximum = 100;
    int value = 0;
};

enum class FrameStyle {
    Borderless,  // its face is all there is; stands in the task bar
    Popup,       // borderless, in no task bar: menus
    Dialog,      // caption and close box, fixed size, Tab and Enter move and press
};

// The picture behind a window's controls. It shows the window at its design size; when the window
// is larger, the column and the row at the stretch point are repeated.
struct Backdrop {
    Picture picture;
    base::Size designSize;
    base::Point stretchPoint;
};

// All that a backend needs to show a window.
struct WindowState {
    std::string name;  // the class outside tools find it by is "nqp." and this
    std::string caption;
    FrameStyle frame = FrameStyle::Borderless;
    base::Rect bounds;  // borderless: the window; dialog: its client area
    Color backColor = Rgb(240, 240, 240);
    Backdrop backdrop{};
    bool takesFiles = false;  // a person may drop files on it
    bool tabMoves = false;    // Tab moves between the controls, as it always does in a dialog
    Pointer pointer = Pointer::Arrow;
    bool topmost = false;
    bool minimizable = false;  // a dialog that can be put away
    bool maximized = false;    // covers its whole monitor when it is shown
};

}  // namespace nqp::forms
