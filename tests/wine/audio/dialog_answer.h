#pragma once

#include <windows.h>

#include <functional>
#include <string>

namespace nqp::test {

// A person in front of the dialog of compressions, which runs on the test's own thread. As long as
// the object lives, each dialog that comes up is answered once.
class DialogAnswer {
public:
    // The answer must close the dialog.
    explicit DialogAnswer(std::function<void(HWND)> answer);
    ~DialogAnswer();
    DialogAnswer(const DialogAnswer&) = delete;
    DialogAnswer& operator=(const DialogAnswer&) = delete;

    int Dialogs() const { return dialogs_; }

private:
    static void CALLBACK Look(HWND, UINT, UINT_PTR, DWORD);

    std::function<void(HWND)> answer_;
    HWND answered_ = nullptr;
    int dialogs_ = 0;
    UINT_PTR timer_;
};

void Accept(HWND dialog);
void Cancel(HWND dialog);
// Chooses the items that begin with these texts.
void ChooseFormat(HWND dialog, const std::wstring& format, const std::wstring& attributes);

}  // namespace nqp::test
