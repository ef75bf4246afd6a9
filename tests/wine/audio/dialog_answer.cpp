#include "dialog_answer.h"

#include <gtest/gtest.h>

#include <utility>

namespace nqp::test {
namespace {

constexpr UINT kInterval = 10;  // milliseconds
constexpr int kFormatList = 101;
constexpr int kAttributesList = 102;

DialogAnswer* current = nullptr;

bool IsDialog(HWND window) {
    wchar_t name[16]{};
    GetClassNameW(window, name, 16);
    return name == std::wstring(L"#32770");
}

BOOL CALLBACK FindDialog(HWND window, LPARAM found) {
    if (!IsDialog(window) || !IsWindowVisible(window)) return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

void Choose(HWND dialog, int list, const std::wstring& text) {
    const HWND box = GetDlgItem(dialog, list);
    const LRESULT item = SendMessageW(box, CB_FINDSTRING, static_cast<WPARAM>(-1),
                                      reinterpret_cast<LPARAM>(text.c_str()));
    ASSERT_GE(item, 0) << "no such item in list " << list;
    SendMessageW(box, CB_SETCURSEL, static_cast<WPARAM>(item), 0);
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(list, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(box));
}

}  // namespace

DialogAnswer::DialogAnswer(std::function<void(HWND)> answer)
    : answer_(std::move(answer)), timer_(SetTimer(nullptr, 0, kInterval, Look)) {
    current = this;
}

DialogAnswer::~DialogAnswer() {
    current = nullptr;
    KillTimer(nullptr, timer_);
}

void DialogAnswer::Look(HWND, UINT, UINT_PTR, DWORD) {
    HWND dialog = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), FindDialog, reinterpret_cast<LPARAM>(&dialog));
    if (dialog == nullptr || current == nullptr) return;
    if (std::exchange(current->answered_, dialog) == dialog) return;
    ++current->dialogs_;
    current->answer_(dialog);
}

void Accept(HWND dialog) {
    SendMessageW(dialog, WM_COMMAND, IDOK, 0);
}

void Cancel(HWND dialog) {
    SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
}

void ChooseFormat(HWND dialog, const std::wstring& format, const std::wstring& attributes) {
    Choose(dialog, kFormatList, format);
    Choose(dialog, kAttributesList, attributes);
}

}  // namespace nqp::test
