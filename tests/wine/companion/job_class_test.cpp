#include <gtest/gtest.h>
#include <windows.h>

#include <objbase.h>

#include <future>
#include <optional>

#include "base/file.h"
#include "classes.h"
#include "core/companion.h"
#include "forms/win32/winapi/com.h"
#include "forms/win32/winapi/text.h"
#include "platform/automation/companion_class.h"
#include "platform/automation/dual_object.h"
#include "platform/automation/late_bound.h"
#include "platform/automation/registration.h"
#include "platform/automation/variant.h"
#include "platform/handle.h"
#include "platform/process.h"
#include "processes.h"
#include "server/win32/fragment_job_interface.h"
#include "temp_folder.h"

namespace nqp::test {
namespace {

using namespace core::companion_member;
using companion::IFragmentJob;
using platform::AutomationError;
using platform::AutomationValue;
using platform::LateBound;

const std::string kChinese = "C:\\片段\\视频 1.avi";

// The words that a client is given.
std::string ErrorOf(const std::function<void()>& step) {
    try {
        step();
    } catch (const AutomationError& error) {
        return error.Description();
    }
    return "no error";
}

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

// The server is this program, started by the system.
class JobClassTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(platform::RegisterCompanion(platform::ProgramFile())); }
    void TearDown() override {
        EXPECT_TRUE(WaitUntil([] { return Servers().empty(); })) << "a server outlives its client";
        EndProcessesOf(platform::ProgramFile());
        RemoveClasses();
    }

    static std::vector<DWORD> Servers() { return ProcessesOf(platform::ProgramFile()); }
    // The system is slow to notice a server that it starts itself.
    static LateBound NewJob() {
        EXPECT_TRUE(StartServer(platform::ProgramFile()));
        return LateBound(core::kCompanionProgId);
    }

    std::string InFolder(const char* name) const {
        return base::Utf8FromPath(folder_.Path() / name);
    }
    // A job that writes to "output", or what the source says.
    LateBound JobWith(const std::string& source) const {
        LateBound job = NewJob();
        job.Put(kSourceFile, source);
        job.Put(kCancelFile, InFolder("flag.txt"));
        job.Put(kOutputFile, InFolder("output"));
        return job;
    }
    void Cancel() const { folder_.Put("flag.txt", ""); }

    TempFolder folder_;
};

TEST_F(JobClassTest, KeepsEveryMemberByItsName) {
    const LateBound job = NewJob();
    EXPECT_EQ(job.Get(kPercentage), AutomationValue(100)) << "of a job that is told nothing";
    const core::CompanionMember members[] = {
        {kMode, 3},
        {kImageX, -5},
        {kImageY, 1000},
        {kImagePath, kChinese},
        {kPercentage, 50},
        {kStatusFile, std::string("C:\\status.txt")},
        {kCancelFile, std::string()},
        {kOutputFile, kChinese + std::string(249, '\0')},
        {kSourceFile, std::string("C:\\\xf0\x9f\x8e\xac.avi")},
        {kFragmentStart, 1.25},
        {kFragmentEnd, 3600.5},
    };
    for (const auto& member : members)
        job.Put(member.name, member.value);
    for (const auto& member : members) {
        const AutomationValue kept = job.Get(member.name);
        std::visit([&](const auto& value) { EXPECT_EQ(kept, AutomationValue(value)); },
                   member.value);
    }
}

class InterfaceTest : public JobClassTest {
protected:
    void SetUp() override {
        JobClassTest::SetUp();
        ASSERT_TRUE(StartServer(platform::ProgramFile()));
        CLSID classId{};
        ASSERT_EQ(CLSIDFromString(platform::kCompanionClass, &classId), S_OK);
        ASSERT_EQ(CoCreateInstance(classId, nullptr, CLSCTX_LOCAL_SERVER, __uuidof(IFragmentJob),
                                   job_.PutVoid()),
                  S_OK);
    }
    void TearDown() override {
        job_.Reset();
        JobClassTest::TearDown();
    }

    winapi::ComPtr<IFragmentJob> job_;
};

template <class Value>
struct Property {
    HRESULT (STDMETHODCALLTYPE IFragmentJob::*put)(Value);
    HRESULT (STDMETHODCALLTYPE IFragmentJob::*get)(Value*);
};

