#include "audio/codecs/MdpcmEncDec.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "support/Speech.h"

namespace velora {
namespace {

constexpr unsigned kLong = 64;
constexpr unsigned kShort = 16;

std::vector<uint8_t> Encode(C_MDPCMEncDec& codec, const std::vector<uint16_t>& samples,
                            MdpcmPadding padding = MdpcmPadding::kHold, uint16_t first = 2047) {
  std::vector<uint8_t> out(codec.GetRequiredSize(kLong, kShort, samples.size()));
  out.resize(codec.Encode(kLong, kShort, samples, out, padding, first));
  return out;
}

/// What the stream format says, written down once more without the coder.
std::vector<int> DecodePlainly(const std::vector<uint8_t>& stream, bool avoidZero, int firstBits,
                               int first) {
  std::vector<int> samples;
  int current = first;
  for (size_t at = 0; stream.at(at) != 0;) {
    const int length = stream[at] % 2 == 1 ? 64 : 16;
    int row = stream[at] / 2;
    if (avoidZero && row == 14) row = 0;
    EXPECT_LT(row, 16);
    const int step = 8 * row + 8;
    for (int i = 1; i <= length; ++i) {
      const int byte = stream.at(at + static_cast<size_t>(i));
      current += (byte > 127 ? byte - 256 : byte) * step;
      if (i == 1 && firstBits < 12) {
        const int grid = 1 << (12 - firstBits);
        current = static_cast<int>(std::floor((current - 2048) / double(grid))) * grid + 2048;
      }
      samples.push_back(current);
    }
    at += 1 + static_cast<size_t>(length);
  }
  return samples;
}

TEST(Mdpcm, DecodesAsTheStreamSaysAndFollowsTheSound) {
  for (const unsigned firstBits : {16u, 9u, 8u}) {
    for (const size_t count : {1u, 15u, 16u, 17u, 64u, 65u, 80u, 81u, 40'000u}) {
      C_MDPCMEncDec codec(true, firstBits);
      const std::vector<uint16_t> sound = test::MakeSpeech12(count, 7);
      const std::vector<uint8_t> stream = Encode(codec, sound);
      const size_t planned =
          codec.GetLongFrameCount() * kLong + codec.GetShortFrameCount() * kShort;
      ASSERT_EQ(planned, count + codec.GetPadSamples());
      ASSERT_EQ(stream.size(),
                planned + codec.GetLongFrameCount() + codec.GetShortFrameCount() + 1);
      ASSERT_EQ(codec.CountSamples(kLong, kShort, stream).Value(), planned);

      std::vector<uint16_t> decoded(planned);
      ASSERT_EQ(codec.Decode(kLong, kShort, stream, decoded, 2047).Value(), planned);
      const std::vector<int> expected =
          DecodePlainly(stream, true, static_cast<int>(firstBits), 2047);
      ASSERT_TRUE(std::ranges::equal(decoded, expected)) << firstBits << " bits, " << count;
      if (count < 1000) continue;
      double signal = 0;
      double error = 0;
      for (size_t i = 0; i < count; ++i) {
        signal += std::pow(sound[i] - 2048.0, 2);
        error += std::pow(sound[i] - double(decoded[i]), 2);
      }
      EXPECT_GT(10 * std::log10(signal / error), 20) << firstBits;
    }
  }
}

TEST(Mdpcm, EachCodeIsTheNearestThatTheRangeAllows) {
  C_MDPCMEncDec codec(true, 16);
  std::mt19937 random(3);
  std::vector<uint16_t> noise(64 * 200);
  for (uint16_t& s : noise) s = static_cast<uint16_t>(random() % 4096);
  const std::vector<uint8_t> stream = Encode(codec, noise);
  int last = 2047;
  size_t sample = 0;
  for (size_t at = 0; stream[at] != 0; at += 65) {
    const int row = stream[at] / 2 == 14 ? 0 : stream[at] / 2;
    const int step = 8 * row + 8;
    for (int i = 1; i <= 64; ++i, ++sample) {
      const int code = static_cast<int8_t>(stream[at + static_cast<size_t>(i)]);
      ASSERT_TRUE(code >= -16 && code <= 15);
      const int chosen = last + code * step;
      ASSERT_TRUE(chosen >= 0 && chosen <= 4095);
      for (int other = -16; other <= 15; ++other) {
        const int value = last + other * step;
        if (value < 0 || value > 4095) continue;
        ASSERT_LE(std::abs(noise[sample] - chosen), std::abs(noise[sample] - value))
            << "sample " << sample;
      }
      last = chosen;
    }
  }
}

TEST(Mdpcm, RowIsTheFirstWhoseLimitReachesTheLargestStep) {
  struct Case {
    uint16_t jump;
    unsigned row;    // plainly
    unsigned field;  // with zero headers avoided
  };
  const Case cases[] = {{0, 0, 14},     {123, 0, 14},   {124, 1, 1},    {247, 1, 1},
                        {248, 2, 2},    {1735, 13, 13}, {1736, 14, 15}, {1859, 14, 15},
                        {1860, 15, 15}, {1983, 15, 15}, {2000, 15, 15}};
  for (const Case& c : cases) {
    C_MDPCMEncDec codec(true, 16);
    std::vector<uint16_t> samples(16, static_cast<uint16_t>(2000 + c.jump));
    const std::vector<uint8_t> stream = Encode(codec, samples, MdpcmPadding::kHold, 2000);
    EXPECT_EQ(stream[0], c.field * 2) << c.jump;

    C_MDPCMEncDec plain(false, 16);
    plain.SetEndMark(255);
    EXPECT_EQ(Encode(plain, samples, MdpcmPadding::kHold, 2000)[0], c.row * 2) << c.jump;
  }
}

TEST(Mdpcm, NoHeaderIsZeroWhereZeroEndsTheStream) {
  C_MDPCMEncDec codec(true, 16);
  const std::vector<uint8_t> stream = Encode(codec, std::vector<uint16_t>(1000, 2048));
  for (size_t at = 0; at + 1 < stream.size(); at += stream[at] % 2 == 1 ? 65 : 17) {
    ASSERT_NE(stream[at], 0) << at;
  }
  EXPECT_EQ(stream.back(), 0);
}

TEST(Mdpcm, PaddingWalksAsToldAndShowsInTheDecodedTail) {
  struct Case {
    MdpcmPadding padding;
    uint16_t from;
    uint16_t to;
  };
  const Case cases[] = {
      {MdpcmPadding::kTowardSilence, 2056, 2040}, {MdpcmPadding::kTowardSilence, 2055, 2047},
      {MdpcmPadding::kTowardSilence, 2048, 2040}, {MdpcmPadding::kTowardSilence, 2047, 2047},
      {MdpcmPadding::kTowardSilence, 2040, 2040}, {MdpcmPadding::kTowardSilence, 2039, 2047},
      {MdpcmPadding::kTowardSilence, 2032, 2040}, {MdpcmPadding::kTowardSilence, 2031, 2047},
      {MdpcmPadding::kTowardZero, 17, 1},         {MdpcmPadding::kTowardZero, 16, 8},
      {MdpcmPadding::kTowardZero, 8, 0},          {MdpcmPadding::kTowardZero, 7, 7},
      {MdpcmPadding::kHold, 3000, 3000}};
  for (const Case& c : cases) EXPECT_EQ(PadMdpcmSample(c.padding, c.from), c.to) << c.from;

  C_MDPCMEncDec codec(true, 16);
  const std::vector<uint16_t> samples(3, 2048 + 80);
  const std::vector<uint8_t> stream = Encode(codec, samples, MdpcmPadding::kTowardSilence, 2048);
  std::vector<uint16_t> decoded(16);
  ASSERT_TRUE(codec.Decode(kLong, kShort, stream, decoded, 2048).Ok());
  EXPECT_EQ(std::vector<uint16_t>(decoded.begin() + 2, decoded.begin() + 9),
            (std::vector<uint16_t>{2128, 2112, 2096, 2080, 2064, 2048, 2040}));
}

TEST(Mdpcm, DamagedStreamsEndWithAReason) {
  C_MDPCMEncDec codec(true, 16);
  const std::vector<uint8_t> good = Encode(codec, test::MakeSpeech12(300, 1));
  std::vector<uint16_t> decoded(codec.CountSamples(kLong, kShort, good).Value());
  for (size_t length = 0; length < good.size(); ++length) {
    const std::span<const uint8_t> cut = std::span(good).first(length);
    EXPECT_FALSE(codec.Decode(kLong, kShort, cut, decoded, 2047).Ok());
    EXPECT_FALSE(codec.CountSamples(kLong, kShort, cut).Ok());
  }
  std::vector<uint8_t> wrongRow = good;
  wrongRow[0] = 16 * 2 + 1;
  EXPECT_EQ(codec.Decode(kLong, kShort, wrongRow, decoded, 2047).Message(),
            "the frame at byte 0 names step row 16, which the table lacks");
  decoded.pop_back();
  EXPECT_EQ(codec.Decode(kLong, kShort, good, decoded, 2047).Message(),
            "the coded stream holds more samples than expected");
  std::vector<uint8_t> small(codec.GetRequiredSize(kLong, kShort, 100) - 1);
  EXPECT_EQ(codec.Encode(kLong, kShort, std::vector<uint16_t>(100), small, MdpcmPadding::kHold, 0),
            0u);
}

}  // namespace
}  // namespace velora
