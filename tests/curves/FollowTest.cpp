// The curves that follow the loudness of a sound, against plain loops.
#include <algorithm>
#include <cstdlib>

#include "CurveTools.h"
#include "PlainSpline.h"
#include "curves/ColorMapGen.h"
#include "curves/Loudness.h"
#include "curves/VLRColorEnvelopCtrlCurve.h"
#include "curves/VLREnergyCtrlCurve.h"
#include "curves/VLREnvelopCtrlCurve.h"

namespace velora::test {
namespace {

using Sound = std::vector<int16_t>;

/// Noise of changing loudness, with the extreme values in it.
Sound MakeSound(size_t count) {
  Random random(3);
  Sound sound(count);
  for (size_t i = 0; i < count; ++i) {
    const auto volume = static_cast<int32_t>(1 + (i / 37 * 7919) % 32768);
    sound[i] =
        static_cast<int16_t>(static_cast<int32_t>(random.Below(65536) - 32768) * volume / 32768);
    if (random.Below(50) == 0) sound[i] = random.Below(2) ? INT16_MIN : INT16_MAX;
  }
  return sound;
}

int MagnitudeAt(const Sound& sound, int64_t index) {
  return std::abs(int{sound[static_cast<size_t>(index)]});
}

int Peak(const Sound& sound, int64_t from, int64_t to) {
  int peak = 0;
  for (int64_t i = from; i <= to; ++i) peak = std::max(peak, MagnitudeAt(sound, i));
  return peak;
}

int Mean(const Sound& sound, int64_t from, int64_t to) {
  int64_t sum = 0;
  for (int64_t i = from; i <= to; ++i) sum += MagnitudeAt(sound, i);
  return static_cast<int>(sum / (to - from + 1));
}

/// The points of a contour, in absolute positions.
template <typename Loudness, typename LevelOf>
Points ContourOf(const Sound& sound, uint32_t first, uint32_t last, int64_t window,
                 Loudness loudness, LevelOf levelOf) {
  const auto pointAt = [](int64_t position, int level) {
    return tagVLRCurveCtrlPoint{static_cast<uint32_t>(position), static_cast<uint8_t>(level)};
  };
  const int64_t start = first, end = last;
  Points points = {pointAt(start, levelOf(MagnitudeAt(sound, start)))};
  int64_t i = start + 1;
  while (i <= end - window - 1) {
    points.push_back(pointAt(i + window / 2, levelOf(loudness(sound, i, i + window - 1))));
    i += window;
  }
  if (i < end - 1) {
    const int64_t n = end - i + 1;
    points.push_back(pointAt(end - n / 2 - 1, levelOf(loudness(sound, i, end))));
  }
  points.push_back(pointAt(end, levelOf(MagnitudeAt(sound, end))));
  return points;
}

struct Range {
  uint32_t start, end;
  uint16_t window;
};

constexpr Range kRanges[] = {{0, 999, 10},  {0, 999, 1},     {5, 700, 7},    {5, 700, 64},
                             {5, 700, 333}, {10, 30, 65535}, {3, 3, 4},      {3, 4, 4},
                             {3, 5, 1},     {3, 6, 4},       {0, 2999, 160}, {100, 2900, 1000}};

TEST(Loudness, IsThatOfThePlainLoops) {
  const Sound sound = MakeSound(1000);
  for (size_t from : {0u, 1u, 3u, 100u}) {
    for (size_t count = 1; count < 70; ++count) {
      const std::span<const int16_t> part(sound.data() + from, count);
      const auto first = static_cast<int64_t>(from);
      const auto last = static_cast<int64_t>(from + count) - 1;
      ASSERT_EQ(PeakMagnitude(part), static_cast<uint32_t>(Peak(sound, first, last)));
      ASSERT_EQ(MeanMagnitude(part), static_cast<uint32_t>(Mean(sound, first, last)));
    }
  }
  // The largest sum there is.
  EXPECT_EQ(MeanMagnitude(Sound(65536 + 65536, INT16_MIN)), 32768u);
  EXPECT_EQ(PeakMagnitude(Sound(9, INT16_MIN)), 32768u);
}

TEST(Envelop, IsThatOfThePlainLoops) {
  const Sound sound = MakeSound(3000);
  const Points map = {{0, 20}, {90, 30}, {180, 250}, {255, 160}};
  const auto table = PlainSpline(map).Smooth(0, 255, false);
  for (const Range& r : kRanges) {
    for (const bool inverted : {false, true}) {
      SCOPED_TRACE(testing::Message() << r.start << ".." << r.end << " by " << r.window);
      C_VLREnvelopCtrlCurve curve(r.start, r.end, 0, r.window, sound.data(),
                                  static_cast<uint16_t>(map.size()), map.data());
      curve.SetInverted(inverted ? 1 : 0);
      const auto levelOf = [&](int magnitude) {
        const int step = static_cast<int>(magnitude * 0.007781982421875 + 0.5);
        return table[static_cast<size_t>(std::min(step, 255))];
      };
      const Points contour = ContourOf(sound, r.start, r.end, r.window, Peak, levelOf);
      EXPECT_EQ(LevelsOf(curve), PlainSpline(contour).Smooth(r.start, r.end, inverted));
    }
  }
}

TEST(Envelop, KeepsAConstantLoudness) {
  const Sound sound(500, 16384);
  for (const uint16_t window : {0, 1, 10, 1000}) {
    C_VLREnvelopCtrlCurve curve(0, 499, 0, window, sound.data(), 0, nullptr);
    EXPECT_EQ(LevelsOf(curve), std::vector<uint16_t>(500, 128)) << window;
  }
}

TEST(Envelop, WithoutAMapIsLevelZero) {
  const Sound sound(100, 16384);
  const tagVLRCurveCtrlPoint point = {0, 77};
  C_VLREnvelopCtrlCurve curve(0, 99, 0, 10, sound.data(), 1, &point);
  EXPECT_EQ(LevelsOf(curve), std::vector<uint16_t>(100, 0));
}

TEST(Energy, IsThatOfThePlainLoop) {
  const Sound sound = MakeSound(3000);
  for (const Range& r : kRanges) {
    for (const uint16_t threshold : {0, 1, 3000, 32767, 32768, 32769}) {
      SCOPED_TRACE(testing::Message()
                   << r.start << ".." << r.end << " by " << r.window << " from " << threshold);
      const int64_t reach = (r.window % 2 == 0 ? r.window + 1 : r.window) / 2;
      std::vector<uint16_t> expected;
      for (int64_t p = r.start; p <= int64_t{r.end}; ++p) {
        int64_t sum = 0;
        const int64_t from = std::max<int64_t>(p - reach, r.start);
        const int64_t to = std::min<int64_t>(p + reach, r.end);
        for (int64_t i = from; i <= to; ++i) sum += MagnitudeAt(sound, i) >= threshold ? 1 : -1;
        expected.push_back(sum > 0 ? 240 : 10);
      }
      C_VLREnergyCtrlCurve curve(r.start, r.end, r.window, 10, 240, threshold, sound.data());
      ASSERT_EQ(LevelsOf(curve), expected);
      curve.SetInverted(2);
      ASSERT_EQ(LevelsOf(curve), expected) << "only 1 inverts";
      curve.SetInverted(1);
      ASSERT_EQ(LevelsOf(curve), Inverse(expected));
    }
  }
}

TEST(Energy, IsLowAtATie) {
  const Sound sound = {1000, 0, 1000, 0};
  C_VLREnergyCtrlCurve curve(0, 3, 3, 10, 240, 500, sound.data());
  // The windows at both ends have two samples, one loud and one quiet.
  EXPECT_EQ(LevelsOf(curve), (std::vector<uint16_t>{10, 240, 10, 10}));
}

class ColorEnvelop : public testing::Test {
 protected:
  C_VLRGroupColorEnvelopCtrlCurve& AddGroup(const std::vector<VLRColorKey>& keys, uint16_t window) {
    auto group = std::make_unique<C_VLRGroupColorEnvelopCtrlCurve>(
        3, kPins, 0, 2999, keys.data(), static_cast<int32_t>(keys.size()));
    group->SetWindowSamples(window);
    return static_cast<C_VLRGroupColorEnvelopCtrlCurve&>(*groups_.Add(std::move(group)));
  }

