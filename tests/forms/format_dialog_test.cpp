#include "dialog/format_dialog.h"

#include <gtest/gtest.h>

#include "window_driver.h"

namespace nqp::companion {
namespace {

using test::ClickOn;
using test::OnNextModal;
using test::TextOn;

constexpr base::Rect kArea{3000, 1500, 9000, 9000};
constexpr FormatChoice kNeverChosen{VideoFormat::PlaysEverywhere, true};

class FormatDialogTest : public testing::Test {
protected:
    ~FormatDialogTest() override { test::RunMessages(); }

    std::optional<FormatChoice> Ask(const FormatOffer& offer, std::function<void()> act) {
        OnNextModal(std::move(act));
        return dialog_.AskForJob(offer, kArea, [this] { return cancelled_; });
    }
    std::optional<FormatChoice> SetUp(const FormatChoice& choice, std::function<void()> act) {
        OnNextModal(std::move(act));
        return dialog_.AskForSettings(choice, kArea);
    }
    void PressOK() { ClickOn(dialog_.OK); }

    FormatDialog dialog_;
    bool cancelled_ = false;
};

TEST_F(FormatDialogTest, TakesWhatPlaysEverywhereToBeginWith) {
    const auto answer = Ask({kNeverChosen, 1.92}, [this] {
        EXPECT_TRUE(dialog_.PlaysEverywhere.Chosen());
        EXPECT_FALSE(dialog_.DoNotAsk.Checked());
        PressOK();
    });
    EXPECT_EQ(answer, kNeverChosen);
    EXPECT_FALSE(dialog_.Loaded());
}

TEST_F(FormatDialogTest, GivesEveryFormatThatIsChosen) {
    const std::pair<forms::OptionButton*, VideoFormat> formats[] = {
        {&dialog_.PlaysEverywhere, VideoFormat::PlaysEverywhere},
        {&dialog_.Smaller, VideoFormat::Smaller},
        {&dialog_.MotionJpeg, VideoFormat::MotionJpeg},
        {&dialog_.Lossless, VideoFormat::Lossless},
        {&dialog_.Copy, VideoFormat::Copy}};
    for (const auto& [button, format] : formats) {
        const auto answer = Ask({kNeverChosen, 0.0}, [&, pressed = button] {
            ClickOn(*pressed);
            PressOK();
        });
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->format, format);
    }
}

TEST_F(FormatDialogTest, OpensWithTheChoiceOfTheLastTime) {
    const auto answer = Ask({{VideoFormat::Lossless, true}, 1.0}, [this] {
        EXPECT_TRUE(dialog_.Lossless.Chosen());
        EXPECT_TRUE(dialog_.Lossless.HasFocus());
        EXPECT_FALSE(dialog_.PlaysEverywhere.Chosen());
        PressOK();
    });
    EXPECT_EQ(answer, (FormatChoice{VideoFormat::Lossless, true}));
}

TEST_F(FormatDialogTest, NotesThatNobodyIsToBeAskedAgain) {
    const auto answer = Ask({kNeverChosen, 1.0}, [this] {
        ClickOn(dialog_.DoNotAsk);
        PressOK();
    });
    EXPECT_EQ(answer, (FormatChoice{VideoFormat::PlaysEverywhere, false}));
}

TEST_F(FormatDialogTest, SaysWhereACopyReallyBegins) {
    const std::pair<double, const char*> begins[] = {{0, "00:00:00.00"},
                                                     {1.92, "00:00:01.92"},
                                                     {59.999, "00:00:59.99"},
                                                     {3725.5, "01:02:05.50"}};
    for (const auto& [begin, text] : begins) {
        Ask({kNeverChosen, begin}, [this, shown = text] {
            EXPECT_TRUE(dialog_.Copy.Enabled());
            EXPECT_EQ(TextOn(dialog_.AboutCopy),
                      "The clip's own data, from " + std::string(shown) + " on.");
            PressOK();
        });
    }
}

TEST_F(FormatDialogTest, OffersNoCopyWhereThereCanBeNone) {
    const auto answer = Ask({{VideoFormat::Copy, true}, std::nullopt}, [this] {
        EXPECT_FALSE(dialog_.Copy.Enabled());
        EXPECT_TRUE(dialog_.PlaysEverywhere.Chosen());
        EXPECT_EQ(TextOn(dialog_.AboutCopy), "Not possible with this clip and these settings.");
        PressOK();
    });
    EXPECT_EQ(answer, kNeverChosen);
}

TEST_F(FormatDialogTest, GivesNothingWhenItIsCancelled) {
    EXPECT_EQ(Ask({kNeverChosen, 1.0}, [this] { ClickOn(dialog_.Cancel); }), std::nullopt);
    EXPECT_EQ(Ask({kNeverChosen, 1.0}, [this] { test::CloseBySystem(dialog_); }), std::nullopt);
    const auto byKey = Ask({kNeverChosen, 1.0}, [this] {
        ClickOn(dialog_.Smaller);
        test::PressKey(dialog_, base::kKeyEscape);
    });
    EXPECT_EQ(byKey, std::nullopt);
}

TEST_F(FormatDialogTest, GoesWhenTheJobIsCancelled) {
    const auto answer = Ask({kNeverChosen, 1.0}, [this] {
        cancelled_ = true;
        EXPECT_TRUE(test::WaitUntil([this] { return !dialog_.Loaded(); }));
    });
    EXPECT_EQ(answer, std::nullopt);
}

TEST_F(FormatDialogTest, StandsAboveAllInTheMiddleOfItsArea) {
    Ask({kNeverChosen, 1.0}, [this] {
        EXPECT_TRUE(test::Topmost(dialog_));
        EXPECT_TRUE(test::Active(dialog_));
        EXPECT_NEAR(dialog_.Left() + dialog_.Width() / 2, kArea.left + kArea.width / 2, 30);
        EXPECT_NEAR(dialog_.Top() + dialog_.Height() / 2, kArea.top + kArea.height / 2, 30);
        PressOK();
    });
}

TEST_F(FormatDialogTest, TakesBackAsSettingsThatNobodyIsAsked) {
    const auto answer = SetUp({VideoFormat::Copy, false}, [this] {
        EXPECT_TRUE(dialog_.Copy.Enabled());
        EXPECT_TRUE(dialog_.Copy.Chosen());
        EXPECT_TRUE(dialog_.DoNotAsk.Checked());
        EXPECT_EQ(TextOn(dialog_.Heading), "How should video fragments be saved?");
        ClickOn(dialog_.DoNotAsk);
        PressOK();
    });
    EXPECT_EQ(answer, (FormatChoice{VideoFormat::Copy, true}));
}

}  // namespace
}  // namespace nqp::companion
