// Level, ramp, flash, sine and triangle, against sample by sample models.
#include <cmath>

#include "CurveTools.h"
#include "curves/VLRFlashCtrlCurve.h"
#include "curves/VLRLevelCtrlCurve.h"
#include "curves/VLRRampCtrlCurve.h"
#include "curves/VLRSineCtrlCurve.h"
#include "curves/VLRTriangleCtrlCurve.h"

namespace velora::test {
namespace {

struct Frequencies {
  uint16_t whole, fraction;
  uint8_t digits;
  uint16_t endWhole, endFraction;
};

/// Period by period, as a sweep goes through them.
class PlainPeriods {
 public:
  PlainPeriods(uint32_t rate, uint32_t count, const Frequencies& f, uint16_t mask)
      : rate_(rate), count_(count) {
    const double unit = std::pow(10.0, f.digits);
    from_ = (f.whole & mask) + f.fraction / unit;
    to_ = (f.endWhole & mask) + f.endFraction / unit;
    period = Cut(from_);
  }

  bool None() const { return from_ <= 0; }
  void EndCycle(uint32_t index) {
    if (from_ == to_ || to_ <= 0) return;
    period = Cut((static_cast<double>(index) / count_) * (to_ - from_) + from_);
  }

  uint32_t period;

 private:
  uint32_t Cut(double frequency) const {
    const double exact = rate_ / frequency;
    return exact >= 4294967295.0 ? 0xFFFFFFFF : static_cast<uint32_t>(exact);
  }