  static constexpr uint8_t kPins[3] = {11, 12, 13};
  const std::vector<VLRColorKey> keys_ = {
      {0, 0x0A0000, 1}, {1000, 0xFA4020, 1}, {3000, 0x30FF00, 0}};
  GroupList groups_;
};

TEST_F(ColorEnvelop, IsThatOfThePlainLoops) {
  const Sound sound = MakeSound(3000);
  const C_ColorMapGen generator(keys_.data(), 3);
  for (const Range& r : kRanges) {
    for (uint8_t channel = 0; channel < 4; ++channel) {
      SCOPED_TRACE(testing::Message() << r.start << ".." << r.end << " channel " << int{channel});
      groups_.Clear();
      auto& group = AddGroup(keys_, r.window);
      group.SetInverted(channel == 2);
      std::vector<uint8_t> map(255);
      ASSERT_TRUE(generator.Generate(channel, 0, map.data(), 255));
      const auto levelOf = [&](int magnitude) {
        return map[static_cast<size_t>(std::min(magnitude * 255 / 32768, 254))];
      };
      const Points contour = ContourOf(sound, r.start, r.end, r.window, Mean, levelOf);
      const auto pin = static_cast<uint8_t>(kPins[0] + channel);
      C_VLRColorEnvelopCtrlCurve curve(r.start, r.end, 0, pin, 0, &groups_, sound.data());
      curve.SetInverted(1);  // has no effect
      EXPECT_EQ(LevelsOf(curve), PlainSpline(contour).Lines(r.start, r.end, channel == 2));
    }
  }
}

TEST_F(ColorEnvelop, NeedsItsKindOfGroup) {
  const Sound sound(100, 5);
  groups_.Add(std::make_unique<C_VLRGroupColorFlyerCtrlCurve>(3, kPins, 0, 99, keys_.data(), 3));
  groups_.Add(std::make_unique<C_VLRGroupUnknownCtrlCurve>(3, kPins, 0, 99));
  AddGroup({}, 10);
  AddGroup({keys_[0]}, 10);
  AddGroup(keys_, 0);
  const GroupList* const lists[] = {&groups_, nullptr};
  for (const GroupList* list : lists) {
    for (int32_t index = -1; index <= 5; ++index) {
      C_VLRColorEnvelopCtrlCurve curve(0, 99, 0, 11, index, list, sound.data());
      EXPECT_EQ(LevelsOf(curve) != Unwritten(100), list && index == 4) << index;
      EXPECT_EQ(curve.IsValid(), list && index >= 0 && index < 5) << index;
    }
  }
}

}  // namespace
}  // namespace velora::test
