// SPDX-License-Identifier: MIT
#include "platform/desktop/WaveFile.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <limits>
#include <utility>

#include "platform/Error.h"
#include "tests/desktop/SoundFiles.h"

namespace platform::desktop {
namespace {

// Places in a plain file of libsndfile: the format chunk at 12, the data chunk at 36.
constexpr std::size_t kRiffSize = 4;
constexpr std::size_t kFormatSize = 16;
constexpr std::size_t kChannels = 22;
constexpr std::size_t kRateField = 24;
constexpr std::size_t kSampleBits = 34;
constexpr std::size_t kDataSize = 40;

class WaveFileTest : public testing::Test {
 protected:
  WaveFileTest() {
    tones::WriteTone(path_, 1, 0.1);
    bytes_ = Bytes();
  }
  std::string Bytes() const {
    std::ifstream file(path_, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  /// The description with which the file is refused; empty if it is taken.
  std::string Refusal(const std::string& bytes) {
    std::ofstream(path_, std::ios::binary | std::ios::trunc) << bytes;
    try {
      ReadWaveFile(path_);
      return "";
    } catch (const Error& error) {
      EXPECT_NE(std::string(error.what()).find(path_), std::string::npos) << error.what();
      return error.what();
    }
  }
  void Put(std::size_t place, std::uint32_t value, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
      bytes_.at(place + i) = static_cast<char>(value >> 8 * i);
  }
  std::string RefusalWith(std::size_t place, std::uint32_t value, std::size_t size) {
    const std::string whole = bytes_;
    Put(place, value, size);
    return Refusal(std::exchange(bytes_, whole));
  }

  std::string path_ = tones::Scratch().Path("damaged.wav");
  std::string bytes_;
};

TEST_F(WaveFileTest, MonoStandsOnBothChannels) {
  const WaveData wave = ReadWaveFile(path_);
  EXPECT_EQ(wave.framesPerSecond, tones::kRate);
  ASSERT_EQ(wave.Frames(), tones::kRate / 10);
  for (std::size_t i = 0; i < wave.samples.size(); i += 2)
    ASSERT_EQ(wave.samples[i], wave.samples[i + 1]);
}

TEST_F(WaveFileTest, EveryTruncationIsRefused) {
  for (std::size_t length = 0; length < bytes_.size(); length += length < 60 ? 1 : 997)
    EXPECT_NE(Refusal(bytes_.substr(0, length)), "") << length;
  EXPECT_EQ(Refusal(bytes_), "");
}

TEST_F(WaveFileTest, ZeroAndAbsurdSizesAreRefused) {
  EXPECT_NE(RefusalWith(kDataSize, 0x7FFFFFFF, 4), "");
  for (const std::size_t place : {kFormatSize, kRateField})
    for (const std::uint32_t size : {0U, 0xFFFFFFFFU, 0x7FFFFFFFU})
      EXPECT_NE(RefusalWith(place, size, 4), "") << size;
  for (const std::uint32_t channels : {0U, 3U, 0xFFFFU})
    EXPECT_NE(RefusalWith(kChannels, channels, 2), "") << channels;
  EXPECT_NE(RefusalWith(kSampleBits, 0, 2), "");
}

// At the lowest rate a short file is a long sound.
TEST_F(WaveFileTest, AMinuteIsTheLongest) {
  for (const std::size_t frames : {60000U, 60001U}) {
    tones::WriteTone(path_, 1, (static_cast<double>(frames) + 0.5) / tones::kRate);
    bytes_ = Bytes();
    EXPECT_EQ(RefusalWith(kRateField, 1000, 4).empty(), frames == 60000);
  }
}

// A writer into a pipe cannot go back to the head of the file.
TEST_F(WaveFileTest, UnknownSizesReachToTheEndOfTheFile) {
  for (const std::uint32_t size : {0U, 0xFFFFFFFFU}) {
    EXPECT_EQ(RefusalWith(kDataSize, size, 4), "");
    EXPECT_EQ(ReadWaveFile(path_).Frames(), tones::kRate / 10);
    Put(kDataSize, size, 4);
    EXPECT_NE(Refusal(bytes_.substr(0, bytes_.size() - 2)), "") << "cut by the size of the whole";
    EXPECT_EQ(RefusalWith(kRiffSize, size, 4), "");
    EXPECT_EQ(ReadWaveFile(path_).Frames(), tones::kRate / 10);
    EXPECT_NE(Refusal(bytes_.substr(0, kDataSize + 4)), "") << "no samples";
  }
}

// Many such files still play; none may bring the game down or be refused without its name.
TEST_F(WaveFileTest, AnyByteOfTheHeaderMayBeWrong) {
  for (std::size_t place = 0; place < kDataSize + 4; ++place)
    for (const std::uint32_t value : {0U, 1U, 0x7FU, 0xFFU})
      RefusalWith(place, value, 1);
}

TEST_F(WaveFileTest, OtherThingsAreNoWaveFiles) {
  EXPECT_NE(Refusal("This is a text, and a long enough one to hold a header of a file."), "");
  for (const std::string& path :
       {tones::Scratch().Path(), tones::Scratch().Path("no such file.wav"),
        std::string("/dev/zero")})
    EXPECT_THROW(ReadWaveFile(path), Error) << path;
}

TEST_F(WaveFileTest, SamplesThatAreNoNumbersAreRefused) {
  tones::WriteTone(path_, 2, 0.1, SF_FORMAT_FLOAT);
  EXPECT_NO_THROW(ReadWaveFile(path_));
  const float none = std::numeric_limits<float>::quiet_NaN();
  // Well inside the samples, on the border of one.
  EXPECT_NE(Refusal(Bytes().replace(2000, sizeof none, reinterpret_cast<const char*>(&none),
                                    sizeof none)),
            "");
}

}  // namespace
}  // namespace platform::desktop
