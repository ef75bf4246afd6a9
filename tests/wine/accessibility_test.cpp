#include <gtest/gtest.h>
#include <windows.h>

#include <oleacc.h>

#include <vector>

#include "forms/win32/winapi/com.h"
#include "forms/win32/winapi/text.h"
#include "player.h"
#include "skin_files.h"

// What an assistive tool and the Tab key find on the remote and in the options.
namespace nqp::test {
namespace {

HWND HandleOf(const forms::Control& control) {
    return GetDlgItem(static_cast<HWND>(control.Parent().Handle()), control.Id());
}

VARIANT Self() {
    VARIANT self{};
    self.vt = VT_I4;
    self.lVal = CHILDID_SELF;
    return self;
}

std::string TextOf(BSTR text) {
    const std::string copy = text == nullptr ? std::string() : winapi::Utf8(text);
    SysFreeString(text);
    return copy;
}

class Accessibility : public testing::Test {
protected:
    void SetUp() override {
        player_.Start();
        GoTo(remote_);
    }

    winapi::ComPtr<IAccessible> ObjectOf(const forms::Control& control) {
        winapi::ComPtr<IAccessible> object;
        AccessibleObjectFromWindow(HandleOf(control), static_cast<DWORD>(OBJID_CLIENT),
                                   __uuidof(IAccessible), object.PutVoid());
        return object;
    }
    std::string NameOf(const forms::Control& control) {
        BSTR name = nullptr;
        ObjectOf(control)->get_accName(Self(), &name);
        return TextOf(name);
    }
    std::string ValueOf(const forms::Control& control) {
        BSTR value = nullptr;
        ObjectOf(control)->get_accValue(Self(), &value);
        return TextOf(value);
    }
    LONG RoleOf(const forms::Control& control) {
        VARIANT role{};
        ObjectOf(control)->get_accRole(Self(), &role);
        return role.lVal;
    }
    LONG StateOf(const forms::Control& control) {
        VARIANT state{};
        ObjectOf(control)->get_accState(Self(), &state);
        return state.lVal;
    }

