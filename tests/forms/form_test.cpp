#include "forms/form.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "forms/command_button.h"
#include "forms/label.h"
#include "forms/run_time_error.h"
#include "forms/text_box.h"
#include "forms/timer_control.h"
#include "window_driver.h"

namespace nqp::forms {
namespace {

constexpr int kSoon = 10;  // milliseconds

class Sample final : public Form {
public:
    explicit Sample(const std::string& name)
        : Form({.name = name, .caption = name, .bounds = {1500, 1500, 3000, 1500}}) {
        Command1.Click.calls<&Sample::Command1_Click>(this);
        Text1.Change.calls<&Sample::Text1_Change>(this);
        Timer1.Timer.calls<&Sample::Timer1_Timer>(this);
    }
    ~Sample() { Unload(); }

    Label Label1{*this, "Label1", 101, {0, 0, 1500, 300}, "a label"};
    CommandButton Command1{*this, "Command1", 102, {0, 300, 1500, 300}, "Unload"};
    TextBox Text1{*this, "Text1", 103, {0, 600, 1500, 300}, "text"};
    TimerControl Timer1{*this, "Timer1", kSoon};

    std::vector<std::string> events;
    bool failsOnClick = false;
    bool failsOnLoad = false;
    bool unloadsOnTick = false;
    int ticks = 0;

private:
    void Form_Load() override {
        events.emplace_back("Load");
        if (failsOnLoad) throw RunTimeError("load");
    }
    void Form_Activate() override { events.emplace_back("Activate"); }
    void Form_Unload() override { events.emplace_back("Unload"); }
    void Form_Resize() override { events.emplace_back("Resize"); }
    bool Form_KeyDown(const base::KeyEvent& key) override {
        events.push_back("Key " + std::to_string(key.KeyCode) + " " + std::to_string(key.Shift));
        return true;
    }
    void Command1_Click() {
        if (failsOnClick) throw RunTimeError("the click failed");
        Unload();
    }
    void Text1_Change() { events.push_back("Change " + Text1.Text()); }
    void Timer1_Timer() {
        ++ticks;
        if (unloadsOnTick) Unload();
    }
};

using Events = std::vector<std::string>;

TEST(Form, IsLoadedHiddenAndShownLater) {
    Sample form("Sample");
    form.Load();
    EXPECT_TRUE(form.Loaded());
    EXPECT_FALSE(test::OnScreen(form));
    EXPECT_EQ(form.events, Events{"Load"});
    form.Show();
    EXPECT_TRUE(test::OnScreen(form));
    EXPECT_EQ(form.events, (Events{"Load", "Activate"}));
}

TEST(Form, LoadsOnlyOnce) {
    Sample form("Sample");
    form.Load();
    form.Load();
    form.Show();
    EXPECT_EQ(form.events, (Events{"Load", "Activate"}));
}

TEST(Form, MayUnloadInAHandlerOfItsOwnControl) {
    Sample form("Sample");
    form.Show();
    test::ClickOn(form.Command1);
    EXPECT_FALSE(form.Loaded());
    EXPECT_FALSE(test::OnScreen(form));
    EXPECT_EQ(form.events.back(), "Unload");
}

TEST(Form, CanBeLoadedAgain) {
    Sample form("Sample");
    form.Show();
    form.Label1.SetCaption("changed");
    form.Unload();
    test::RunMessages();
    form.Show();
    EXPECT_TRUE(test::OnScreen(form));
    EXPECT_EQ(test::TextOn(form.Label1), "changed");
}

TEST(Form, ShowsWhatItsControlsHold) {
    Sample form("Sample");
    form.Label1.SetCaption("before the load \u0416");
    form.Show();
    EXPECT_EQ(test::TextOn(form.Label1), "before the load \u0416");
    form.Label1.SetCaption("after it");
    EXPECT_EQ(test::TextOn(form.Label1), "after it");
    EXPECT_TRUE(test::ShownOn(form.Label1));
    form.Label1.SetVisible(false);
    EXPECT_FALSE(test::ShownOn(form.Label1));
}

TEST(Form, TellsTypingFromSetting) {
    Sample form("Sample");
    form.Show();
    form.Text1.SetText("set");
    EXPECT_EQ(test::TextOn(form.Text1), "set");
    form.events.clear();
    test::TypeInto(form.Text1, "typed \u0416");
    EXPECT_EQ(form.Text1.Text(), "typed \u0416");
    ASSERT_FALSE(form.events.empty());
    EXPECT_EQ(form.events.back(), "Change typed \u0416");
}

TEST(Form, IsActivatedWhenAPersonComesFromAnotherForm) {
    Sample first("Sample");
    Sample second("Sample2");
    first.Show();
    second.Show();
    first.events.clear();
    test::GoTo(first);
    EXPECT_EQ(first.events, Events{"Activate"});
}

TEST(Form, IsNotActivatedByAReturnFromAnotherProgram) {
    Sample form("Sample");
    form.Show();
    form.events.clear();
    test::GoToAnotherProgram();
    EXPECT_FALSE(test::Active(form));
    test::GoTo(form);
    EXPECT_TRUE(test::Active(form));
    EXPECT_EQ(form.events, Events{});
}

TEST(Form, IsNotActivatedByAReturnFromAWindowItOpened) {
    Sample first("Sample");
    Sample opened("Sample2");
    opened.SetOpener(first);
    first.Show();
    opened.Show();
    first.events.clear();
    test::GoTo(first);
    EXPECT_EQ(first.events, Events{});
    test::GoTo(opened);
    opened.Unload();
    test::RunMessages();
    EXPECT_EQ(first.events, Events{});
}

TEST(Form, IsNotActivatedBecauseAnotherFormHid) {
    Sample first("Sample");
    Sample second("Sample2");
    first.Show();
    second.Show();
    first.events.clear();
    second.Hide();
    test::RunMessages();
    EXPECT_EQ(first.events, Events{});
}

TEST(Form, IsNotActivatedByBeingPutOnTop) {
    Sample first("Sample");
    Sample second("Sample2");
    first.Show();
    second.Show();
    first.events.clear();
    first.SetTopmost(true);
    test::RunMessages();
    EXPECT_TRUE(test::Topmost(first));
    EXPECT_EQ(first.events, Events{});
    first.SetTopmost(false);
    EXPECT_FALSE(test::Topmost(first));
}

TEST(Form, IsActivatedOnceWhenItIsShownAgain) {
    Sample form("Sample");
    form.Show();
    form.Hide();
    EXPECT_FALSE(test::OnScreen(form));
    form.events.clear();
    form.Show();
    test::RunMessages();
    EXPECT_EQ(form.events, Events{"Activate"});
}

TEST(Form, ShownOnTopLeavesTheActiveWindowAlone) {
    Sample first("Sample");
    Sample second("Sample2");
    first.Show();
    second.ShowOnTop();
    test::RunMessages();
    EXPECT_TRUE(test::OnScreen(second));
    EXPECT_TRUE(test::Topmost(second));
    EXPECT_TRUE(test::Active(first));
    EXPECT_EQ(second.events, Events{"Load"});
}

TEST(Form, ReportsASizeOnlyWhenItChanges) {
    Sample form("Sample");
    form.Show();
    form.events.clear();
    form.Move({3000, 3000, form.Width(), form.Height()});
    EXPECT_EQ(form.events, Events{});
    form.Move({3000, 3000, 4500, 1800});
    EXPECT_EQ(form.events, Events{"Resize"});
    EXPECT_EQ(form.Bounds(), (base::Rect{3000, 3000, 4500, 1800}));
}

TEST(Form, SeesKeysWithTheirShiftState) {
    Sample form("Sample");
    form.Show();
    form.events.clear();
    test::PressKey(form, base::kKeyF4, base::kAltKey | base::kShiftKey);
    EXPECT_EQ(form.events, Events{"Key 115 5"});
}

TEST(Form, ItsTimerTicksWhileItIsLoadedHiddenOrNot) {
    Sample form("Sample");
    form.Load();
    EXPECT_TRUE(test::WaitUntil([&] { return form.ticks >= 3; }));
    form.Unload();
    const int ticks = form.ticks;
    Sample other("Sample2");
    other.Load();
    EXPECT_TRUE(test::WaitUntil([&] { return other.ticks >= 3; }));
    EXPECT_EQ(form.ticks, ticks);
}

TEST(Form, MayUnloadInItsOwnTimer) {
    Sample form("Sample");
    form.unloadsOnTick = true;
    form.Load();
    EXPECT_TRUE(test::WaitUntil([&] { return !form.Loaded(); }));
    EXPECT_EQ(form.ticks, 1);
}

TEST(Form, ClosesByTheSystemsMeans) {
    Sample form("Sample");
    form.Show();
    test::CloseBySystem(form);
    EXPECT_FALSE(form.Loaded());
}

std::vector<std::string>& Reported() {
    static std::vector<std::string> reported;
    return reported;
}

class RunTimeErrors : public testing::Test {
protected:
    void SetUp() override {
        Reported().clear();
        SetRunTimeErrorHandler([](const std::string& sentence, Origin origin) {
            Reported().push_back((origin == Origin::User ? "user: " : "program: ") + sentence);
        });
    }
    void TearDown() override { SetRunTimeErrorHandler(nullptr); }
};

TEST_F(RunTimeErrors, EndTheHandlerAndNotTheProgram) {
    Sample form("Sample");
    form.failsOnClick = true;
    form.Show();
    test::ClickOn(form.Command1);
    EXPECT_TRUE(form.Loaded());
    EXPECT_EQ(Reported(), Events{"user: the click failed"});
}

TEST_F(RunTimeErrors, OfTheLoadAreTheProgramsOwn) {
    Sample form("Sample");
    form.failsOnLoad = true;
    form.Load();
    EXPECT_TRUE(form.Loaded());
    EXPECT_EQ(Reported(), Events{"program: load"});
}

TEST(LastWindow, IsReportedWhenItHasGone) {
    static int reports = 0;
    reports = 0;
    SetLastWindowUnloaded([] { ++reports; });
    Sample first("Sample");
    Sample second("Sample2");
    first.Load();
    second.Load();
    first.Unload();
    EXPECT_EQ(reports, 0);
    second.Unload();
    EXPECT_EQ(reports, 1);
    SetLastWindowUnloaded(nullptr);
}

}  // namespace
}  // namespace nqp::forms
