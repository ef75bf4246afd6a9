// Calls the wizard as a program from outside does: wizard_client OUTPUT calls each method once,
// through the interface, and writes what came back into OUTPUT, a line for each method.
#include <windows.h>

#include <oleauto.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "forms/win32/winapi/com.h"
#include "platform/automation/wizard_interface.h"

namespace {

using nqp::platform::IWizard;

struct TextEnd {
    void operator()(wchar_t* text) const { SysFreeString(text); }
};
using Text = std::unique_ptr<wchar_t, TextEnd>;

Text TextOf(const wchar_t* text) {
    return Text(SysAllocString(text));
}

std::string Outcome(HRESULT answer) {
    return SUCCEEDED(answer) ? "done" : "failed " + std::to_string(answer);
}

using Question = HRESULT (STDMETHODCALLTYPE IWizard::*)(VARIANT_BOOL*);

std::string Ask(IWizard& wizard, Question question) {
    VARIANT_BOOL answer = VARIANT_TRUE;
    const HRESULT outcome = (wizard.*question)(&answer);
    if (FAILED(outcome)) return Outcome(outcome);
    return answer == VARIANT_FALSE ? "false" : "true";
}

std::string LengthOfPath(IWizard& wizard) {
    BSTR path = nullptr;
    const HRESULT outcome = wizard.Get_frwt_OutFilePath(&path);
    const Text owned(path);
    return FAILED(outcome) ? Outcome(outcome) : std::to_string(SysStringLen(path));
}

void CallAll(IWizard& wizard, std::ostream& output) {
    output << "init " << Outcome(wizard.init()) << "\n";
    output << "hide_status " << Outcome(wizard.hide_status()) << "\n";
    output << "set_filepath " << Outcome(wizard.set_filepath(TextOf(L"C:\\a.avi").get())) << "\n";
    output << "set_form7_status " << Outcome(wizard.set_form7_status(TextOf(L"12 % copied").get()))
           << "\n";
    output << "update_numbers "
           << Outcome(wizard.update_numbers(TextOf(L"00:01:30 -").get(), TextOf(L"00:02:00").get()))
           << "\n";
    output << "Get_frwt_video " << Ask(wizard, &IWizard::Get_frwt_video) << "\n";
    output << "Get_frwt_audio " << Ask(wizard, &IWizard::Get_frwt_audio) << "\n";
    output << "Get_frwt_image " << Ask(wizard, &IWizard::Get_frwt_image) << "\n";
    output << "Get_frwt_unload " << Ask(wizard, &IWizard::Get_frwt_unload) << "\n";
    output << "Get_frwt_OutFilePath " << LengthOfPath(wizard) << "\n";
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 2) {
        std::fputs("usage: wizard_client OUTPUT\n", stderr);
        return 2;
    }
    const nqp::winapi::ComApartment apartment;
    std::ofstream output(std::filesystem::path(arguments[1]), std::ios::binary);
    CLSID id{};
    nqp::winapi::ComPtr<IWizard> wizard;
    HRESULT outcome = CLSIDFromProgID(L"NQP.CWizard", &id);
    if (SUCCEEDED(outcome)) {
        outcome =
            CoCreateInstance(id, nullptr, CLSCTX_LOCAL_SERVER, __uuidof(IWizard), wizard.PutVoid());
    }
    if (!wizard) {
        output << "no wizard: " << Outcome(outcome) << "\n";
        return 1;
    }
    CallAll(*wizard.Get(), output);
    return 0;
}