    Player player_;
    remote::Form4& remote_ = player_.form4;
};

TEST_F(Accessibility, EveryPictureSaysWhatItIs) {
    const std::vector<std::pair<forms::PictureBox*, std::string>> buttons = {
        {&remote_.Picture2, "Play"},
        {&remote_.Picture4, "Pause"},
        {&remote_.Picture3, "Stop"},
        {&remote_.Picture6, "Open"},
        {&remote_.Picture10, "Options"},
        {&remote_.Picture14, "Help"},
        {&remote_.Picture15, "Playlist"},
        {&remote_.Picture5, "Hide the remote control"},
        {&remote_.Picture16, "Hide both windows"},
        {&remote_.Picture1, "Exit"}};
    for (const auto& [button, name] : buttons) {
        EXPECT_EQ(NameOf(*button), name);
        EXPECT_EQ(RoleOf(*button), ROLE_SYSTEM_PUSHBUTTON) << name;
        EXPECT_NE(StateOf(*button) & STATE_SYSTEM_FOCUSABLE, 0) << name;
    }
    EXPECT_EQ(NameOf(remote_.Picture12), "Position");
    EXPECT_EQ(RoleOf(remote_.Picture12), ROLE_SYSTEM_SLIDER);
    EXPECT_EQ(NameOf(remote_.Picture13), "Volume");
    EXPECT_EQ(RoleOf(remote_.Picture18), ROLE_SYSTEM_GRIP);
}

TEST_F(Accessibility, FieldsSayWhatTheyAreFor) {
    EXPECT_EQ(NameOf(remote_.Text1), "Fragment start: hours");
    EXPECT_EQ(NameOf(remote_.Text6), "Fragment end: seconds");
    EXPECT_EQ(ValueOf(remote_.Text6), "00");
}

TEST_F(Accessibility, SlidersSayWhereTheyAre) {
    EXPECT_EQ(ValueOf(remote_.Picture13), "100 %");
    PressKeyIn(remote_.Picture13, base::kKeyEnd);
    EXPECT_EQ(ValueOf(remote_.Picture13), "0 %");
    player_.engine.Open("clip.avi");
    player_.engine.position = 42;
    EXPECT_TRUE(WaitUntil([this] { return ValueOf(remote_.Picture12) == "00:00:42"; }));
}

TEST_F(Accessibility, AButtonIsPressedByItsDefaultAction) {
    player_.engine.Open("clip.avi");
    BSTR action = nullptr;
    ObjectOf(remote_.Picture2)->get_accDefaultAction(Self(), &action);
    EXPECT_EQ(TextOf(action), "Press");
    EXPECT_EQ(ObjectOf(remote_.Picture2)->accDoDefaultAction(Self()), S_OK);
    EXPECT_TRUE(WaitUntil([this] { return player_.engine.State() == core::PlayState::Playing; }));
}

TEST_F(Accessibility, AnObjectOutlivesItsWindow) {
    const auto object = ObjectOf(remote_.Picture2);
    remote_.Picture1_Click();
    RunMessages();
    BSTR name = nullptr;
    EXPECT_TRUE(FAILED(object->get_accName(Self(), &name)));
    VARIANT role{};
    EXPECT_TRUE(FAILED(object->get_accRole(Self(), &role)));
    BSTR action = nullptr;
    object->get_accDefaultAction(Self(), &action);
    object->accDoDefaultAction(Self());
}

TEST_F(Accessibility, TheFocusIsPartOfTheState) {
    EXPECT_EQ(StateOf(remote_.Picture15) & STATE_SYSTEM_FOCUSED, 0);
    remote_.Picture15.SetFocus();
    EXPECT_NE(StateOf(remote_.Picture15) & STATE_SYSTEM_FOCUSED, 0);
}

TEST_F(Accessibility, TabGoesThroughTheFaceInOrder) {
    const std::vector<forms::Control*> order = {
        &remote_.Picture2,  &remote_.Picture4, &remote_.Picture3, &remote_.Picture6,
        &remote_.Picture12, &remote_.Text1,    &remote_.Text2,    &remote_.Text3};
    forms::Control* from = order.front();
    from->SetFocus();
    for (std::size_t index = 1; index < order.size(); ++index) {
        PressKeyIn(*from, base::kKeyTab);
        EXPECT_TRUE(order[index]->HasFocus()) << order[index]->Name();
        from = order[index];
    }
}

TEST_F(Accessibility, TheFocusComesBackWithTheWindow) {
    remote_.Picture15.SetFocus();
    GoTo(player_.form1);
    GoTo(remote_);
    EXPECT_TRUE(remote_.Picture15.HasFocus());
}

TEST_F(Accessibility, AControlThatIsHiddenGivesTheFocusUp) {
    PressKeyIn(remote_.Picture15, base::kKeySpace);
    remote_.List1.SetFocus();
    ASSERT_TRUE(remote_.List1.HasFocus());
    remote_.Picture15.Click();
    EXPECT_EQ(GetFocus(), static_cast<HWND>(remote_.Handle()));
}

TEST_F(Accessibility, TheOptionsSayWhichPageIsInSight) {
    SkinFiles(player_.folder, "Alpha").PutColors({"0"});
    options::Form2& dialog = player_.form2;
    OnNextModal([&] {
        EXPECT_EQ(NameOf(dialog.Label16), "General");
        EXPECT_EQ(RoleOf(dialog.Label16), ROLE_SYSTEM_PAGETAB);
        EXPECT_NE(StateOf(dialog.Label16) & STATE_SYSTEM_SELECTED, 0);
        EXPECT_EQ(StateOf(dialog.Label18) & STATE_SYSTEM_SELECTED, 0);
        ClickOn(dialog.Label18);
        EXPECT_EQ(StateOf(dialog.Label16) & STATE_SYSTEM_SELECTED, 0);
        EXPECT_NE(StateOf(dialog.Label18) & STATE_SYSTEM_SELECTED, 0);
        EXPECT_EQ(NameOf(dialog.List1), "Skins");
        VARIANT line = Self();
        line.lVal = 1;
        BSTR name = nullptr;
        ObjectOf(dialog.List1)->get_accName(line, &name);
        EXPECT_EQ(TextOf(name), "Alpha");
        EXPECT_EQ(NameOf(dialog.Text4), "Minute");
        ChooseItem(dialog.Combo1, 0);
        EXPECT_EQ(NameOf(dialog.Label20), "Schedule, not complete");
        dialog.Unload();
    });
    remote_.Picture10_Click();
}

}  // namespace
}  // namespace nqp::test
