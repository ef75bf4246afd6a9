// winctl drives the program's windows from outside, as a test or a script needs it.
//   winctl VERB [ARGUMENT...]   one command; prints its rows, exit code 1 with a line on failure
//   winctl serve                commands from standard input, one a line, fields separated by tabs;
//                               each answer is rows that start with "|" and then ". ok" or
//                               ". error TEXT"
// WINDOW is a class name, "class:title", either of them followed by "@pid", or "0x" and a handle.
// CONTROL is a control id, a class name or "0x" and a handle. Texts are UTF-8; in rows a backslash,
// a tab and a line break are written \\, \t and \n.
#include <windows.h>

#include <shellapi.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "win32/handle_count.h"

namespace {

using Words = std::vector<std::wstring>;
using Clock = std::chrono::steady_clock;

constexpr UINT kAnswerMilliseconds = 10000;
constexpr DWORD kPollMilliseconds = 5;
constexpr const wchar_t* kVideoWindow = L"nqp.Form1";
constexpr const wchar_t* kMediaWindow = L"nqp.MediaPlayer";

std::string Utf8(const std::wstring& text) {
    const int length = static_cast<int>(text.size());
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

std::wstring Wide(const std::string& bytes) {
    const int length = static_cast<int>(bytes.size());
    const int size = MultiByteToWideChar(CP_UTF8, 0, bytes.data(), length, nullptr, 0);
    std::wstring text(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, bytes.data(), length, text.data(), size);
    return text;
}

[[noreturn]] void Fail(const std::string& reason) {
    throw std::runtime_error(reason);
}

long long Number(const std::wstring& word) {
    try {
        std::size_t used = 0;
        const long long value = std::stoll(word, &used, 0);
        if (used == word.size()) return value;
    } catch (const std::exception&) {
    }
    Fail("not a number: " + Utf8(word));
}

double Seconds(const std::wstring& word) {
    try {
        return std::stod(word);
    } catch (const std::exception&) {
        Fail("not a number of seconds: " + Utf8(word));
    }
}

HWND Handle(const std::wstring& word) {
    return reinterpret_cast<HWND>(static_cast<std::intptr_t>(Number(word)));
}

std::wstring ClassOf(HWND window) {
    wchar_t name[256] = {};
    GetClassNameW(window, name, 256);
    return name;
}

DWORD ProcessOf(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process;
}

LONG_PTR Ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    DWORD_PTR answer = 0;
    if (SendMessageTimeoutW(window, message, wParam, lParam, SMTO_NORMAL, kAnswerMilliseconds,
                            &answer) == 0) {
        Fail("the window does not answer");
    }
    return static_cast<LONG_PTR>(answer);
}

void Post(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (!PostMessageW(window, message, wParam, lParam)) Fail("the window takes no message");
}

std::wstring TextOf(HWND window) {
    const LONG_PTR length = Ask(window, WM_GETTEXTLENGTH, 0, 0);
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    const LONG_PTR copied =
        Ask(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(copied));
    return text;
}

// ---- rows ----

std::string Escaped(const std::string& text) {
    std::string out;
    for (const char c : text) {
        if (c == '\\') {
            out += "\\\\";
        } else if (c == '\t') {
            out += "\\t";
        } else if (c == '\n') {
            out += "\\n";
        } else if (c != '\r') {
            out += c;
        }
    }
    return out;
}

class Row {
public:
    Row& Add(const std::string& text) {
        if (!line_.empty() || filled_) line_ += '\t';
        line_ += Escaped(text);
        filled_ = true;
        return *this;
    }
    Row& Add(const std::wstring& text) { return Add(Utf8(text)); }
    Row& Add(long long number) { return Add(std::to_string(number)); }
    Row& AddHandle(HWND window) {
        char text[32];
        std::snprintf(text, sizeof text, "0x%llx",
                      static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(window)));
        return Add(std::string(text));
    }
    Row& Add(const RECT& box) {
        return Add(box.left).Add(box.top).Add(box.right - box.left).Add(box.bottom - box.top);
    }
    const std::string& Line() const { return line_; }

private:
    std::string line_;
    bool filled_ = false;
};

