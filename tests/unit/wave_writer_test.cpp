#include "base/wave_writer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

namespace nqp::base {
namespace {

using namespace std::string_literals;

// 44100 Hz, two channels of 16 bits.
const std::string kPcm = "\x01\x00\x02\x00\x44\xAC\x00\x00\x10\xB1\x02\x00\x04\x00\x10\x00"s;
// A format with extra bytes: 8000 Hz, one channel, blocks of 65 bytes, 320 samples in each.
const std::string kGsm =
    "\x31\x00\x01\x00\x40\x1F\x00\x00\x59\x06\x00\x00\x41\x00\x00\x00\x02\x00\x40\x01"s;

struct Wave {
    std::string bytes;
    bool finished = false;
};

Wave WaveOf(const std::string& format, const std::vector<std::string>& sound,
            std::uint32_t samples = 0) {
    std::stringstream file;
    WaveWriter writer(file, format);
    for (const std::string& part : sound)
        EXPECT_TRUE(writer.Append(part));
    const bool finished = writer.Finish(samples);
    return {file.str(), finished};
}

// A disk that takes a number of bytes and keeps those of the header only.
class Disk final : public std::streambuf {
public:
    explicit Disk(std::uint64_t room) : room_(room) {}

    std::uint64_t written = 0;

    std::uint32_t NumberAt(std::size_t place) const {
        std::uint32_t number = 0;
        for (std::size_t i = 4; i > 0; --i)
            number = number << 8 | static_cast<unsigned char>(head_[place + i - 1]);
        return number;
    }

private:
    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        const auto size = static_cast<std::uint64_t>(count);
        if (place_ + size > room_) return 0;
        if (place_ + size <= head_.size()) std::memcpy(&head_[place_], bytes, size);
        place_ += size;
        written = std::max(written, place_);
        return count;
    }
    int_type overflow(int_type byte) override {
        const char one = traits_type::to_char_type(byte);
        return xsputn(&one, 1) == 1 ? byte : traits_type::eof();
    }
    pos_type seekoff(off_type, std::ios::seekdir, std::ios::openmode) override { return -1; }
    pos_type seekpos(pos_type place, std::ios::openmode) override {
        place_ = static_cast<std::uint64_t>(place);
        return place;
    }

    std::uint64_t room_;
    std::uint64_t place_ = 0;
    std::string head_ = std::string(44, '\0');
};

TEST(WaveWriterTest, WritesPcmWithAHeaderOf44Bytes) {
    const Wave wave = WaveOf(kPcm, {"abcd", "efghijkl"});
    EXPECT_TRUE(wave.finished);
    EXPECT_EQ(wave.bytes, "RIFF\x30\x00\x00\x00WAVEfmt \x10\x00\x00\x00"s + kPcm +
                              "data\x0C\x00\x00\x00"s + "abcdefghijkl");
}

TEST(WaveWriterTest, TellsOfTheSamplesOfAnotherFormat) {
    const Wave wave = WaveOf(kGsm, {"abcd"}, 0x01020304);
    EXPECT_EQ(wave.bytes, "RIFF\x38\x00\x00\x00WAVEfmt \x14\x00\x00\x00"s + kGsm +
                              "fact\x04\x00\x00\x00\x04\x03\x02\x01"s + "data\x04\x00\x00\x00"s +
                              "abcd");
}

TEST(WaveWriterTest, PadsSoundOfAnOddNumberOfBytes) {
    const Wave wave = WaveOf(kPcm, {"abc"});
    EXPECT_EQ(wave.bytes.substr(4, 4), "\x28\x00\x00\x00"s);
    EXPECT_EQ(wave.bytes.substr(36), "data\x03\x00\x00\x00"s + "abc\0"s);
}

TEST(WaveWriterTest, PadsAFormatOfAnOddNumberOfBytes) {
    const Wave wave = WaveOf(kGsm + "x", {"ab"}, 7);
    EXPECT_EQ(wave.bytes, "RIFF\x38\x00\x00\x00WAVEfmt \x15\x00\x00\x00"s + kGsm + "x\0"s +
                              "fact\x04\x00\x00\x00\x07\x00\x00\x00"s + "data\x02\x00\x00\x00"s +
                              "ab");
}

TEST(WaveWriterTest, IsAWaveOfNoSoundWhenNoneCame) {
    const Wave wave = WaveOf(kPcm, {});
    EXPECT_TRUE(wave.finished);
    EXPECT_EQ(wave.bytes.size(), 44U);
    EXPECT_EQ(wave.bytes.substr(36), "data\x00\x00\x00\x00"s);
}

TEST(WaveWriterTest, HoldsAsMuchAsItsSizesCanSayAndNoMore) {
    constexpr std::uint64_t kFourGigabytes = std::uint64_t{1} << 32;
    const std::string megabyte(1 << 20, 'x');
    Disk disk(2 * kFourGigabytes);
    std::ostream file(&disk);
    WaveWriter writer(file, kPcm);
    std::uint64_t sound = 0;
    while (writer.Append(megabyte))
        sound += megabyte.size();
    EXPECT_EQ(sound, kFourGigabytes - megabyte.size());
    const std::size_t left = kFourGigabytes - 1 - sound - 36;
    EXPECT_FALSE(writer.Append(megabyte.substr(0, left))) << "there is no room for the pad byte";
    EXPECT_TRUE(writer.Append(megabyte.substr(0, left - 1)));
    EXPECT_FALSE(writer.Append(megabyte.substr(0, 2)));
    EXPECT_TRUE(writer.Finish(0));
    EXPECT_EQ(disk.NumberAt(4), 0xFFFFFFFEU);
    EXPECT_EQ(disk.NumberAt(40), 0xFFFFFFFEU - 36U);
    EXPECT_EQ(disk.written, kFourGigabytes + 6);
}

TEST(WaveWriterTest, KeepsWhatWasThereBeforeTheDiskWasFull) {
    Disk disk(44 + 10);
    std::ostream file(&disk);
    WaveWriter writer(file, kPcm);
    EXPECT_TRUE(writer.Append(std::string("abcdefgh")));
    EXPECT_FALSE(writer.Append(std::string("ijkl")));
    EXPECT_FALSE(writer.Append(std::string("mn"))) << "nothing may follow a gap";
    EXPECT_FALSE(writer.Finish(0));
    EXPECT_EQ(disk.NumberAt(40), 8U);
    EXPECT_EQ(disk.NumberAt(4), 44U);
}

TEST(WaveWriterTest, FailsWhereNotEvenTheHeaderFits) {
    Disk disk(20);
    std::ostream file(&disk);
    WaveWriter writer(file, kPcm);
    EXPECT_FALSE(writer.Append(std::string("ab")));
    EXPECT_FALSE(writer.Finish(0));
}

}  // namespace
}  // namespace nqp::base