TEST_F(InterfaceTest, KeepsEveryNumber) {
    const Property<LONG> numbers[] = {
        {&IFragmentJob::put_Mode, &IFragmentJob::get_Mode},
        {&IFragmentJob::put_ImageX, &IFragmentJob::get_ImageX},
        {&IFragmentJob::put_ImageY, &IFragmentJob::get_ImageY},
        {&IFragmentJob::put_Percentage, &IFragmentJob::get_Percentage}};
    LONG next = 10;
    for (const auto& [put, get] : numbers)
        EXPECT_EQ((job_.Get()->*put)(next++), S_OK);
    next = 10;
    for (const auto& [put, get] : numbers) {
        LONG value = 0;
        EXPECT_EQ((job_.Get()->*get)(&value), S_OK);
        EXPECT_EQ(value, next++);
    }
}

TEST_F(InterfaceTest, KeepsEveryPath) {
    const Property<BSTR> paths[] = {{&IFragmentJob::put_ImagePath, &IFragmentJob::get_ImagePath},
                                    {&IFragmentJob::put_StatusFile, &IFragmentJob::get_StatusFile},
                                    {&IFragmentJob::put_CancelFile, &IFragmentJob::get_CancelFile},
                                    {&IFragmentJob::put_OutputFile, &IFragmentJob::get_OutputFile},
                                    {&IFragmentJob::put_SourceFile, &IFragmentJob::get_SourceFile}};
    int count = 0;
    for (const auto& [put, get] : paths)
        EXPECT_EQ((job_.Get()->*put)(Text(kChinese + std::to_string(count++)).Get()), S_OK);
    count = 0;
    for (const auto& [put, get] : paths) {
        BSTR value = nullptr;
        EXPECT_EQ((job_.Get()->*get)(&value), S_OK);
        EXPECT_EQ(platform::TextOf(value), kChinese + std::to_string(count++));
        SysFreeString(value);
    }
}

TEST_F(InterfaceTest, KeepsTheTimesAndTellsTheProcess) {
    double begin = 0;
    double end = 0;
    EXPECT_EQ(job_->put_FragmentStart(0.04), S_OK);
    EXPECT_EQ(job_->put_FragmentEnd(7.5), S_OK);
    EXPECT_EQ(job_->get_FragmentStart(&begin), S_OK);
    EXPECT_EQ(job_->get_FragmentEnd(&end), S_OK);
    EXPECT_EQ(begin, 0.04);
    EXPECT_EQ(end, 7.5);
    LONG process = 0;
    EXPECT_EQ(job_->get_ProcessId(&process), S_OK);
    EXPECT_EQ(Servers(), std::vector<DWORD>{static_cast<DWORD>(process)});
}

// Not every system brings the words of an error through an interface.
TEST_F(InterfaceTest, FailsWhereThereIsNoJob) {
    EXPECT_EQ(job_->put_SourceFile(Text("refuse This is no clip.").Get()), S_OK);
    EXPECT_EQ(job_->Run(), platform::kMethodFailed);
    EXPECT_EQ(job_->Start(), platform::kMethodFailed);
    EXPECT_EQ(job_->put_SourceFile(Text("clip").Get()), S_OK);
    EXPECT_EQ(job_->put_OutputFile(Text(InFolder("output")).Get()), S_OK);
    EXPECT_EQ(job_->Run(), S_OK);
    EXPECT_TRUE(folder_.Has("output"));
}

TEST_F(JobClassTest, DoesTheJobThatItWasTold) {
    const LateBound job = JobWith("clip");
    job.Put(kMode, 3);
    job.Put(kImageX, 1);
    job.Put(kImageY, 2);
    job.Put(kImagePath, std::string("picture"));
    job.Put(kPercentage, 40);
    job.Put(kFragmentStart, 1.5);
    job.Put(kFragmentEnd, 2.0);
    job.Put(kOutputFile, InFolder("output") + std::string(200, '\0'));
    job.Call(kRun);
    EXPECT_EQ(folder_.Content("output"), "3 1 2 picture 40 1.5 2");
}

TEST_F(JobClassTest, EachObjectHasAProcessOfItsOwn) {
    const LateBound first = NewJob();
    const LateBound second = NewJob();
    EXPECT_NE(first.Get(kProcessId), second.Get(kProcessId));
    EXPECT_EQ(Servers().size(), 2U);
}