using Rows = std::vector<Row>;

// ---- finding windows ----

struct WindowName {
    std::wstring className;
    std::optional<std::wstring> title;
    DWORD process = 0;

    explicit WindowName(std::wstring word) {
        if (const auto at = word.rfind(L'@'); at != std::wstring::npos) {
            process = static_cast<DWORD>(Number(word.substr(at + 1)));
            word.resize(at);
        }
        const auto colon = word.find(L':');
        className = word.substr(0, colon);
        if (colon != std::wstring::npos) title = word.substr(colon + 1);
    }

    bool Fits(HWND window) const {
        if (process != 0 && ProcessOf(window) != process) return false;
        if (ClassOf(window) != className) return false;
        return !title || TextOf(window) == *title;
    }
};

struct Search {
    std::function<bool(HWND)> visit;  // false ends the search
};

BOOL CALLBACK Visit(HWND window, LPARAM search) {
    return reinterpret_cast<Search*>(search)->visit(window) ? TRUE : FALSE;
}

void ForEachTopWindow(std::function<bool(HWND)> visit) {
    Search search{std::move(visit)};
    EnumWindows(Visit, reinterpret_cast<LPARAM>(&search));
}

void ForEachChild(HWND parent, std::function<bool(HWND)> visit) {
    Search search{std::move(visit)};
    EnumChildWindows(parent, Visit, reinterpret_cast<LPARAM>(&search));
}

HWND LookFor(const std::wstring& word) {
    if (word.starts_with(L"0x")) return IsWindow(Handle(word)) ? Handle(word) : nullptr;
    const WindowName name(word);
    HWND found = nullptr;
    ForEachTopWindow([&](HWND window) {
        if (name.Fits(window)) found = window;
        return found == nullptr;
    });
    return found;
}

HWND Window(const std::wstring& word) {
    HWND window = LookFor(word);
    if (window == nullptr) Fail("no window " + Utf8(word));
    return window;
}

HWND LookForControl(HWND parent, const std::wstring& word) {
    if (word.starts_with(L"0x")) return Handle(word);
    const bool byId = word.find_first_not_of(L"0123456789") == std::wstring::npos;
    const int id = byId ? static_cast<int>(Number(word)) : 0;
    HWND found = nullptr;
    ForEachChild(parent, [&](HWND child) {
        if (byId ? GetDlgCtrlID(child) == id : ClassOf(child) == word) found = child;
        return found == nullptr;
    });
    return found;
}

HWND Control(const Words& words, std::size_t at) {
    HWND window = Window(words.at(at));
    if (words.size() <= at + 1 || words[at + 1].empty()) return window;
    HWND control = LookForControl(window, words[at + 1]);
    if (control == nullptr) {
        Fail("no control " + Utf8(words[at + 1]) + " in " + Utf8(words[at]));
    }
    return control;
}

RECT ScreenRectangle(HWND window) {
    RECT box = {};
    if (!GetWindowRect(window, &box)) Fail("the window is gone");
    return box;
}

RECT ClientRectangle(HWND window) {
    RECT box = {};
    if (!GetClientRect(window, &box)) Fail("the window is gone");
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&box), 2);
    return box;
}

// ---- verbs about windows ----

bool IsOfInterest(const std::wstring& className) {
    return className.starts_with(L"nqp.") || className == L"#32770" || className == L"HH Parent";
}

Rows List(const Words&) {
    Rows rows;
    ForEachTopWindow([&](HWND window) {
        const std::wstring className = ClassOf(window);
        if (!IsOfInterest(className)) return true;
        Row row;
        row.AddHandle(window).Add(ProcessOf(window)).Add(className).Add(TextOf(window));
        row.Add(IsWindowVisible(window) ? 1 : 0).Add(ScreenRectangle(window));
        rows.push_back(row);
        return true;
    });
    return rows;
}

