#include "curves/VLRTriangleCtrlCurve.h"

#include <algorithm>
#include <cstdio>

#include "curves/LevelMath.h"
#include "curves/LevelWriter.h"
#include "foundation/CUString.h"
#include "foundation/MessageBox.h"

namespace velora {
namespace {

/// Writes base + k x slope, rounded, for k = first, first + 1 ... The entries do
/// not depend on each other, so that several are worked out at once.
void WriteLine(std::span<uint16_t> out, double first, double slope, double base) {
  const auto count = static_cast<int64_t>(out.size());
  constexpr int64_t kBlock = 1 << 20;
  for (int64_t from = 0; from < count; from += kBlock) {
    const auto size = static_cast<int32_t>(std::min(kBlock, count - from));
    const double origin = first + static_cast<double>(from);
    uint16_t* const levels = out.data() + from;
    for (int32_t i = 0; i < size; ++i) {
      levels[i] = static_cast<uint16_t>(RoundToLevel((origin + i) * slope + base));
    }
  }
}

}  // namespace

C_VLRTriangleCtrlCurve::C_VLRTriangleCtrlCurve(uint32_t start, uint32_t end, uint32_t phase,
                                               uint32_t peakPosition, uint32_t sampleRate,
                                               uint8_t highLevel, uint8_t lowLevel,
                                               uint16_t freqWhole, uint16_t freqFraction,
                                               uint8_t fractionDigits, uint16_t endFreqWhole,
                                               uint16_t endFreqFraction)
    : C_VLRPeriodicCtrlCurve(
          start, end, phase, sampleRate,
          SweepFrequencies{freqWhole, freqFraction, fractionDigits, endFreqWhole, endFreqFraction}),
      peakPosition_(peakPosition),
      highLevel_(highLevel),
      lowLevel_(lowLevel) {}

void C_VLRTriangleCtrlCurve::GenerateSamples(uint16_t* out) {
  const FrequencySweep sweep = Sweep();
  const std::span<uint16_t> levels = OutputOf(out);
  if (!sweep.HasCycles() || levels.empty() || levels.size() > INT32_MAX) return;
  const double share = RisingShare();
  Cycle cycle = CycleOf(sweep.FirstPeriod(), share);
  if (!cycle.HasBothParts()) {
    WarnOf(cycle);
    return;
  }

  uint32_t position = StartInCycle(cycle.period);
  const size_t count =
      sweep.IsSteady() ? std::min<size_t>(levels.size(), cycle.period) : levels.size();
  for (size_t i = 0; i < count;) {
    if (cycle.period == 0) {
      std::ranges::fill(levels.subspan(i), highLevel_);
      break;
    }
    const size_t rest = std::min<size_t>(cycle.period - position, count - i);
    WriteCycle(cycle, position, levels.subspan(i, rest));
    i += rest;
    const bool atEnd = position + rest == cycle.period;
    position = 0;
    if (sweep.IsSteady() || !atEnd) continue;
    cycle = CycleOf(sweep.PeriodAfter(static_cast<uint32_t>(i - 1)), share);
    if (!cycle.HasBothParts()) WarnOf(cycle);
  }
  if (sweep.IsSteady()) RepeatPeriod(levels, cycle.period);
  if (IsInverted()) InvertLevels(levels);
}

/// The levels from a position of the cycle on, not beyond its end.
void C_VLRTriangleCtrlCurve::WriteCycle(const Cycle& cycle, uint32_t position,
                                        std::span<uint16_t> out) const {
  const double difference = int32_t{highLevel_} - lowLevel_;
  const auto rising = static_cast<size_t>(
      std::clamp<int64_t>(cycle.up - position, 0, static_cast<int64_t>(out.size())));
  if (rising > 0) {
    WriteLine(out.first(rising), position, difference / static_cast<double>(cycle.up), lowLevel_);
  }
  const double fallen =
      static_cast<double>(int64_t{position} + static_cast<int64_t>(rising) - cycle.up);
  // A negated factor gives the negated product exactly.
  WriteLine(out.subspan(rising), fallen, -(difference / static_cast<double>(cycle.down)),
            highLevel_);
}

int64_t C_VLRTriangleCtrlCurve::PeakOffset() const {
  if (peakPosition_ < GetStart()) return int64_t{peakPosition_} - GetStart();
  return static_cast<int32_t>(peakPosition_ - GetStart());
}

double C_VLRTriangleCtrlCurve::RisingShare() const {
  return static_cast<double>(std::max<int64_t>(PeakOffset() + 1, 0)) / GetSampleCount();
}

C_VLRTriangleCtrlCurve::Cycle C_VLRTriangleCtrlCurve::CycleOf(uint32_t period, double risingShare) {
  const auto up = static_cast<int64_t>(period * risingShare);
  return {period, up, int64_t{period} - up};
}

void C_VLRTriangleCtrlCurve::WarnOf(const Cycle& cycle) {
  C_CUString text;
  text.Format("RampUpSampPerCycle (%d) or RampDownSampPerCycle (%d) is invalid.",
              static_cast<int32_t>(cycle.up), static_cast<int32_t>(cycle.down));
  ShowBox(nullptr, text, "Warnning", kBoxOk | kBoxWarning);
}

C_VLRUnitCtrlCurve* C_VLRTriangleCtrlCurve::Clone() const {
  return CloneBy([this] {
    return std::make_unique<C_VLRTriangleCtrlCurve>(
        GetStart(), GetEnd(), GetPhase(), GetPeakPosition(), GetSampleRate(), GetHighLevel(),
        GetLowLevel(), GetFreqWhole(), GetFreqFraction(), GetFractionDigits(), GetEndFreqWhole(),
        GetEndFreqFraction());
  });
}

void C_VLRTriangleCtrlCurve::ScaleTime(double ratio) {
  const int64_t offset = PeakOffset();
  C_VLRPeriodicCtrlCurve::ScaleTime(ratio);
  const double scaled = static_cast<double>(std::max<int64_t>(offset + 1, 0)) * ratio;
  peakPosition_ = GetStart() - 1 + CutToLowBits(scaled);
}

void C_VLRTriangleCtrlCurve::Rebase(uint32_t newStart, uint32_t limit) {
  if (newStart >= limit) return;
  const int64_t offset = PeakOffset();
  const double oldCount = GetSampleCount();
  C_VLRPeriodicCtrlCurve::Rebase(newStart, limit);
  const double peak = GetEnd() != limit
                          ? static_cast<double>(offset + GetStart())
                          : static_cast<double>(offset) * GetSampleCount() / oldCount + GetStart();
  peakPosition_ = std::clamp(CutToPosition(peak), GetStart(), GetEnd());
}

}  // namespace velora
