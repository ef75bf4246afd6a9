#include <gtest/gtest.h>
#include <windows.h>

#include <objbase.h>

#include <functional>
#include <future>
#include <memory>
#include <sstream>
#include <thread>
#include <vector>

#include "classes.h"
#include "forms/run_time_error.h"
#include "forms/win32/winapi/com.h"
#include "platform/automation/late_bound.h"
#include "platform/automation/registration.h"
#include "platform/automation/variant.h"
#include "platform/automation/wizard_client.h"
#include "platform/automation/wizard_interface.h"
#include "platform/automation/wizard_server.h"
#include "platform/process.h"
#include "processes.h"
#include "recording_wizard.h"

namespace nqp::test {
namespace {

using namespace std::string_literals;
using platform::IWizard;

const std::string kChinese = "C:\\片段\\视频 1.avi";

std::string ErrorOf(const std::function<void()>& step) {
    try {
        step();
    } catch (const forms::RunTimeError& error) {
        return error.what();
    }
    return "no error";
}

std::string LastLine(const std::string& text) {
    std::istringstream lines(text);
    std::string last;
    for (std::string line; std::getline(lines, line);)
        last = line;
    return last;
}

std::string Asked(core::Wizard& wizard, const std::string& question) {
    wizard.set_filepath(question);
    return LastLine(wizard.Get_frwt_OutFilePath());
}

// The server is this program, started by the system.
class WizardTest : public testing::Test {
protected:
    void SetUp() override { platform::RegisterAutomation(platform::ProgramFile()); }

    void TearDown() override {
        EXPECT_TRUE(WaitUntil([&] { return Servers().empty(); }));
        EndProcessesOf(platform::ProgramFile());
        RemoveClasses();
    }

    // Before the first client; without it the system starts the server.
    static void StartServer() { ASSERT_TRUE(test::StartServer(platform::ProgramFile())); }
    static std::vector<DWORD> Servers() { return ProcessesOf(platform::ProgramFile()); }