  double rate_, from_, to_;
  double count_;
};

struct WaveCase {
  uint32_t start, end, phase, rate;
  uint8_t high, low;
  Frequencies frequencies;
};

std::vector<uint16_t> PlainSine(const WaveCase& c, uint32_t count) {
  PlainPeriods cycle(c.rate, count, c.frequencies, 0xFFFF);
  std::vector<uint16_t> out = Unwritten(count);
  if (cycle.None() || cycle.period == 0) return out;
  const double amplitude = std::abs(c.high - c.low) * 0.5;
  const double middle = c.low + amplitude;
  uint32_t position = c.phase % cycle.period;
  for (uint32_t i = 0; i < count; ++i) {
    if (position < cycle.period) {
      ++position;
    } else {
      position = 0;
      cycle.EndCycle(i);
    }
    const double turn = cycle.period == 0 ? 0 : static_cast<double>(position) / cycle.period;
    out[i] = static_cast<uint16_t>(
        static_cast<int>(std::sin(turn * 6.283185307179586) * amplitude + middle));
  }
  return out;
}

std::vector<uint16_t> PlainFlash(const WaveCase& c, uint8_t duty, uint32_t count) {
  PlainPeriods cycle(c.rate, count, c.frequencies, 0xFF);
  std::vector<uint16_t> out = Unwritten(count);
  if (cycle.None()) return out;
  uint32_t on = duty * cycle.period / 100;
  uint32_t position = cycle.period ? c.phase % cycle.period : 0;
  for (uint32_t i = 0; i < count; ++i) {
    out[i] = position < on ? c.high : c.low;
    ++position;
    if (position != cycle.period) continue;
    position = 0;
    cycle.EndCycle(i);
    on = duty * cycle.period / 100;
  }
  return out;
}

/// `warnings` counts the cycles with a missing part.
std::vector<uint16_t> PlainTriangle(const WaveCase& c, uint32_t peak, uint32_t count,
                                    size_t& warnings) {
  PlainPeriods cycle(c.rate, count, c.frequencies, 0xFFFF);
  std::vector<uint16_t> out = Unwritten(count);
  if (cycle.None()) return out;
  const double share = (peak < c.start ? 0.0 : peak - c.start + 1.0) / count;
  int64_t up = 0, down = 0;
  const auto divide = [&] {
    up = static_cast<int64_t>(cycle.period * share);
    down = cycle.period - up;
    if (up < 1 || down < 1) ++warnings;
  };
  divide();
  if (warnings) return out;
  uint32_t position = c.phase % cycle.period;
  const double height = c.high - c.low;
  for (uint32_t i = 0; i < count; ++i) {
    double x = c.high;
    if (position < up) {
      x = position * (height / static_cast<double>(up)) + c.low;
    } else if (cycle.period != 0) {
      x = c.high - static_cast<double>(position - up) * (height / static_cast<double>(down));
    }
    out[i] = static_cast<uint16_t>(static_cast<int>(x + 0.5));
    ++position;
    if (position != cycle.period) continue;
    position = 0;
    const uint32_t before = cycle.period;
    cycle.EndCycle(i);
    if (c.frequencies.endWhole || c.frequencies.endFraction || before != cycle.period) divide();
  }
  return out;
}

const WaveCase kWaves[] = {
    {0, 99, 0, 8000, 255, 0, {1000, 0, 0, 0, 0}},       // period 8
    {100, 5099, 0, 8000, 200, 17, {12, 5, 1, 0, 0}},    // 640, not sweeping
    {0, 4999, 1281, 8000, 200, 17, {12, 5, 1, 12, 5}},  // end frequency equal
    {3, 20002, 11, 8000, 255, 0, {2, 0, 0, 150, 0}},    // up
    {3, 20002, 11, 8000, 255, 0, {150, 25, 2, 2, 75}},  // down
    {0, 999, 0, 8000, 80, 40, {1, 0, 0, 0, 0}},         // less than a cycle
    {0, 7, 3, 8000, 255, 1, {1000, 0, 0, 0, 0}},        // a cycle exactly
    {0, 8, 3, 8000, 255, 1, {1000, 0, 0, 0, 0}},
    {0, 3000, 0, 100, 255, 0, {20, 0, 0, 200, 0}},  // sweeps to a period of 0
    {0, 3000, 0, 100, 255, 0, {20, 0, 0, 45, 0}},   // to a period of 2
    {0, 3001, 0, 100, 255, 0, {20, 0, 0, 45, 0}},
    {0, 3000, 2, 100, 10, 250, {20, 0, 0, 30, 0}},  // high below low
    {0, 100, 0, 0, 255, 0, {20, 0, 0, 0, 0}},       // rate 0
    {0, 100, 0, 8000, 255, 0, {0, 0, 0, 10, 0}},    // frequency 0
    {0, 100, 90, 8000, 255, 0, {0, 1, 200, 0, 0}},  // longest period
    {5, 5, 90, 8000, 255, 0, {100, 0, 0, 0, 0}},
    {9, 5, 90, 8000, 255, 0, {100, 0, 0, 0, 0}},
    {0, 2999, 0, 1000, 255, 0, {1000, 0, 0, 0, 0}},   // period 1
    {0, 999, 5, 44100, 255, 0, {300, 3, 1, 310, 9}},  // whole parts above 8 bits
};

template <typename Curve>
void ExpectLevels(Curve& curve, const std::vector<uint16_t>& expected) {
  EXPECT_EQ(LevelsOf(curve), expected);
  if (!expected.empty() && expected[0] == kUnwritten) return;
  curve.SetInverted(2);
  EXPECT_EQ(LevelsOf(curve), Inverse(expected));
}

TEST(Sine, IsThatOfThePlainLoop) {
  for (const WaveCase& c : kWaves) {
    SCOPED_TRACE(&c - kWaves);
    const Frequencies& f = c.frequencies;
    C_VLRSineCtrlCurve curve(c.start, c.end, c.phase, c.rate, c.high, c.low, f.whole, f.fraction,
                             f.digits, f.endWhole, f.endFraction);
    ExpectLevels(curve, PlainSine(c, curve.GetSampleCount()));
  }
}

TEST(Flash, IsThatOfThePlainLoop) {
  for (const WaveCase& c : kWaves) {
    for (const uint8_t duty : {0, 1, 30, 50, 99, 100, 255}) {
      SCOPED_TRACE(testing::Message() << &c - kWaves << " duty " << int{duty});
      const Frequencies& f = c.frequencies;
      C_VLRFlashCtrlCurve curve(c.start, c.end, c.phase, c.rate, f.whole, duty, c.high, c.low,
                                f.fraction, f.digits, f.endWhole, f.endFraction);
      ExpectLevels(curve, PlainFlash(c, duty, curve.GetSampleCount()));
    }
  }
}

TEST(Triangle, IsThatOfThePlainLoop) {
  for (const WaveCase& c : kWaves) {
    const uint32_t width = c.end > c.start ? c.end - c.start : 0;
    for (const uint32_t peak : {c.start, c.start + width / 3, c.start + width - width / 50,
                                c.start + width, c.start - 1, c.start + 2 * width}) {
      SCOPED_TRACE(testing::Message() << &c - kWaves << " peak " << peak);
      BoxCatcher boxes;
      const Frequencies& f = c.frequencies;
      C_VLRTriangleCtrlCurve curve(c.start, c.end, c.phase, peak, c.rate, c.high, c.low, f.whole,
                                   f.fraction, f.digits, f.endWhole, f.endFraction);
      size_t warnings = 0;
      const auto expected = PlainTriangle(c, peak, curve.GetSampleCount(), warnings);
      EXPECT_EQ(LevelsOf(curve), expected);
      EXPECT_EQ(boxes.texts.size(), warnings);
      if (expected[0] == kUnwritten) continue;
      curve.SetInverted(1);
      EXPECT_EQ(LevelsOf(curve), Inverse(expected));
    }
  }
}

TEST(Level, IsConstant) {
  C_VLRLevelCtrlCurve curve(7, 1006, 80);
  EXPECT_EQ(LevelsOf(curve), std::vector<uint16_t>(1000, 80));
  curve.SetInverted(1);
  EXPECT_EQ(LevelsOf(curve), std::vector<uint16_t>(1000, 175));
}

TEST(Ramp, IsARunningSum) {
  for (const uint32_t count : {1u, 2u, 3u, 256u, 1000u, 99991u}) {
    for (const auto& [from, to] : {std::pair{0, 255}, {255, 0}, {10, 11}, {9, 9}, {200, 3}}) {
      C_VLRRampCtrlCurve curve(50, 49 + count, 0, static_cast<uint8_t>(from),
                               static_cast<uint8_t>(to));
      const double step = (to - from) / static_cast<double>(count);
      double sum = from;
      std::vector<uint16_t> expected;
      for (uint32_t i = 0; i < count; ++i, sum += step) {
        expected.push_back(static_cast<uint16_t>(static_cast<int>(sum + 0.5)));
      }
      ExpectLevels(curve, expected);
    }
  }
  C_VLRRampCtrlCurve curve(0, 255, 9, 0, 255);
  EXPECT_EQ(curve.GetPhase(), 0u);
  EXPECT_EQ(LevelsOf(curve).back(), 254);
}

TEST(Ramp, AdaptsItsLevelsToMovedBounds) {
  struct Case {
    bool start;
    uint32_t value;
    int startLevel, endLevel;
  };
  for (const Case& c :
       {Case{true, 50, 10, 90}, Case{true, 200, 10, 90}, Case{true, 201, 0, 90},
        Case{false, 150, 10, 90}, Case{false, 100, 10, 10}, Case{false, 99, 10, 0}}) {
    C_VLRRampCtrlCurve ramp(100, 200, 0, 10, 90);
    c.start ? ramp.MoveStart(c.value) : ramp.MoveEnd(c.value);
    EXPECT_EQ(ramp.GetStartLevel(), c.startLevel) << c.value;
    EXPECT_EQ(ramp.GetEndLevel(), c.endLevel) << c.value;
  }
  C_VLRRampCtrlCurve plain(100, 200, 0, 10, 90);
  plain.SetEnd(50);
  EXPECT_EQ(plain.GetEndLevel(), 90);
}

TEST(Ramp, KeepsItsSlopeWhereItIsCut) {
  struct Case {
    uint32_t start, end, newStart, limit;
    int from, to, result;
  };
  const Case cases[] = {
      {0, 99, 100, 149, 0, 200, 100},   // half of it is left
      {0, 99, 100, 1000, 0, 200, 200},  // all
      {0, 99, 100, 199, 0, 200, 200},   // all, and the limit is met
      {0, 99, 100, 149, 200, 0, 100},  {0, 99, 100, 132, 10, 20, 13},
      {0, 99, 150, 150, 0, 200, 200},  // nothing happens
      {100, 50, 10, 11, 5, 90, 90},    // no length to keep
  };
  for (const Case& c : cases) {
    C_VLRRampCtrlCurve ramp(c.start, c.end, 0, static_cast<uint8_t>(c.from),
                            static_cast<uint8_t>(c.to));
    ramp.Rebase(c.newStart, c.limit);
    EXPECT_EQ(ramp.GetStartLevel(), c.from);
    EXPECT_EQ(ramp.GetEndLevel(), c.result) << c.newStart << " of " << c.limit;
  }
}

TEST(Phase, IsReducedByTheFirstPeriod) {
  C_VLRSineCtrlCurve sine(0, 999, 26, 8000, 255, 0, 1000, 0, 0, 500, 0);
  EXPECT_EQ(sine.GetPhase(), 26u) << "the constructor keeps it";
  LevelsOf(sine);
  EXPECT_EQ(sine.GetPhase(), 2u);
  sine.SetPhase(83);
  EXPECT_EQ(sine.GetPhase(), 3u);
  sine.AttachWave(4000, nullptr);
  sine.SetPhase(83);
  EXPECT_EQ(sine.GetPhase(), 3u);
  EXPECT_EQ(sine.GetSampleRate(), 4000u);
  sine.SetSampleRate(0);
  sine.SetPhase(83);
  EXPECT_EQ(sine.GetPhase(), 83u) << "period 0";
  sine.SetSampleRate(8000);
  sine.SetFreqWhole(0);
  sine.SetPhase(84);
  EXPECT_EQ(sine.GetPhase(), 84u) << "no frequency";
}

TEST(Flash, UsesEightBitsOfItsFrequencies) {
  C_VLRFlashCtrlCurve flash(0, 199, 0, 8000, 300, 50, 255, 0, 0, 0, 0, 0);
  EXPECT_EQ(flash.GetFreqWhole(), 300);
  C_VLRFlashCtrlCurve same(0, 199, 0, 8000, 44, 50, 255, 0, 0, 0, 0, 0);
  EXPECT_EQ(LevelsOf(flash), LevelsOf(same));
  C_VLRFlashCtrlCurve none(0, 199, 0, 8000, 256, 50, 255, 0, 0, 0, 0, 0);
  EXPECT_EQ(LevelsOf(none), Unwritten(200));
}

TEST(Triangle, SaysWhichPartIsMissing) {
  struct Case {
    uint32_t peak, rate;
    const char* text;
  };
  for (const Case& c :
       {Case{99, 8000, "RampUpSampPerCycle (8) or RampDownSampPerCycle (0) is invalid."},
        Case{9, 8000, "RampUpSampPerCycle (0) or RampDownSampPerCycle (8) is invalid."},
        Case{0xFFFFFFFF, 8000, "RampUpSampPerCycle (0) or RampDownSampPerCycle (8) is invalid."},
        Case{50, 0, "RampUpSampPerCycle (0) or RampDownSampPerCycle (0) is invalid."}}) {
    BoxCatcher boxes;
    C_VLRTriangleCtrlCurve curve(c.peak == 0xFFFFFFFF ? 0 : 10, 99, 0, c.peak, c.rate, 255, 0, 1000,
                                 0, 0, 0, 0);
    EXPECT_EQ(LevelsOf(curve), Unwritten(curve.GetSampleCount()));
    EXPECT_EQ(boxes.texts, std::vector<std::string>{c.text});
    EXPECT_EQ(boxes.lastCaption, "Warnning");
    EXPECT_EQ(boxes.lastStyle, uint32_t{kBoxOk | kBoxWarning});
  }
}

TEST(Triangle, KeepsItsPeakInPlace) {
  struct Case {
    uint32_t start, end, peak;
    double ratio;
    uint32_t newPeak;
  };
  for (const Case& c :
       {Case{100, 199, 149, 2, 299}, Case{100, 199, 149, 0.5, 74}, Case{100, 199, 99, 2, 199},
        Case{0, 99, 0xFFFFFFFF, 2, 0xFFFFFFFF}, Case{100, 199, 20, 0.001, 0xFFFFFFFF}}) {
    C_VLRTriangleCtrlCurve curve(c.start, c.end, 0, c.peak, 8000, 255, 0, 10, 0, 0, 0, 0);
    curve.ScaleTime(c.ratio);
    EXPECT_EQ(curve.GetPeakPosition(), c.newPeak) << c.peak << " x " << c.ratio;
  }
  struct MoveCase {
    uint32_t peak, newStart, limit, newPeak;
  };
  for (const MoveCase& c :
       {MoveCase{150, 300, 900, 350}, MoveCase{150, 300, 349, 325}, MoveCase{150, 300, 399, 350},
        MoveCase{20, 300, 900, 300}, MoveCase{250, 300, 900, 399}, MoveCase{250, 300, 349, 349},
        MoveCase{20, 900, 900, 20}}) {
    C_VLRTriangleCtrlCurve curve(100, 199, 0, c.peak, 8000, 255, 0, 10, 0, 0, 0, 0);
    curve.Rebase(c.newStart, c.limit);
    EXPECT_EQ(curve.GetPeakPosition(), c.newPeak) << c.newStart << " of " << c.limit;
  }
}

}  // namespace
}  // namespace velora::test