TEST_F(JobClassTest, TakesNoProcessIdAndNoOtherMember) {
    const LateBound job = NewJob();
    EXPECT_THROW(job.Put(kProcessId, 1), AutomationError);
    EXPECT_THROW(job.Get("Colour"), AutomationError);
    EXPECT_THROW(job.Put(kMode, std::string("video")), AutomationError);
}

TEST_F(JobClassTest, TellsWhyAJobFailed) {
    const LateBound job = JobWith("fail Die Datei 片段.avi ist beschädigt.");
    EXPECT_EQ(ErrorOf([&] { job.Call(kRun); }), "Die Datei 片段.avi ist beschädigt.");
    EXPECT_FALSE(folder_.Has("output"));
}

TEST_F(JobClassTest, TellsAModeThatThereIsNot) {
    const LateBound job = JobWith("clip");
    job.Put(kMode, 4);
    EXPECT_EQ(ErrorOf([&] { job.Call(kRun); }),
              "There is no mode 4: 0 is a video, 1 a sound, 2 a still, 3 a video with a picture on "
              "it.");
}

TEST_F(JobClassTest, TakesBetterValuesAfterThoseThatItRefused) {
    const LateBound job = JobWith("refuse That is no clip.");
    EXPECT_EQ(ErrorOf([&] { job.Call(kRun); }), "That is no clip.");
    EXPECT_EQ(ErrorOf([&] { job.Call(kStart); }), "That is no clip.");
    job.Put(kSourceFile, std::string("clip"));
    job.Call(kRun);
    EXPECT_TRUE(folder_.Has("output"));
}

TEST_F(JobClassTest, DoesOneJob) {
    const LateBound job = JobWith("clip");
    job.Call(kRun);
    EXPECT_EQ(ErrorOf([&] { job.Call(kRun); }),
              "This job is over. Every further one needs an object of its own.");
}

TEST_F(JobClassTest, EndsAJobThatIsCancelledWithoutAnError) {
    const LateBound job = JobWith("wait");
    Cancel();
    EXPECT_EQ(ErrorOf([&] { job.Call(kRun); }), "no error");
    EXPECT_FALSE(folder_.Has("output"));
}

// Threads in here share their objects.
class SharedApartment {
public:
    SharedApartment() { CoInitializeEx(nullptr, COINIT_MULTITHREADED); }
    ~SharedApartment() { CoUninitialize(); }
    SharedApartment(const SharedApartment&) = delete;
    SharedApartment& operator=(const SharedApartment&) = delete;
};

TEST_F(JobClassTest, AnswersWhileItsJobIsWaitedFor) {
    std::promise<const LateBound*> made;
    auto client = std::async(std::launch::async, [&] {
        const SharedApartment apartment;
        const LateBound job = JobWith("wait");
        job.Get(kProcessId);
        made.set_value(&job);
        job.Call(kRun);
        return folder_.Has("flag.txt");
    });
    auto other = std::async(std::launch::async, [&] {
        const SharedApartment apartment;
        const LateBound& job = *made.get_future().get();
        const AutomationValue process = job.Get(kProcessId);
        EXPECT_EQ(process, AutomationValue(static_cast<std::int32_t>(Servers().at(0))));
        Cancel();
    });
    other.get();
    EXPECT_TRUE(client.get()) << "the call returned before the job was cancelled";
}

TEST_F(JobClassTest, RefusesASecondJobWhileOneIsUnderWay) {
    const LateBound job = JobWith("wait");
    job.Call(kStart);
    EXPECT_EQ(ErrorOf([&] { job.Call(kRun); }), "The job is under way already.");
    EXPECT_EQ(ErrorOf([&] { job.Call(kStart); }), "The job is under way already.");
    Cancel();
}

TEST_F(JobClassTest, EndsItsProcessWithAJobThatWasStarted) {
    const LateBound job = JobWith("wait");
    job.Call(kStart);
    ASSERT_EQ(Servers().size(), 1U);
    const platform::Handle process(OpenProcess(SYNCHRONIZE, FALSE, Servers()[0]));
    EXPECT_EQ(WaitForSingleObject(process.get(), 500), static_cast<DWORD>(WAIT_TIMEOUT));
    Cancel();
    EXPECT_EQ(WaitForSingleObject(process.get(), 5000), WAIT_OBJECT_0) << "it is held";
}