Rows Tree(const Words& words) {
    Rows rows;
    HWND top = Window(words.at(1));
    ForEachChild(top, [&](HWND child) {
        Row row;
        row.AddHandle(child).AddHandle(GetParent(child)).Add(GetDlgCtrlID(child));
        row.Add(ClassOf(child)).Add(TextOf(child)).Add(IsWindowVisible(child) ? 1 : 0);
        row.Add(IsWindowEnabled(child) ? 1 : 0).Add(ScreenRectangle(child));
        rows.push_back(row);
        return true;
    });
    return rows;
}

bool IsInState(const std::wstring& name, const std::wstring& state) {
    HWND window = LookFor(name);
    if (state == L"gone") return window == nullptr;
    if (state == L"exists") return window != nullptr;
    if (state == L"visible") return window != nullptr && IsWindowVisible(window);
    if (state == L"hidden") return window != nullptr && !IsWindowVisible(window);
    Fail("no such state: " + Utf8(state));
}

Rows Wait(const Words& words) {
    const auto deadline = Clock::now() + std::chrono::duration<double>(Seconds(words.at(3)));
    while (!IsInState(words.at(1), words.at(2))) {
        if (Clock::now() >= deadline) {
            Fail(Utf8(words[1]) + " is not " + Utf8(words[2]) + " after " + Utf8(words[3]) +
                 " seconds");
        }
        Sleep(kPollMilliseconds);
    }
    return {};
}

Rows Is(const Words& words) {
    return {Row().Add(IsInState(words.at(1), words.at(2)) ? 1 : 0)};
}

Rows Rect(const Words& words) {
    return {Row().Add(ScreenRectangle(Control(words, 1)))};
}

Rows Client(const Words& words) {
    return {Row().Add(ClientRectangle(Control(words, 1)))};
}

Rows Text(const Words& words) {
    return {Row().Add(TextOf(Control(words, 1)))};
}

Rows SetText(const Words& words) {
    Ask(Control(words, 1), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(words.at(3).c_str()));
    return {};
}

Rows Visible(const Words& words) {
    return {Row().Add(IsWindowVisible(Control(words, 1)) ? 1 : 0)};
}

Rows Click(const Words& words) {
    HWND control = Control(words, 1);
    if (ClassOf(control) == L"Button") {
        Post(control, BM_CLICK, 0, 0);
        return {};
    }
    const RECT box = ClientRectangle(control);
    const LPARAM middle = MAKELPARAM((box.right - box.left) / 2, (box.bottom - box.top) / 2);
    Post(control, WM_LBUTTONDOWN, MK_LBUTTON, middle);
    Post(control, WM_LBUTTONUP, 0, middle);
    return {};
}

Rows Command(const Words& words) {
    Post(Window(words.at(1)), WM_COMMAND, static_cast<WPARAM>(Number(words.at(2))), 0);
    return {};
}

Rows PostAny(const Words& words) {
    Post(Control(words, 1), static_cast<UINT>(Number(words.at(3))),
         static_cast<WPARAM>(Number(words.at(4))), static_cast<LPARAM>(Number(words.at(5))));
    return {};
}

Rows SendAny(const Words& words) {
    const LONG_PTR answer =
        Ask(Control(words, 1), static_cast<UINT>(Number(words.at(3))),
            static_cast<WPARAM>(Number(words.at(4))), static_cast<LPARAM>(Number(words.at(5))));
    return {Row().Add(answer)};
}

Rows Close(const Words& words) {
    Post(Window(words.at(1)), WM_CLOSE, 0, 0);
    return {};
}

// As a person hides a window through another tool; its program does not know.
Rows Hide(const Words& words) {
    ShowWindowAsync(Window(words.at(1)), SW_HIDE);
    return {};
}

// place WINDOW CONTROL X Y: a top-level window by its place on the screen, a control in its parent.
Rows Place(const Words& words) {
    HWND window = Control(words, 1);
    const auto x = static_cast<int>(Number(words.at(3)));
    const auto y = static_cast<int>(Number(words.at(4)));
    if (!SetWindowPos(window, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE)) {
        Fail("the window is gone");
    }
    return {};
}

Rows Style(const Words& words) {
    HWND window = Control(words, 1);
    return {Row()
                .Add(GetWindowLongPtrW(window, GWL_STYLE))
                .Add(GetWindowLongPtrW(window, GWL_EXSTYLE))};
}

