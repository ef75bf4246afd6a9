#include "server/cut_work.h"

#include <gtest/gtest.h>

#include <thread>

#include "base/file.h"
#include "core/settings_file.h"
#include "fake_wizard.h"
#include "temp_folder.h"

namespace nqp::companion {
namespace {

using namespace std::chrono_literals;

class FakeCutter final : public Cutter {
public:
    void Check(const CutJob& job) override {
        if (job.percentage < 1) throw CutError("Too little.");
    }
    std::optional<double> CopyBegin(const CutJob&, CutWatch&) override {
        ++looks;
        if (whenLooked) whenLooked();
        return copyBegin;
    }
    CutReport Cut(const CutJob& job, CutWatch& watch) override {
        jobs.push_back(job);
        watch.Progress(40);
        if (whenCut) whenCut(watch);
        return {.result = watch.Cancelled() ? CutResult::Cancelled : CutResult::Done};
    }

    std::optional<double> copyBegin = 1.92;
    int looks = 0;
    std::function<void()> whenLooked;
    std::function<void(CutWatch&)> whenCut;
    std::vector<CutJob> jobs;
};

class FakePerson final : public FormatQuestion {
public:
    std::optional<FormatChoice> Ask(const FormatOffer& offer, std::function<bool()>) override {
        offers.push_back(offer);
        return answer;
    }

    std::optional<FormatChoice> answer = FormatChoice{VideoFormat::Smaller, true};
    std::vector<FormatOffer> offers;
};

class CutWorkTest : public testing::Test {
protected:
    void Do(core::JobMode mode, const std::string& output = "C:\\out.avi") {
        CutWork work(cutter_, person_, wizard_.Finder(), folder_.Path(),
                     {.between = 5ms, .lastReport = 5000ms, .target = 5000ms});
        JobValues values;
        values.mode = static_cast<std::int32_t>(mode);
        values.outputFile = output;
        values.statusFile = InFolder("status.txt");
        values.cancelFile = InFolder("flag.txt");
        work.Do(values);
    }
    std::string InFolder(const char* name) const {
        return base::Utf8FromPath(folder_.Path() / name) + std::string(2, '\0');
    }
    void Cancel() const { folder_.Put("flag.txt", ""); }
    void Remember(const FormatChoice& choice) const {
        ASSERT_TRUE(WriteFormatChoice(folder_.Path(), choice));
    }
    FormatChoice Remembered() const { return ReadFormatChoice(folder_.Path()); }
    // What the one job writes.
    const CutJob& Cut() const { return cutter_.jobs.at(0); }

