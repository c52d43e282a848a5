#include "curves/VLRSineCtrlCurve.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "curves/LevelWriter.h"

namespace velora {
namespace {

constexpr double kTurn = 6.283185307179586;

/// The wave between the two levels.
struct Wave {
  double amplitude;
  double middle;

  /// Not rounded, but cut.
  uint16_t LevelOf(double sine) const {
    return static_cast<uint16_t>(static_cast<int32_t>(sine * amplitude + middle));
  }

  /// The levels from a position of the cycle on.
  void Write(std::span<uint16_t> out, uint32_t position, uint32_t period) const {
    for (uint16_t& level : out) {
      level = LevelOf(std::sin(static_cast<double>(position) / period * kTurn));
      ++position;
    }
  }
};

}  // namespace

C_VLRSineCtrlCurve::C_VLRSineCtrlCurve(uint32_t start, uint32_t end, uint32_t phase,
                                       uint32_t sampleRate, uint8_t highLevel, uint8_t lowLevel,
                                       uint16_t freqWhole, uint16_t freqFraction,
                                       uint8_t fractionDigits, uint16_t endFreqWhole,
                                       uint16_t endFreqFraction)
    : C_VLRPeriodicCtrlCurve(
          start, end, phase, sampleRate,
          SweepFrequencies{freqWhole, freqFraction, fractionDigits, endFreqWhole, endFreqFraction}),
      highLevel_(highLevel),
      lowLevel_(lowLevel) {}

void C_VLRSineCtrlCurve::GenerateSamples(uint16_t* out) {
  const FrequencySweep sweep = Sweep();
  if (!sweep.HasCycles()) return;
  uint32_t period = sweep.FirstPeriod();
  if (period == 0) return;
  const std::span<uint16_t> levels = OutputOf(out);
  const double amplitude = std::abs(int32_t{highLevel_} - lowLevel_) * 0.5;
  const Wave wave{amplitude, lowLevel_ + amplitude};

  uint32_t position = StartInCycle(period);
  const size_t cycle = size_t{period} + 1;
  const size_t count = sweep.IsSteady() ? std::min(levels.size(), cycle) : levels.size();
  for (size_t i = 0; i < count;) {
    const size_t rest = std::min<size_t>(period - position, count - i);
    wave.Write(levels.subspan(i, rest), position + 1, period);
    i += rest;
    if (i == count) break;
    // The sample at position 0 closes the cycle, with the next period in force.
    position = 0;
    levels[i] = wave.LevelOf(0);
    if (!sweep.IsSteady()) period = sweep.PeriodAfter(static_cast<uint32_t>(i));
    ++i;
  }
  if (sweep.IsSteady()) RepeatPeriod(levels, cycle);
  if (IsInverted()) InvertLevels(levels);
}

C_VLRUnitCtrlCurve* C_VLRSineCtrlCurve::Clone() const {
  return CloneBy([this] {
    return std::make_unique<C_VLRSineCtrlCurve>(GetStart(), GetEnd(), GetPhase(), GetSampleRate(),
                                                GetHighLevel(), GetLowLevel(), GetFreqWhole(),
                                                GetFreqFraction(), GetFractionDigits(),
                                                GetEndFreqWhole(), GetEndFreqFraction());
  });
}

}  // namespace velora