Rows Foreground(const Words&) {
    HWND window = GetForegroundWindow();
    return {Row().AddHandle(window).Add(ClassOf(window)).Add(ProcessOf(window))};
}

Rows Dpi(const Words&) {
    return {Row().Add(static_cast<long long>(GetDpiForSystem()))};
}

// ---- verbs about the notification area ----

// The program's icon: the shell knows it by its window and the number 0.
bool NotifyShell(DWORD message, HWND window) {
    NOTIFYICONDATAW icon = {};
    icon.cbSize = sizeof icon;
    icon.hWnd = window;
    return Shell_NotifyIconW(message, &icon) != FALSE;
}

// A change of nothing succeeds when there is an icon to change.
Rows Icon(const Words& words) {
    return {Row().Add(NotifyShell(NIM_MODIFY, Window(words.at(1))) ? 1 : 0)};
}

Rows DropIcon(const Words& words) {
    if (!NotifyShell(NIM_DELETE, Window(words.at(1)))) Fail("the shell has no such icon");
    return {};
}

// What a shell says when it has started anew and knows no icons.
Rows ShellStarted(const Words&) {
    Post(HWND_BROADCAST, RegisterWindowMessageW(L"TaskbarCreated"), 0, 0);
    return {};
}

// ---- the media window ----

// "@pid" chooses one of several players.
HWND MediaWindow(const std::wstring& process) {
    HWND video = Window(kVideoWindow + process);
    if (HWND media = LookForControl(video, kMediaWindow)) return media;
    return Window(kMediaWindow + process);
}

Rows Media(const Words& words) {
    const bool chosen = words.size() > 1 && words[1].starts_with(L"@");
    const std::size_t at = chosen ? 2 : 1;
    static const UINT message = RegisterWindowMessageW(kMediaWindow);
    const auto property = static_cast<WPARAM>(Number(words.at(at)));
    const auto value = words.size() > at + 1 ? static_cast<LPARAM>(Number(words[at + 1])) : 0;
    return {Row().Add(Ask(MediaWindow(chosen ? words[1] : L""), message, property, value))};
}

// play state, position ms, duration ms, volume, rate per mille, readiness, visible, display size,
// frames drawn
Rows Playback(const Words& words) {
    constexpr int kProperties = 9;
    Row row;
    for (int property = 1; property <= kProperties; ++property) {
        Words media = {L"media", std::to_wstring(property)};
        if (words.size() > 1) media.insert(media.begin() + 1, words[1]);
        row.Add(Media(media).front().Line());
    }
    return {row};
}

// ---- processes that were started here ----

std::map<DWORD, HANDLE>& Processes() {
    static std::map<DWORD, HANDLE> processes;
    return processes;
}

HANDLE Process(const std::wstring& word) {
    const auto found = Processes().find(static_cast<DWORD>(Number(word)));
    if (found == Processes().end()) Fail("no process " + Utf8(word) + " was started here");
    return found->second;
}

// start EXE FOLDER COMMANDLINE: the command line is what follows the program's name, as it stands.
Rows Start(const Words& words) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    std::wstring commandLine = L"\"" + words.at(1) + L"\"";
    if (words.size() > 3 && !words[3].empty()) commandLine += L" " + words[3];
    if (!CreateProcessW(words[1].c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        words.at(2).c_str(), &startup, &process)) {
        Fail("cannot start " + Utf8(words[1]) + ": error " + std::to_string(GetLastError()));
    }
    CloseHandle(process.hThread);
    Processes()[process.dwProcessId] = process.hProcess;
    return {Row().Add(process.dwProcessId)};
}

// Prints the exit code of a process that has ended.
Rows Ended(const Words& words) {
    HANDLE process = Process(words.at(1));
    const auto milliseconds = static_cast<DWORD>(Seconds(words.at(2)) * 1000);
    if (WaitForSingleObject(process, milliseconds) != WAIT_OBJECT_0) {
        Fail("process " + Utf8(words[1]) + " still runs after " + Utf8(words[2]) + " seconds");
    }
    DWORD code = 0;
    GetExitCodeProcess(process, &code);
    return {Row().Add(code)};
}

