#include "fragments/fragment_bounds.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace nqp::fragments {
namespace {

constexpr std::int32_t kLongClip = 100 * 3600;

FragmentBounds BoundsOf(const Bound& begin, const Bound& end = {"24", "59", "59"}) {
    FragmentBounds bounds;
    bounds.begin = begin;
    bounds.end = end;
    return bounds;
}

Bound BeginAfterLeaving(const Bound& begin, BoundPart part, std::int32_t clipSeconds = kLongClip) {
    FragmentBounds bounds = BoundsOf(begin);
    bounds.Leave(BoundEnd::Begin, part, clipSeconds);
    return bounds.begin;
}

Bound EndAfterLeaving(const Bound& end, BoundPart part, std::int32_t clipSeconds = kLongClip) {
    FragmentBounds bounds = BoundsOf({}, end);
    bounds.Leave(BoundEnd::End, part, clipSeconds);
    return bounds.end;
}

TEST(FragmentBounds, TwentyFourHoursAreTakenAndTwentyFiveResetTheBound) {
    EXPECT_EQ(BeginAfterLeaving({"24", "10", "20"}, BoundPart::Hours), (Bound{"24", "10", "20"}));
    EXPECT_EQ(BeginAfterLeaving({"25", "10", "20"}, BoundPart::Hours), Bound{});
    EXPECT_EQ(EndAfterLeaving({"24", "10", "20"}, BoundPart::Hours), (Bound{"24", "10", "20"}));
    EXPECT_EQ(EndAfterLeaving({"25", "10", "20"}, BoundPart::Hours), Bound{});
}

TEST(FragmentBounds, MinutesAndSecondsEndAtFiftyNine) {
    EXPECT_EQ(BeginAfterLeaving({"01", "59", "20"}, BoundPart::Minutes), (Bound{"01", "59", "20"}));
    EXPECT_EQ(BeginAfterLeaving({"01", "60", "20"}, BoundPart::Minutes), Bound{});
    EXPECT_EQ(EndAfterLeaving({"01", "10", "59"}, BoundPart::Seconds), (Bound{"01", "10", "59"}));
    EXPECT_EQ(EndAfterLeaving({"01", "10", "60"}, BoundPart::Seconds), Bound{});
}

TEST(FragmentBounds, NegativeValueResetsTheBound) {
    EXPECT_EQ(BeginAfterLeaving({"01", "-1", "20"}, BoundPart::Minutes), Bound{});
}

TEST(FragmentBounds, OneDigitBecomesTwo) {
    EXPECT_EQ(BeginAfterLeaving({"00", "7", "00"}, BoundPart::Minutes), (Bound{"00", "07", "00"}));
}

TEST(FragmentBounds, EmptyFieldBecomesZero) {
    EXPECT_EQ(BeginAfterLeaving({"00", "", "05"}, BoundPart::Minutes), (Bound{"00", "00", "05"}));
}

TEST(FragmentBounds, TooLateBoundKeepsTheFieldThatFits) {
    EXPECT_EQ(BeginAfterLeaving({"00", "01", "40"}, BoundPart::Minutes, 90),
              (Bound{"00", "01", "00"}));
    EXPECT_EQ(BeginAfterLeaving({"00", "02", "10"}, BoundPart::Minutes, 90), Bound{});
    EXPECT_EQ(EndAfterLeaving({"00", "01", "40"}, BoundPart::Seconds, 90),
              (Bound{"00", "00", "40"}));
    EXPECT_EQ(EndAfterLeaving({"01", "00", "10"}, BoundPart::Hours, 90), Bound{});
}

TEST(FragmentBounds, BoundAtTheVeryEndIsTaken) {
    EXPECT_EQ(EndAfterLeaving({"00", "01", "30"}, BoundPart::Seconds, 90),
              (Bound{"00", "01", "30"}));
}

TEST(FragmentBounds, WithoutAClipEveryBoundIsTheBeginning) {
    EXPECT_EQ(EndAfterLeaving({"00", "00", "01"}, BoundPart::Seconds, 0), Bound{});
}

TEST(FragmentBounds, EndFollowsABeginBehindItWhicheverFieldIsLeft) {
    for (const BoundEnd left : {BoundEnd::Begin, BoundEnd::End}) {
        FragmentBounds bounds = BoundsOf({"00", "01", "00"}, {"00", "00", "30"});
        bounds.Leave(left, BoundPart::Minutes, kLongClip);
        EXPECT_EQ(bounds, BoundsOf({"00", "01", "00"}, {"00", "01", "00"}));
    }
}

// Whatever a person leaves behind in the fields of a clip.
TEST(FragmentBounds, NeverReachBehindTheClipAndKeepTheirOrder) {
    constexpr std::int32_t kClip = 3700;
    const std::string texts[] = {"", "0", "1", "2", "24", "25", "59", "60", "99", "-3", "7.5"};
    for (const std::string& hours : texts) {
        for (const std::string& minutes : texts) {
            for (const std::string& seconds : texts) {
                FragmentBounds bounds;
                bounds.begin = {hours, minutes, seconds};
                for (const BoundPart part :
                     {BoundPart::Hours, BoundPart::Minutes, BoundPart::Seconds}) {
                    bounds.Leave(BoundEnd::Begin, part, kClip);
                    EXPECT_LE(bounds.BeginSeconds(), kClip);
                    EXPECT_LE(bounds.BeginSeconds(), bounds.EndSeconds());
                }
                EXPECT_LE(bounds.EndSeconds(), kClip);
                EXPECT_GE(bounds.BeginSeconds(), 0);
            }
        }
    }
}

TEST(FragmentBounds, WhatIsNoNumberStopsTheRepairAndChangesNothing) {
    const FragmentBounds before = BoundsOf({"00", "ab", "40"}, {"00", "00", "30"});
    FragmentBounds bounds = before;
    EXPECT_THROW(bounds.Leave(BoundEnd::Begin, BoundPart::Minutes, kLongClip), std::runtime_error);
    EXPECT_THROW(bounds.Leave(BoundEnd::End, BoundPart::Seconds, kLongClip), std::runtime_error);
    EXPECT_THROW(bounds.MarkEnd(5, true), std::runtime_error);
    EXPECT_EQ(bounds, before);
}

TEST(FragmentBounds, SumThatIsTooLargeIsAnError) {
    const FragmentBounds bounds = BoundsOf({"2000000000", "00", "00"});
    EXPECT_THROW(static_cast<void>(bounds.BeginSeconds()), std::runtime_error);
}

TEST(FragmentBounds, MarkedBeginStandsInItsFields) {
    FragmentBounds bounds = BoundsOf({}, {"00", "10", "00"});
    bounds.MarkBegin(60, true);
    EXPECT_EQ(bounds, BoundsOf({"00", "01", "00"}, {"00", "10", "00"}));
    bounds.MarkBegin(45, true);
    EXPECT_EQ(bounds, BoundsOf({"00", "00", "45"}, {"00", "10", "00"}));
}

TEST(FragmentBounds, MarkedBeginTakesAnEarlierEndAlong) {
    FragmentBounds bounds = BoundsOf({}, {"00", "00", "30"});
    bounds.MarkBegin(45, true);
    EXPECT_EQ(bounds, BoundsOf({"00", "00", "45"}, {"00", "00", "45"}));
}

TEST(FragmentBounds, WithoutATitleAMarkedBeginOnlyMovesAnEarlierEnd) {
    FragmentBounds bounds = BoundsOf({"00", "00", "10"}, {"00", "00", "30"});
    bounds.MarkBegin(20, false);
    EXPECT_EQ(bounds, BoundsOf({"00", "00", "10"}, {"00", "00", "30"}));
    bounds.MarkBegin(45, false);
    EXPECT_EQ(bounds, BoundsOf({"00", "00", "10"}, {"00", "00", "10"}));
}

TEST(FragmentBounds, MarkedEndStandsInItsFields) {
    FragmentBounds bounds = BoundsOf({"00", "00", "10"});
    bounds.MarkEnd(3725, true);
    EXPECT_EQ(bounds, BoundsOf({"00", "00", "10"}, {"01", "02", "05"}));
}

TEST(FragmentBounds, MarkedEndTakesALaterBeginAlong) {
    FragmentBounds bounds = BoundsOf({"00", "01", "00"});
    bounds.MarkEnd(45, true);
    EXPECT_EQ(bounds, BoundsOf({"00", "00", "45"}, {"00", "00", "45"}));
}

TEST(FragmentBounds, WithoutATitleAMarkedEndOnlyRestoresTheOrder) {
    FragmentBounds bounds = BoundsOf({"00", "01", "00"}, {"00", "00", "30"});
    bounds.MarkEnd(500, false);
    EXPECT_EQ(bounds, BoundsOf({"00", "00", "30"}, {"00", "00", "30"}));
}

TEST(FragmentBounds, PositionOfNoClipCountsAsTheBeginning) {
    FragmentBounds bounds = BoundsOf({"00", "00", "10"}, {"00", "00", "30"});
    bounds.MarkBegin(-1, true);
    EXPECT_EQ(bounds, BoundsOf({"00", "00", "00"}, {"00", "00", "30"}));
}

}  // namespace
}  // namespace nqp::fragments