    platform::AutomationWizards wizards_{platform::ProgramFile()};
};

class Text {
public:
    explicit Text(const std::string& text) : text_(platform::NewText(text)) {}
    ~Text() { SysFreeString(text_); }
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    BSTR Get() const { return text_; }

private:
    BSTR text_;
};

TEST_F(WizardTest, TakesEveryMethodByItsName) {
    const auto wizard = wizards_.Create();
    wizard->init();
    wizard->hide_status();
    wizard->set_filepath("C:\\a.avi");
    wizard->set_form7_status("50 % copied");
    wizard->update_numbers("1", "2");
    EXPECT_EQ(wizard->Get_frwt_OutFilePath(),
              "init\nhide_status\nset_filepath C:\\a.avi\nset_form7_status 50 % copied\n"
              "update_numbers 1 2\n");
}

TEST_F(WizardTest, TellsEachJobOnceByItsName) {
    StartServer();
    const auto wizard = wizards_.Create();
    for (const char* job : {"video", "audio", "image"}) {
        wizard->set_form7_status(job);
        EXPECT_EQ(wizard->Get_frwt_video(), job == "video"s);
        EXPECT_EQ(wizard->Get_frwt_audio(), job == "audio"s);
        EXPECT_EQ(wizard->Get_frwt_image(), job == "image"s);
        EXPECT_FALSE(wizard->Get_frwt_unload());
        EXPECT_FALSE(wizard->Get_frwt_video() || wizard->Get_frwt_audio() ||
                     wizard->Get_frwt_image());
    }
}

TEST_F(WizardTest, TakesEveryMethodByItsPlaceInTheInterface) {
    StartServer();
    winapi::ComPtr<IWizard> wizard;
    ASSERT_EQ(CoCreateInstance(platform::kWizardClassId, nullptr, CLSCTX_LOCAL_SERVER,
                               __uuidof(IWizard), wizard.PutVoid()),
              S_OK);
    EXPECT_EQ(wizard->init(), S_OK);
    EXPECT_EQ(wizard->hide_status(), S_OK);
    EXPECT_EQ(wizard->set_filepath(Text(kChinese).Get()), S_OK);
    EXPECT_EQ(wizard->update_numbers(Text("1").Get(), Text("").Get()), S_OK);
    using Flag = HRESULT (STDMETHODCALLTYPE IWizard::*)(VARIANT_BOOL*);
    const std::pair<const char*, Flag> flags[] = {{"video", &IWizard::Get_frwt_video},
                                                  {"audio", &IWizard::Get_frwt_audio},
                                                  {"image", &IWizard::Get_frwt_image},
                                                  {"unload", &IWizard::Get_frwt_unload}};
    for (const auto& [name, flag] : flags) {
        EXPECT_EQ(wizard->set_form7_status(Text(name).Get()), S_OK);
        VARIANT_BOOL answer = VARIANT_FALSE;
        EXPECT_EQ((wizard.Get()->*flag)(&answer), S_OK);
        EXPECT_EQ(answer, VARIANT_TRUE) << name;
        EXPECT_EQ((wizard.Get()->*flag)(&answer), S_OK);
        EXPECT_EQ(answer, VARIANT_FALSE) << name;
    }
    BSTR told = nullptr;
    EXPECT_EQ(wizard->Get_frwt_OutFilePath(&told), S_OK);
    EXPECT_EQ(platform::TextOf(told),
              "init\nhide_status\nset_filepath " + kChinese +
                  "\nupdate_numbers 1 \nset_form7_status video\nset_form7_status audio\n"
                  "set_form7_status image\nset_form7_status unload\n");
    SysFreeString(told);
}

TEST_F(WizardTest, KeepsChineseTextAndTheNulsBehindAPath) {
    StartServer();
    const auto wizard = wizards_.Create();
    const std::string path = kChinese + std::string(5, '\0') + "rest";
    wizard->set_filepath(path);
    wizard->set_form7_status("");
    EXPECT_EQ(wizard->Get_frwt_OutFilePath(), "set_filepath " + path + "\nset_form7_status \n");
}

TEST_F(WizardTest, TellsItsTypesToClientsThatAsk) {
    StartServer();
    CLSID classId{};
    ASSERT_EQ(CLSIDFromProgID(L"nqp.cwizard", &classId), S_OK);
    winapi::ComPtr<IDispatch> wizard;
    ASSERT_EQ(
        CoCreateInstance(classId, nullptr, CLSCTX_LOCAL_SERVER, IID_IDispatch, wizard.PutVoid()),
        S_OK);
    UINT count = 0;
    EXPECT_EQ(wizard->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1u);
    std::wstring name = L"GET_FRWT_OUTFILEPATH";
    LPOLESTR names = name.data();
    DISPID id = 0;
    EXPECT_EQ(wizard->GetIDsOfNames(IID_NULL, &names, 1, 0, &id), S_OK);
    EXPECT_EQ(id, 10);
}

TEST_F(WizardTest, AFailureCarriesItsText) {
    StartServer();
    const auto wizard = wizards_.Create();
    EXPECT_EQ(ErrorOf([&] { wizard->set_filepath("fail 没有 such file."); }), "没有 such file.");
    wizard->init();
    EXPECT_EQ(wizard->Get_frwt_OutFilePath(), "init\n");
}

TEST_F(WizardTest, AFailureIsOneForClientsOfTheInterfaceToo) {
    StartServer();
    winapi::ComPtr<IWizard> wizard;
    ASSERT_EQ(CoCreateInstance(platform::kWizardClassId, nullptr, CLSCTX_LOCAL_SERVER,
                               __uuidof(IWizard), wizard.PutVoid()),
              S_OK);
    EXPECT_TRUE(FAILED(wizard->set_filepath(Text("fail it").Get())));
}

TEST_F(WizardTest, AllClientsReachOneServer) {
    const auto first = wizards_.Create();
    const auto second = wizards_.Create();
    const auto third = wizards_.Create();
    first->set_form7_status("of the first");
    second->set_form7_status("of the second");
    EXPECT_EQ(third->Get_frwt_OutFilePath(),
              "set_form7_status of the first\nset_form7_status of the second\n");
    EXPECT_EQ(Asked(*first, "objects"), "3");
    EXPECT_EQ(Servers().size(), 1u);
}

TEST_F(WizardTest, AClientInAnotherApartmentReachesTheSameServer) {
    StartServer();
    const auto mine = wizards_.Create();
    const std::string server = Asked(*mine, "process");
    std::string reached;
    std::thread([&] {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        reached = Asked(*wizards_.Create(), "process");
        CoUninitialize();
    }).join();
    EXPECT_EQ(reached, server);
}

TEST_F(WizardTest, TheServerLivesUntilTheLastClientLetsGo) {
    StartServer();
    auto first = wizards_.Create();
    const auto second = wizards_.Create();
    const std::string server = Asked(*second, "process");
    first.reset();
    EXPECT_EQ(Asked(*second, "objects"), "1");
    EXPECT_EQ(Asked(*wizards_.Create(), "process"), server);
}

TEST_F(WizardTest, TheServerEndsWithTheLastClient) {
    auto wizard = wizards_.Create();
    const std::string server = Asked(*wizard, "process");
    EXPECT_EQ(Servers(), std::vector<DWORD>{static_cast<DWORD>(std::stoul(server))});
    wizard.reset();
    EXPECT_TRUE(WaitUntil([&] { return Servers().empty(); }));
    EXPECT_NE(Asked(*wizards_.Create(), "process"), server);
}

TEST_F(WizardTest, AServerThatWasKilledIsGoneForItsClients) {
    StartServer();
    const auto wizard = wizards_.Create();
    EndProcessesOf(platform::ProgramFile());
    EXPECT_EQ(ErrorOf([&] { wizard->init(); }), "The Quillon Wizard is gone.");
    EXPECT_EQ(ErrorOf([&] { wizard->Get_frwt_video(); }), "The Quillon Wizard is gone.");
}

TEST_F(WizardTest, AServerThatWasKilledDoesNotKeepAnotherFromStarting) {
    for (int round = 0; round < 2; ++round) {
        const auto first = wizards_.Create();
        const auto second = wizards_.Create();
        EXPECT_EQ(Servers().size(), 1u);
        EndProcessesOf(platform::ProgramFile());
    }
    const auto wizard = wizards_.Create();
    wizard->init();
    EXPECT_EQ(wizard->Get_frwt_OutFilePath(), "init\n");
}

TEST_F(WizardTest, AWizardThatCannotBeStartedIsAnError) {
    platform::AutomationWizards missing(platform::ProgramFolder() / "missing.exe");
    EXPECT_EQ(ErrorOf([&] { missing.Create(); }), "The Quillon Wizard could not be started.");
}

TEST_F(WizardTest, FindsTheWindowInTheServersProcess) {
    StartServer();
    EXPECT_EQ(wizards_.Window(), nullptr);
    auto wizard = wizards_.Create();
    const std::string server = Asked(*wizard, "process");
    wizard->set_filepath("window");
    const HWND window = static_cast<HWND>(wizards_.Window());
    ASSERT_NE(window, nullptr);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    EXPECT_EQ(std::to_string(process), server);
    ShowWindow(window, SW_HIDE);
    EXPECT_TRUE(WaitUntil([&] { return wizards_.Window() == nullptr; }));
}

// The server in this process, and a client in another apartment of it.
class WizardServerTest : public testing::Test {
protected:
    void SetUp() override { platform::RegisterAutomation(platform::ProgramFile()); }
    void TearDown() override {
        EXPECT_TRUE(ProcessesOf(platform::ProgramFile()).empty());
        RemoveClasses();
    }

