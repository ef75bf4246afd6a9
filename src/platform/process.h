#pragma once

#include <filesystem>
#include <string>

namespace nqp::platform {

// What automation, drag and drop and the media stacks need on the window thread, for as long as the
// object lives.
class OleSession {
public:
    OleSession();
    ~OleSession();
    OleSession(const OleSession&) = delete;
    OleSession& operator=(const OleSession&) = delete;

private:
    bool open_;
};

std::filesystem::path ProgramFile();
// The folder of the program file; the settings, the playlist and the skins live in it.
std::filesystem::path ProgramFolder();
// Of the program file, without its extension.
std::string ProgramName();

// The argument string of this process as one text in UTF-8, without the program's own name; quotes
// and blanks inside are kept.
std::string ArgumentText();

// Shows an error to the person, in one message box with the program's title.
void ShowErrorBox(const std::string& sentence);
// For whoever watches the program with a debugger.
void WriteDebugLine(const std::string& text);

}  // namespace nqp::platform
