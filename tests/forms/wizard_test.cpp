#include <gtest/gtest.h>

#include "forms/run_time_error.h"
#include "player.h"
#include "wizard/cwizard.h"

namespace nqp::test {
namespace {

std::string last_error;

std::string Padded(const std::string& path) {
    std::string buffer = path;
    buffer.resize(core::kSaveBufferBytes, '\0');
    return buffer;
}

struct JobButton {
    const char* name;
    forms::CommandButton wizard::Form3::*button;
    bool wizard::Form3::*request;
    bool (core::Wizard::*fetch)();
    bool showsProgress;
    const char* title;
    std::vector<std::string> filters;
    const char* extension;
};

const std::vector<JobButton>& JobButtons() {
    static const std::vector<JobButton> buttons = {
        {"video",
         &wizard::Form3::Command1,
         &wizard::Form3::wiz_video,
         &core::Wizard::Get_frwt_video,
         true,
         "Quillon Wizard - Save video fragment as...",
         {"Audio-Video Interleave (*.avi)", "*.avi", "All files (*.*)", "*.*"},
         "avi"},
        {"audio",
         &wizard::Form3::Command2,
         &wizard::Form3::wiz_audio,
         &core::Wizard::Get_frwt_audio,
         true,
         "Quillon Wizard - Save audio fragment as...",
         {"PCM Windows Audio (*.wav)", "*.wav", "MPEG Layer-3 (*.mp3)", "*.mp3", "All files (*.*)",
          "*.*"},
         "wav"},
        {"image",
         &wizard::Form3::Command3,
         &wizard::Form3::wiz_image,
         &core::Wizard::Get_frwt_image,
         false,
         "Quillon Wizard - Save image as...",
         {"Bitmap Image (*.bmp)", "*.bmp", "All files (*.*)", "*.*"},
         "bmp"},
    };
    return buttons;
}

class QuillonWizard : public testing::Test {
protected:
    QuillonWizard() {
        last_error.clear();
        forms::SetRunTimeErrorHandler(
            [](const std::string& sentence, forms::Origin) { last_error = sentence; });
        automation_.init();
        RunMessages();
    }
    ~QuillonWizard() override {
        forms::SetRunTimeErrorHandler(nullptr);
        window_.Unload();
        RunMessages();
    }

    void Choose(const JobButton& job, const std::string& path) {
        dialogs_.saveAnswer = Padded(path);
        ClickOn(window_.*job.button);
    }
    void Tick() { window_.Timer1.Timer(); }
    bool JobsAreEnabled() const {
        return window_.Command1.Enabled() && window_.Command2.Enabled() &&
               window_.Command3.Enabled();
    }
    bool IsIdle() const {
        return JobsAreEnabled() && !ShownOn(window_.Label7) && !ShownOn(window_.Text3) &&
               !ShownOn(window_.Command4);
    }
    bool ShowsProgress() const { return ShownOn(window_.Text3) && ShownOn(window_.Command4); }