Rows Kill(const Words& words) {
    TerminateProcess(Process(words.at(1)), 1);
    return {};
}

Rows Handles(const Words& words) {
    const HANDLE process = Process(words.at(1));
    return {Row().Add(static_cast<long long>(nqp::test::CountHandles(GetProcessId(process))))};
}

// ---- the command line ----

using Verb = Rows (*)(const Words&);

const std::map<std::wstring, Verb>& Verbs() {
    static const std::map<std::wstring, Verb> verbs = {
        {L"list", List},
        {L"tree", Tree},
        {L"wait", Wait},
        {L"is", Is},
        {L"rect", Rect},
        {L"client", Client},
        {L"text", Text},
        {L"settext", SetText},
        {L"visible", Visible},
        {L"click", Click},
        {L"command", Command},
        {L"post", PostAny},
        {L"send", SendAny},
        {L"close", Close},
        {L"style", Style},
        {L"media", Media},
        {L"start", Start},
        {L"ended", Ended},
        {L"playback", Playback},
        {L"kill", Kill},
        {L"handles", Handles},
        {L"dpi", Dpi},
        {L"foreground", Foreground},
        {L"hide", Hide},
        {L"icon", Icon},
        {L"place", Place},
        {L"dropicon", DropIcon},
        {L"shellstarted", ShellStarted},
    };
    return verbs;
}

Rows Run(const Words& words) {
    const auto verb = Verbs().find(words.at(0));
    if (verb == Verbs().end()) Fail("no such command: " + Utf8(words[0]));
    try {
        return verb->second(words);
    } catch (const std::out_of_range&) {
        Fail("too few arguments for " + Utf8(words[0]));
    }
}

void Write(const std::string& bytes) {
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), bytes.data(), static_cast<DWORD>(bytes.size()),
              &written, nullptr);
}

class Input {
public:
    std::optional<std::string> Line() {
        for (;;) {
            if (const auto end = pending_.find('\n'); end != std::string::npos) {
                std::string line = pending_.substr(0, end);
                pending_.erase(0, end + 1);
                return line;
            }
            char part[4096];
            DWORD read = 0;
            if (!ReadFile(GetStdHandle(STD_INPUT_HANDLE), part, sizeof part, &read, nullptr) ||
                read == 0) {
                return std::nullopt;
            }
            pending_.append(part, read);
        }
    }

private:
    std::string pending_;
};

Words Fields(const std::string& line) {
    Words fields;
    std::size_t begin = 0;
    for (;;) {
        const auto tab = line.find('\t', begin);
        fields.push_back(Wide(line.substr(begin, tab - begin)));
        if (tab == std::string::npos) return fields;
        begin = tab + 1;
    }
}

std::string Answer(const std::string& line) {
    try {
        std::string answer;
        for (const Row& row : Run(Fields(line))) {
            answer += "|" + row.Line() + "\n";
        }
        return answer + ". ok\n";
    } catch (const std::exception& error) {
        return ". error " + Escaped(error.what()) + "\n";
    }
}

int Serve() {
    Input input;
    while (const auto line = input.Line()) {
        Write(Answer(*line));
    }
    return 0;
}

int RunOnce(const Words& words) {
    try {
        for (const Row& row : Run(words)) {
            Write(row.Line() + "\n");
        }
        return 0;
    } catch (const std::exception& error) {
        Write(std::string("winctl: ") + error.what() + "\n");
        return 1;
    }
}

Words Arguments() {
    int count = 0;
    wchar_t** parts = CommandLineToArgvW(GetCommandLineW(), &count);
    Words words(parts + 1, parts + count);
    LocalFree(parts);
    return words;
}

}  // namespace

int main() {
    // Without this, rectangles on a scaled screen would be those of an unscaled one.
    SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
    const Words words = Arguments();
    if (words.empty()) {
        Write("usage: winctl VERB [ARGUMENT...] | winctl serve\n");
        return 2;
    }
    return words[0] == L"serve" ? Serve() : RunOnce(words);
}
