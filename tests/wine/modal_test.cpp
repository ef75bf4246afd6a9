#include <gtest/gtest.h>
#include <windows.h>

#include "forms/run_time_error.h"
#include "player.h"

// Dialogs on a screen, where the platform decides who gets the keys.
namespace nqp::test {
namespace {

std::string last_error;

class ModalDialog : public testing::Test {
protected:
    ModalDialog() {
        for (int record = 1; record <= core::kSettingsRecordCount; ++record)
            player_.PutSetting(record, "1");
        player_.Start();
        last_error.clear();
        forms::SetRunTimeErrorHandler(
            [](const std::string& sentence, forms::Origin) { last_error = sentence; });
    }
    ~ModalDialog() override { forms::SetRunTimeErrorHandler(nullptr); }

    // Acts in the dialog, which is cancelled afterwards where it is still open.
    void InDialog(const std::function<void()>& act) {
        OnNextModal([this, act] {
            act();
            if (dialog_.Loaded()) ClickOn(dialog_.Command1);
        });
        player_.form4.Picture10_Click();
        RunMessages();
    }
    static HWND HandleOf(const forms::Form& form) { return static_cast<HWND>(form.Handle()); }
    HWND HandleOf(const forms::Control& control) const {
        return GetDlgItem(HandleOf(control.Parent()), control.Id());
    }

    Player player_;
    options::Form2& dialog_ = player_.form2;
};

TEST_F(ModalDialog, TakesTheInputAndGivesItBack) {
    InDialog([this] {
        EXPECT_FALSE(IsWindowEnabled(HandleOf(player_.form1)));
        EXPECT_FALSE(IsWindowEnabled(HandleOf(player_.form4)));
        EXPECT_TRUE(IsWindowEnabled(HandleOf(dialog_)));
    });
    EXPECT_TRUE(IsWindowEnabled(HandleOf(player_.form1)));
    EXPECT_TRUE(IsWindowEnabled(HandleOf(player_.form4)));
    EXPECT_TRUE(Active(player_.form4));
}

// The icon and the scheduled play show the windows at any time.
TEST_F(ModalDialog, KeepsTheKeysWhenOtherWindowsAreShown) {
    InDialog([this] {
        player_.form1.Show();
        player_.form4.Show();
        player_.form4.BringToFront();
        RunMessages();
        EXPECT_TRUE(Active(dialog_));
        PressKey(player_.form4, base::kKeyEscape);
        EXPECT_TRUE(player_.form4.Loaded());
        EXPECT_TRUE(dialog_.Loaded());
    });
}

TEST_F(ModalDialog, LeavesItsOwnListsAlone) {
    InDialog([this] {
        for (const forms::ComboBox* combo : {&dialog_.Combo1, &dialog_.Combo2}) {
            COMBOBOXINFO info{};
            info.cbSize = sizeof info;
            ASSERT_TRUE(GetComboBoxInfo(HandleOf(*combo), &info));
            EXPECT_TRUE(IsWindowEnabled(info.hwndList)) << combo->Name();
        }
    });
}

TEST_F(ModalDialog, IsAcceptedByEnterWhereverTheKeysAre) {
    player_.PutSetting(core::kAlwaysOnTop, "0");
    for (forms::Control* control : std::initializer_list<forms::Control*>{
             &dialog_.Label16, &dialog_.Check1, &dialog_.List1, &dialog_.Text5}) {
        last_error.clear();
        InDialog([this, control] {
            if (control == &dialog_.List1) ClickOn(dialog_.Label18);
            if (control == &dialog_.Text5) ClickOn(dialog_.Label20);
            PressKeyIn(*control, base::kKeyEnter);
            EXPECT_FALSE(dialog_.Loaded()) << control->Name();
        });
    }
}

TEST_F(ModalDialog, ShowsTheItemThatItsFormKnowsAfterAListIsLeft) {
    InDialog([this] {
        ClickOn(dialog_.Label20);
        const HWND combo = HandleOf(dialog_.Combo1);
        dialog_.Combo1.SetFocus();
        SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
        PressKeyIn(dialog_.Combo1, base::kKeyDown);
        PressKeyIn(dialog_.Combo1, base::kKeyEscape);
        EXPECT_TRUE(dialog_.Loaded()) << "Escape closes the list alone";
        EXPECT_EQ(SendMessageW(combo, CB_GETDROPPEDSTATE, 0, 0), 0);
        EXPECT_EQ(SendMessageW(combo, CB_GETCURSEL, 0, 0), dialog_.Combo1.ListIndex());
    });
}

TEST_F(ModalDialog, HasFieldsAndListsOfTheSameHeight) {
    InDialog([this] {
        RECT field{};
        RECT combo{};
        GetWindowRect(HandleOf(dialog_.Text3), &field);
        GetWindowRect(HandleOf(dialog_.Combo1), &combo);
        EXPECT_EQ(combo.bottom - combo.top, field.bottom - field.top);
    });
}

TEST_F(ModalDialog, IsNotShownOverASettingsFileThatIsHeld) {
    const std::string before = player_.folder.Content("options.cfg");
    const HANDLE held = CreateFileW((player_.folder.Path() / "options.cfg").c_str(), GENERIC_READ,
                                    0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    ClickOn(player_.form4.Picture10);
    EXPECT_EQ(last_error, "The options could not be read.");
    EXPECT_FALSE(dialog_.Loaded());
    CloseHandle(held);
    EXPECT_EQ(player_.folder.Content("options.cfg"), before);
}

TEST_F(ModalDialog, StaysOpenWhenTheSettingsFileIsHeld) {
    const std::string before = player_.folder.Content("options.cfg");
    InDialog([this] {
        const HANDLE held = CreateFileW((player_.folder.Path() / "options.cfg").c_str(),
                                        GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
        ClickOn(dialog_.Check1);
        ClickOn(dialog_.Command2);
        EXPECT_EQ(last_error, "The options could not be written.");
        EXPECT_TRUE(dialog_.Loaded());
        CloseHandle(held);
    });
    EXPECT_EQ(player_.folder.Content("options.cfg"), before);
}

}  // namespace
}  // namespace nqp::test