    test::TempFolder folder_;
    FakeWizard wizard_;
    FakeCutter cutter_;
    FakePerson person_;
};

using core::JobMode;

TEST_F(CutWorkTest, AsksForTheFormatOfAVideo) {
    Do(JobMode::Video);
    ASSERT_EQ(person_.offers.size(), 1U);
    EXPECT_EQ(person_.offers[0].choice, (FormatChoice{VideoFormat::PlaysEverywhere, true}));
    EXPECT_EQ(person_.offers[0].copyBegin, 1.92);
    EXPECT_EQ(Cut().video, VideoFormat::Smaller);
    EXPECT_EQ(Remembered(), (FormatChoice{VideoFormat::Smaller, true}));
}

TEST_F(CutWorkTest, OffersTheFormatOfTheLastTime) {
    Remember({VideoFormat::Lossless, true});
    Do(JobMode::VideoWithPicture);
    ASSERT_EQ(person_.offers.size(), 1U);
    EXPECT_EQ(person_.offers[0].choice.format, VideoFormat::Lossless);
}

TEST_F(CutWorkTest, DoesNotAskWhoDoesNotWantIt) {
    Remember({VideoFormat::MotionJpeg, false});
    Do(JobMode::Video);
    EXPECT_TRUE(person_.offers.empty());
    EXPECT_EQ(cutter_.looks, 0) << "nobody needs to know where a copy would begin";
    EXPECT_EQ(Cut().video, VideoFormat::MotionJpeg);
}

TEST_F(CutWorkTest, CopiesWithoutAskingWherePossible) {
    Remember({VideoFormat::Copy, false});
    Do(JobMode::Video);
    EXPECT_TRUE(person_.offers.empty());
    EXPECT_EQ(Cut().video, VideoFormat::Copy);
}

TEST_F(CutWorkTest, AsksWhereTheRememberedCopyIsNotPossible) {
    Remember({VideoFormat::Copy, false});
    cutter_.copyBegin = std::nullopt;
    Do(JobMode::Video);
    ASSERT_EQ(person_.offers.size(), 1U);
    EXPECT_EQ(person_.offers[0].copyBegin, std::nullopt);
    EXPECT_TRUE(person_.offers[0].choice.ask);
    EXPECT_EQ(Cut().video, VideoFormat::Smaller);
    EXPECT_EQ(Remembered(), (FormatChoice{VideoFormat::Copy, false})) << "for this job alone";
}

TEST_F(CutWorkTest, RemembersAnotherFormatForGoodWhenToldSo) {
    Remember({VideoFormat::Copy, false});
    cutter_.copyBegin = std::nullopt;
    person_.answer = FormatChoice{VideoFormat::Lossless, false};
    Do(JobMode::Video);
    EXPECT_EQ(Remembered(), (FormatChoice{VideoFormat::Lossless, false}));
}

TEST_F(CutWorkTest, CutsNothingWhenTheQuestionIsCancelled) {
    person_.answer = std::nullopt;
    Do(JobMode::Video);
    EXPECT_TRUE(cutter_.jobs.empty());
    EXPECT_FALSE(folder_.Has("framewright.cfg"));
    EXPECT_NE(folder_.Content("status.txt"), "100 % copied");
}

TEST_F(CutWorkTest, AsksNothingWhenTheJobIsCancelledBefore) {
    cutter_.whenLooked = [this] { Cancel(); };
    Do(JobMode::Video);
    EXPECT_TRUE(person_.offers.empty());
    EXPECT_TRUE(cutter_.jobs.empty());
}

TEST_F(CutWorkTest, TellsTheWizardThatTheJobIsDone) {
    cutter_.whenCut = [this](CutWatch&) {
        wizard_.WaitForTexts(wizard_.Texts().size() + 2);  // one may have been on its way
        EXPECT_EQ(wizard_.Texts().back(), "40 % copied");
    };
    Do(JobMode::Video);
    EXPECT_EQ(wizard_.Texts().back(), "100 % copied");
    EXPECT_EQ(folder_.Content("status.txt"), "100 % copied");
}

TEST_F(CutWorkTest, ClaimsNothingOfAJobThatWasCancelled) {
    cutter_.whenCut = [this](CutWatch& watch) {
        Cancel();
        while (!watch.Cancelled())
            std::this_thread::yield();
    };
    Do(JobMode::Video);
    EXPECT_EQ(cutter_.jobs.size(), 1U);
    EXPECT_NE(folder_.Content("status.txt"), "100 % copied");
}

TEST_F(CutWorkTest, PassesOnWhyAJobFailed) {
    cutter_.whenCut = [](CutWatch&) { throw CutError("The disk is full."); };
    EXPECT_THROW(Do(JobMode::Audio), CutError);
    EXPECT_NE(folder_.Content("status.txt"), "100 % copied");
}

TEST_F(CutWorkTest, AsksNobodyAboutAStill) {
    Do(JobMode::Image, "C:\\a.bmp");
    EXPECT_TRUE(person_.offers.empty());
    EXPECT_EQ(wizard_.Searches(), 0) << "it would be started";
    EXPECT_EQ(cutter_.jobs.size(), 1U);
}

TEST_F(CutWorkTest, WritesAnMp3IntoTheClipBesideOne) {
    core::SettingsFile settings(folder_.Path());
    ASSERT_TRUE(settings.SetText(core::kMp3SampleRate, "32000") && settings.Commit());
    wizard_.target = std::string("C:\\song.mp3") + std::string(5, '\0');
    Do(JobMode::Audio, "C:\\song!.avi");
    EXPECT_EQ(Cut().sound, SoundFormat::Mp3);
    EXPECT_EQ(Cut().mp3Rate, 32000);
    EXPECT_EQ(base::Utf8FromPath(Cut().output), "C:\\song!.avi");
    EXPECT_TRUE(person_.offers.empty());
}

TEST_F(CutWorkTest, WritesAClipBesideAnyOtherTarget) {
    wizard_.target = "C:\\song.wav";
    Do(JobMode::Audio, "C:\\song!.avi");
    EXPECT_EQ(Cut().sound, SoundFormat::AviPcm);
}

TEST_F(CutWorkTest, WritesAClipWithoutAWizard) {
    wizard_.there = false;
    Do(JobMode::Audio, "C:\\song!.avi");
    EXPECT_EQ(Cut().sound, SoundFormat::AviPcm);
}

TEST_F(CutWorkTest, WritesTheTargetItselfByItsExtension) {
    wizard_.target = "C:\\other.mp3";
    Do(JobMode::Audio, "C:\\song.wav");
    EXPECT_EQ(Cut().sound, SoundFormat::Wave);
}

TEST_F(CutWorkTest, ChecksTheJobThatTheValuesDescribe) {
    CutWork work(cutter_, person_, wizard_.Finder(), folder_.Path());
    EXPECT_THROW(work.Check({.percentage = 0}), CutError);
    EXPECT_THROW(work.Check({.mode = 9}), CutError);
    EXPECT_NO_THROW(work.Check({}));
}

}  // namespace
}  // namespace nqp::companion