TEST_F(JobClassTest, DoesAStartedJobThoughItsClientLetsItGo) {
    JobWith("wait").Call(kStart);
    const platform::Handle process(OpenProcess(SYNCHRONIZE, FALSE, Servers().at(0)));
    EXPECT_EQ(WaitForSingleObject(process.get(), 1000), static_cast<DWORD>(WAIT_TIMEOUT));
    Cancel();
    EXPECT_EQ(WaitForSingleObject(process.get(), 5000), WAIT_OBJECT_0);
}

TEST_F(JobClassTest, ShowsItselfWhyAStartedJobFailed) {
    const LateBound job = JobWith("fail The clip is damaged.");
    job.Call(kStart);
    HWND box = nullptr;
    ASSERT_TRUE(WaitUntil([&] {
        box = FindWindowW(L"#32770", L"Framewright");
        return box != nullptr && (GetWindowLongPtrW(box, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
    }));
    wchar_t text[100] = {};
    GetDlgItemTextW(box, 0xffff, text, 100);
    EXPECT_STREQ(text, L"The clip is damaged.");
    EXPECT_TRUE(IsWindowVisible(box));
    EXPECT_EQ(Servers().size(), 1U);
    PostMessageW(box, WM_COMMAND, IDOK, 0);
    EXPECT_TRUE(WaitUntil([] { return Servers().empty(); }));
}

class QuestionTest : public JobClassTest {
protected:
    // While this thread's call waits for the job, another one acts in the dialog.
    void RunAndAct(const std::function<void(HWND)>& act) {
        const LateBound job = JobWith("ask");
        const auto person = std::async(std::launch::async, [&] {
            HWND dialog = nullptr;
            WaitUntil([&] {
                dialog = FindWindowW(L"nqp.FormatDialog", nullptr);
                return dialog != nullptr && IsWindowVisible(dialog) != 0;
            });
            if (dialog == nullptr) return Cancel();
            act(dialog);
        });
        job.Call(kRun);
    }
    static constexpr int kLossless = 114;
    static constexpr int kOk = 131;
    static constexpr int kCancel = 132;

    static void Click(HWND dialog, int id) { PostMessageW(GetDlgItem(dialog, id), BM_CLICK, 0, 0); }
};

TEST_F(QuestionTest, IsAnsweredWhileTheJobIsWaitedFor) {
    RunAndAct([](HWND dialog) {
        EXPECT_NE(GetWindowLongPtrW(dialog, GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
        Click(dialog, kLossless);
        Click(dialog, kOk);
    });
    EXPECT_EQ(folder_.Content("output"), "3");
}

TEST_F(QuestionTest, IsCancelled) {
    RunAndAct([](HWND dialog) { Click(dialog, kCancel); });
    EXPECT_EQ(folder_.Content("output"), "cancelled");
}

TEST_F(QuestionTest, GoesWithTheJob) {
    RunAndAct([this](HWND) { Cancel(); });
    EXPECT_EQ(folder_.Content("output"), "cancelled");
}

TEST_F(JobClassTest, ComesAndGoesManyTimes) {
    constexpr int kTimes = 15;
    for (int time = 0; time < kTimes; ++time) {
        const LateBound job = JobWith("clip");
        job.Call(kRun);
        ASSERT_TRUE(folder_.Has("output")) << time;
        std::filesystem::remove(folder_.Path() / "output");
    }
}

TEST_F(JobClassTest, IsUnknownAfterItsRegistrationWasTakenBack) {
    platform::UnregisterCompanion("C:\\other\\Framewright.exe");
    EXPECT_NO_THROW(LateBound(core::kCompanionProgId)) << "the system starts it";
    platform::UnregisterCompanion(platform::ProgramFile());
    EXPECT_THROW(LateBound(core::kCompanionProgId), AutomationError);
    const std::wstring classKey = std::wstring(L"CLSID\\") + platform::kCompanionClass;
    const std::wstring library = std::wstring(L"TypeLib\\") + platform::kCompanionTypeLibrary;
    const std::wstring interfaceKey = std::wstring(L"Interface\\") + platform::kCompanionInterface;
    for (const std::wstring& key :
         {std::wstring(L"Framewright.FragmentJob"), classKey, library + L"\\1.0", interfaceKey}) {
        EXPECT_EQ(ClassText(key), "none") << winapi::Utf8(key);
        EXPECT_EQ(UserClassText(key), "none") << winapi::Utf8(key);
    }
}

}  // namespace
}  // namespace nqp::test