    // Runs the steps of a client, and the message loop meanwhile.
    static void Client(const std::function<void(core::Wizard&)>& steps) {
        std::promise<void> done;
        std::thread client([&] {
            CoInitializeEx(nullptr, COINIT_MULTITHREADED);
            try {
                steps(*platform::AutomationWizards(platform::ProgramFile()).Create());
            } catch (const std::exception& error) {
                ADD_FAILURE() << error.what();
            }
            CoUninitialize();
            done.set_value();
        });
        const auto ended = done.get_future();
        EXPECT_TRUE(WaitUntil(
            [&] { return ended.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
        client.join();
    }

    RecordingWizard wizard_;
    int released_ = 0;
};

class ActingWizard final : public RecordingWizard {
public:
    void init() override { act(); }
    std::function<void()> act;
};

TEST_F(WizardServerTest, CallsArriveOnTheServersThread) {
    DWORD thread = 0;
    ActingWizard wizard;
    wizard.act = [&] { thread = GetCurrentThreadId(); };
    const platform::WizardServer server(wizard, [] {});
    Client([](core::Wizard& client) { client.init(); });
    EXPECT_EQ(thread, GetCurrentThreadId());
}

TEST_F(WizardServerTest, CountsTheObjectsOfClients) {
    const platform::WizardServer server(wizard_, [&] { ++released_; });
    EXPECT_EQ(server.Objects(), 0);
    Client([&](core::Wizard&) {
        EXPECT_EQ(server.Objects(), 1);
        {
            const auto other = platform::AutomationWizards(platform::ProgramFile()).Create();
            EXPECT_EQ(server.Objects(), 2);
        }
        EXPECT_EQ(server.Objects(), 1);
        EXPECT_EQ(released_, 0);
    });
    EXPECT_TRUE(WaitUntil([&] { return server.Objects() == 0; }));
    EXPECT_EQ(released_, 1);
}

TEST_F(WizardServerTest, KnowsWhenTheLastCallCame) {
    constexpr std::chrono::milliseconds kWhile{1000};
    const platform::WizardServer server(wizard_, [] {});
    EXPECT_LT(server.SinceLastCall(), kWhile);
    EXPECT_TRUE(WaitUntil([&] { return server.SinceLastCall() > kWhile; }));
    Client([&](core::Wizard& client) {
        EXPECT_LT(server.SinceLastCall(), kWhile);
        while (server.SinceLastCall() < kWhile)
            std::this_thread::yield();
        client.hide_status();
        EXPECT_LT(server.SinceLastCall(), kWhile);
    });
}

TEST_F(WizardServerTest, ObjectsOfAServerThatIsGoneFail) {
    ActingWizard wizard;
    auto server = std::make_unique<platform::WizardServer>(wizard, [&] { ++released_; });
    wizard.act = [&] { server.reset(); };
    Client([&](core::Wizard& client) {
        client.init();
        EXPECT_EQ(ErrorOf([&] { client.hide_status(); }), "The Quillon Wizard is gone.");
    });
    EXPECT_EQ(wizard.Get_frwt_OutFilePath(), "");
    EXPECT_EQ(released_, 0);
}

}  // namespace
}  // namespace nqp::test
