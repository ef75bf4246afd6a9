#include "video/form6.h"

#include <gtest/gtest.h>

#include "player.h"

namespace nqp::video {
namespace {

class Form6Test : public testing::Test {
protected:
    void SetUp() override {
        player_.Start();
        dialog_.Show();
    }

    test::Player player_;
    Form6& dialog_ = player_.form6;
};

TEST_F(Form6Test, ShowsTheRateInForce) {
    dialog_.Unload();
    player_.engine.SetRate(2.0);
    dialog_.Show();
    EXPECT_EQ(test::TextOn(dialog_.Text1), "2.00");
    EXPECT_EQ(dialog_.Slider1.Value(), 20);
}

TEST_F(Form6Test, TheSliderSetsTheRateAtOnce) {
    test::DragSlider(dialog_.Slider1, -20);
    EXPECT_EQ(player_.engine.Rate(), 0.5);
    EXPECT_EQ(test::TextOn(dialog_.Text1), "0.50");
}

TEST_F(Form6Test, TheFieldSetsTheRateOnEnter) {
    test::TypeInto(dialog_.Text1, "1.5");
    EXPECT_EQ(player_.engine.Rate(), 1.0);
    test::PressKey(dialog_, base::kKeyEnter);
    EXPECT_EQ(player_.engine.Rate(), 1.5);
    EXPECT_EQ(test::TextOn(dialog_.Text1), "1.50");
    EXPECT_TRUE(dialog_.Loaded());
}

TEST_F(Form6Test, TheFieldSetsTheRateWhenItIsLeft) {
    test::TypeInto(dialog_.Text1, "0,75");
    test::LeaveField(dialog_.Text1);
    EXPECT_EQ(player_.engine.Rate(), 0.75);
}

TEST_F(Form6Test, AFieldThatHoldsNoRateShowsTheOneInForce) {
    player_.engine.SetRate(1.25);
    test::TypeInto(dialog_.Text1, "fast");
    test::LeaveField(dialog_.Text1);
    EXPECT_EQ(player_.engine.Rate(), 1.25);
    EXPECT_EQ(test::TextOn(dialog_.Text1), "1.25");
}

TEST_F(Form6Test, TheFieldStaysInRange) {
    test::TypeInto(dialog_.Text1, "16");
    test::LeaveField(dialog_.Text1);
    EXPECT_EQ(player_.engine.Rate(), 4.0);
    test::TypeInto(dialog_.Text1, "0.01");
    test::LeaveField(dialog_.Text1);
    EXPECT_EQ(player_.engine.Rate(), 0.25);
}

TEST_F(Form6Test, OneButtonGivesNormalSpeed) {
    player_.engine.SetRate(3.0);
    test::ClickOn(dialog_.Command1);
    EXPECT_EQ(player_.engine.Rate(), 1.0);
    EXPECT_EQ(dialog_.Slider1.Value(), 0);
}

TEST_F(Form6Test, ClosesByItsButtonAndByEscape) {
    test::ClickOn(dialog_.Command2);
    EXPECT_FALSE(dialog_.Loaded());
    dialog_.Show();
    test::PressKey(dialog_, base::kKeyEscape);
    EXPECT_FALSE(dialog_.Loaded());
}

}  // namespace
}  // namespace nqp::video