    TempFolder folder_;
    ScriptedDialogs dialogs_;
    wizard::Form3 window_{{folder_.Path(), dialogs_, {}}};
    wizard::CWizard automation_{window_};
};

TEST_F(QuillonWizard, ComesUpIdleAndAboveTheOthers) {
    EXPECT_TRUE(OnScreen(window_));
    EXPECT_TRUE(Topmost(window_));
    EXPECT_TRUE(IsIdle());
    EXPECT_EQ(TextOn(window_.Text1), "00:00:00 -");
    EXPECT_EQ(TextOn(window_.Text2), "00:00:00");
}

TEST_F(QuillonWizard, ShowsTheFragmentItIsTold) {
    automation_.update_numbers("00:00:02 -", "00:00:05");
    automation_.set_filepath("C:\\films\\sea.avi");
    EXPECT_EQ(TextOn(window_.Text1), "00:00:02 -");
    EXPECT_EQ(TextOn(window_.Text2), "00:00:05");
    EXPECT_EQ(window_.wiz_FilePath, "C:\\films\\sea.avi");
}

TEST_F(QuillonWizard, EachJobHasItsOwnDialog) {
    for (const JobButton& job : JobButtons()) {
        ClickOn(window_.*job.button);
        const core::SaveFileRequest& request = dialogs_.lastSaveRequest;
        EXPECT_EQ(request.owner, window_.Handle());
        EXPECT_EQ(request.title, job.title);
        EXPECT_EQ(request.defaultExtension, job.extension);
        std::vector<std::string> filters;
        for (const core::FileFilter& filter : request.filters) {
            filters.push_back(filter.name);
            filters.push_back(filter.pattern);
        }
        EXPECT_EQ(filters, job.filters);
    }
}

TEST_F(QuillonWizard, CancelledDialogChangesNothing) {
    Choose(JobButtons()[0], "C:\\first.avi");
    automation_.hide_status();
    EXPECT_TRUE(automation_.Get_frwt_video());
    dialogs_.saveAnswer.reset();
    for (const JobButton& job : JobButtons()) {
        ClickOn(window_.*job.button);
        EXPECT_TRUE(IsIdle()) << job.name;
        EXPECT_FALSE((automation_.*job.fetch)()) << job.name;
    }
    EXPECT_EQ(window_.wiz_OutFilePath, Padded("C:\\first.avi"));
    EXPECT_FALSE(window_.wiz_busy);
}

TEST_F(QuillonWizard, ChosenFileIsARequestThatIsDeliveredOnce) {
    for (const JobButton& job : JobButtons()) {
        Choose(job, "C:\\My films\\new.out");
        EXPECT_FALSE(JobsAreEnabled()) << job.name;
        EXPECT_TRUE(ShownOn(window_.Label7)) << job.name;
        EXPECT_EQ(window_.wiz_busy, job.showsProgress) << job.name;
        EXPECT_EQ(automation_.Get_frwt_OutFilePath(), Padded("C:\\My films\\new.out"));
        for (const JobButton& other : JobButtons())
            EXPECT_EQ((automation_.*other.fetch)(), other.button == job.button) << job.name;
        EXPECT_FALSE((automation_.*job.fetch)()) << job.name;
        automation_.hide_status();
        EXPECT_TRUE(IsIdle()) << job.name;
    }
    EXPECT_FALSE(automation_.Get_frwt_unload());
}

TEST_F(QuillonWizard, ProgressIsShownOnceASecond) {
    Choose(JobButtons()[0], "C:\\new.avi");
    automation_.set_form7_status("37 % copied");
    EXPECT_FALSE(ShowsProgress());
    Tick();
    EXPECT_TRUE(ShowsProgress());
    EXPECT_EQ(TextOn(window_.Text3), "37 % copied");
    automation_.set_form7_status("38 % copied");
    EXPECT_EQ(TextOn(window_.Text3), "37 % copied");
    Tick();
    EXPECT_EQ(TextOn(window_.Text3), "38 % copied");
}

TEST_F(QuillonWizard, ProgressIsProcessingUntilOneIsTold) {
    Choose(JobButtons()[1], "C:\\new.wav");
    Tick();
    EXPECT_EQ(TextOn(window_.Text3), "processing...");
}

TEST_F(QuillonWizard, ImageShowsNoProgressAndNoCancel) {
    Choose(JobButtons()[2], "C:\\new.bmp");
    Tick();
    EXPECT_TRUE(ShownOn(window_.Label7));
    EXPECT_FALSE(ShownOn(window_.Text3));
    EXPECT_FALSE(ShownOn(window_.Command4));
}

TEST_F(QuillonWizard, IdleTickShowsNothing) {
    Tick();
    EXPECT_TRUE(IsIdle());
}

TEST_F(QuillonWizard, CancelLeavesOneEmptyFile) {
    Choose(JobButtons()[0], "C:\\new.avi");
    Tick();
    ClickOn(window_.Command4);
    ClickOn(window_.Command4);
    EXPECT_TRUE(folder_.Has("flag.txt"));
    EXPECT_EQ(folder_.Content("flag.txt"), "");
    EXPECT_EQ(last_error, "");
}

TEST_F(QuillonWizard, CancelKeepsAFileThatIsThere) {
    folder_.Put("flag.txt", "old");
    Choose(JobButtons()[0], "C:\\new.avi");
    Tick();
    ClickOn(window_.Command4);
    EXPECT_EQ(folder_.Content("flag.txt"), "old");
}

TEST_F(QuillonWizard, CancelThatCannotBeSaidIsTold) {
    std::filesystem::create_directory(folder_.Path() / "flag.txt");
    Choose(JobButtons()[0], "C:\\new.avi");
    Tick();
    ClickOn(window_.Command4);
    EXPECT_NE(last_error.find("cannot be cancelled"), std::string::npos) << last_error;
    EXPECT_TRUE(window_.Command4.Enabled()) << "it may be tried again";
}

TEST_F(QuillonWizard, EndOfAJobMakesItIdle) {
    Choose(JobButtons()[0], "C:\\new.avi");
    automation_.set_form7_status("99 % copied");
    Tick();
    automation_.hide_status();
    EXPECT_TRUE(IsIdle());
    EXPECT_FALSE(window_.wiz_busy);
    EXPECT_EQ(window_.Text3.Text(), "0 % copied");
    EXPECT_EQ(window_.wiz_OutFilePath, Padded("C:\\new.avi")) << "not cleared";
    Choose(JobButtons()[0], "C:\\next.avi");
    Tick();
    EXPECT_EQ(TextOn(window_.Text3), "0 % copied");
}

TEST_F(QuillonWizard, EndOfAJobWhileIdleResetsTheProgress) {
    automation_.set_form7_status("12 % copied");
    automation_.hide_status();
    EXPECT_EQ(window_.Text3.Text(), "0 % copied");
    EXPECT_TRUE(IsIdle());
}

TEST_F(QuillonWizard, StatusIsNeverSeenAsAWindow) {
    automation_.set_form7_status("37 % copied");
    EXPECT_TRUE(Active(window_));
    window_.show_status();
    EXPECT_TRUE(IsIdle());
}

TEST_F(QuillonWizard, IdleWindowIsClosedByEscapeAndByTheSystem) {
    PressKey(window_, base::kKeyEscape);
    EXPECT_FALSE(window_.Loaded());
    automation_.init();
    EXPECT_TRUE(OnScreen(window_));
    CloseBySystem(window_);
    EXPECT_FALSE(window_.Loaded());
}

TEST_F(QuillonWizard, ClosingItDuringAJobCancelsTheJobFirst) {
    Choose(JobButtons()[0], "C:\\new.avi");
    Tick();
    PressKey(window_, base::kKeyEscape);
    EXPECT_TRUE(OnScreen(window_));
    EXPECT_TRUE(folder_.Has("flag.txt"));
    CloseBySystem(window_);
    EXPECT_FALSE(window_.Loaded()) << "asked twice";
}

TEST_F(QuillonWizard, ClosingItDuringAnImageTakesTwoAttempts) {
    Choose(JobButtons()[2], "C:\\new.bmp");
    CloseBySystem(window_);
    EXPECT_TRUE(OnScreen(window_));
    EXPECT_FALSE(folder_.Has("flag.txt"));
    CloseBySystem(window_);
    EXPECT_FALSE(window_.Loaded());
}

TEST_F(QuillonWizard, ClosedWindowComesBackIdleAndAsksForNothing) {
    Choose(JobButtons()[0], "C:\\new.avi");
    window_.Unload();
    RunMessages();
    EXPECT_FALSE(automation_.Get_frwt_video());
    automation_.init();
    EXPECT_TRUE(IsIdle());
}

TEST_F(QuillonWizard, RequestThatNobodyFetchesIsGivenUp) {
    Choose(JobButtons()[0], "C:\\new.avi");
    for (int second = 0; second < 10; ++second)
        Tick();
    EXPECT_FALSE(JobsAreEnabled());
    Tick();
    EXPECT_TRUE(IsIdle());
    EXPECT_FALSE(automation_.Get_frwt_video());
    EXPECT_EQ(last_error, "The player that opened this wizard has been closed.");
}

TEST_F(QuillonWizard, FetchedRequestMayTakeLong) {
    Choose(JobButtons()[1], "C:\\new.wav");
    EXPECT_TRUE(automation_.Get_frwt_audio());
    for (int second = 0; second < 100; ++second)
        Tick();
    EXPECT_TRUE(ShowsProgress());
    EXPECT_EQ(last_error, "");
}

TEST_F(QuillonWizard, CancelCanBePressedOnceForEachJob) {
    for (int job = 0; job < 2; ++job) {
        Choose(JobButtons()[0], "C:\\new.avi");
        Tick();
        EXPECT_TRUE(window_.Command4.Enabled());
        ClickOn(window_.Command4);
        EXPECT_FALSE(window_.Command4.Enabled());
        automation_.hide_status();
    }
}

TEST_F(QuillonWizard, WindowClosedBehindItsDialogAsksForNothing) {
    dialogs_.saveAnswer = Padded("C:\\new.avi");
    dialogs_.whenAsked = [this] { window_.Unload(); };
    ClickOn(window_.Command1);
    EXPECT_FALSE(automation_.Get_frwt_video());
    dialogs_.whenAsked = nullptr;
    automation_.init();
    EXPECT_TRUE(IsIdle());
}

}  // namespace
}  // namespace nqp::test
