#pragma once

#include <windows.h>

#include <functional>

namespace nqp::forms::win32 {

// Inside a handler: until the condition holds or the program ends. Posted tasks wait for the
// outermost loop.
void RunModalLoop(const std::function<bool()>& ended);
// How many of them run.
int ModalLoops();
// Dispatches messages, and runs posted tasks between them, until QuitMessageLoop. Returns the code
// that was given to it. What was posted by then has run.
int RunMessageLoop();
void QuitMessageLoop(int exitCode = 0);

// One message, as RunMessageLoop handles it: keys go to the window's key handler first.
void Dispatch(MSG& message);
// Who acted last: a person, with a key or a mouse button, or the program, which showed, raised or
// hid a window. The activations that follow are theirs; some window managers report them late.
void NotePersonActed();
void NoteProgramActed();
bool PersonActedLast();
// Tasks run here and nowhere else, never inside the modal loop of a drag or a menu, whose windows
// are still in use on the stack.
void RunPostedTasks();

}  // namespace nqp::forms::win32
