#pragma once

#include <functional>
#include <string>
#include <vector>

#include "forms/combo_box.h"
#include "forms/control.h"
#include "forms/form.h"
#include "forms/list_box.h"
#include "forms/menu.h"
#include "forms/slider.h"
#include "forms/text_box.h"

// A person in front of the windows. The same tests run over the backend without windows and over
// the platform's, each with its own implementation of these functions.
namespace nqp::test {

void ClickOn(forms::Control& control);
void MovePointerOver(forms::Control& control, base::Twips x, base::Twips y);
void MovePointerOver(forms::Form& form, base::Twips x, base::Twips y);
void PressOn(forms::Form& form, int button, base::Twips x, base::Twips y);
// The pointer over a control, with a button that is held; positions are inside the control as it is
// at that moment.
void PressOn(forms::Control& control, int button, base::Twips x, base::Twips y);
void MoveHolding(forms::Control& control, int button, base::Twips x, base::Twips y);
void ReleaseOn(forms::Control& control, int button, base::Twips x, base::Twips y);
void RightClickOn(forms::Control& control, base::Twips x, base::Twips y);
// Lets go of files over the window or the control.
void DropFiles(forms::Form& form, const std::vector<std::string>& paths);
void DropFiles(forms::Control& control, const std::vector<std::string>& paths);
void MovePointerOff(forms::Control& control);
void PressKey(forms::Form& form, int keyCode, int shift = 0);
// The control has the focus.
void PressKeyIn(forms::Control& control, int keyCode, int shift = 0);
void TypeInto(forms::TextBox& field, const std::string& text);
void ChooseItem(forms::ComboBox& combo, int index);
// A line in sight of a list in which one can be selected.
void ChooseLine(forms::ListBox& list, int line);
void LeaveField(forms::TextBox& field);
void DragSlider(forms::Slider& slider, int value);
// The close box, or the task bar's "close".
void CloseBySystem(forms::Form& form);
// Comes to a window from another one of the program, or back from another program.
void GoTo(forms::Form& form);
void GoToAnotherProgram();
// The icon in the notification area reports a mouse message of this number.
void ReportFromTrayIcon(forms::Form& form, int messageNumber);

// What happens while the next drag of the form is under way: the person lets go where the function
// puts the window.
void OnNextDrag(forms::Form& form, std::function<base::Rect(forms::HitCode)> drag);
// Chooses an item in the next menu that the form pops up.
void ChooseInNextMenu(forms::Form& form, const forms::Menu& menu, const forms::MenuItem& item);

// What happens while the next dialog is up, or while the program waits for a state; it must end
// with the dialog gone, or with that state. Dialogs may be
// opened one inside the other: the inner one's action is given before it opens.
void OnNextModal(std::function<void()> act);

void CancelNextMenu(forms::Form& form);

bool OnScreen(const forms::Form& form);
bool Topmost(const forms::Form& form);
bool Active(const forms::Form& form);
bool ShownOn(const forms::Control& control);
std::string TextOn(const forms::Control& control);
forms::Pointer PointerOf(const forms::Form& form);

// Handles what is waiting in the message loop, posted tasks included.
void RunMessages();
// Lets time pass until the condition holds; false when it does not within some seconds.
bool WaitUntil(const std::function<bool()>& condition);

}  // namespace nqp::test
