#include "curves/VLRFlashCtrlCurve.h"

#include <algorithm>

#include "curves/LevelWriter.h"

namespace velora {
namespace {

/// The whole parts of the frequencies of a flash.
constexpr uint16_t kWholeMask = 0xFF;

}  // namespace

C_VLRFlashCtrlCurve::C_VLRFlashCtrlCurve(uint32_t start, uint32_t end, uint32_t phase,
                                         uint32_t sampleRate, uint16_t freqWhole,
                                         uint8_t dutyPercent, uint8_t firstLevel,
                                         uint8_t secondLevel, uint16_t freqFraction,
                                         uint8_t fractionDigits, uint16_t endFreqWhole,
                                         uint16_t endFreqFraction)
    : C_VLRPeriodicCtrlCurve(
          start, end, phase, sampleRate,
          SweepFrequencies{freqWhole, freqFraction, fractionDigits, endFreqWhole, endFreqFraction},
          kWholeMask),
      dutyPercent_(dutyPercent),
      firstLevel_(firstLevel),
      secondLevel_(secondLevel) {}

void C_VLRFlashCtrlCurve::GenerateSamples(uint16_t* out) {
  const FrequencySweep sweep = Sweep();
  if (!sweep.HasCycles()) return;
  const std::span<uint16_t> levels = OutputOf(out);
  const uint16_t first = Deliver(firstLevel_, IsInverted());
  const uint16_t second = Deliver(secondLevel_, IsInverted());

  uint32_t period = sweep.FirstPeriod();
  uint32_t position = period != 0 ? StartInCycle(period) : 0;
  const bool steady = sweep.IsSteady() && period != 0;
  const size_t count = steady ? std::min<size_t>(levels.size(), period) : levels.size();
  for (size_t i = 0; i < count;) {
    if (period == 0) {
      std::ranges::fill(levels.subspan(i), second);
      return;
    }
    const std::span<uint16_t> cycle =
        levels.subspan(i, std::min<size_t>(period - position, count - i));
    const uint32_t onCount = OnCount(period);
    const size_t on = onCount > position ? std::min<size_t>(onCount - position, cycle.size()) : 0;
    std::ranges::fill(cycle.first(on), first);
    std::ranges::fill(cycle.subspan(on), second);
    i += cycle.size();
    position = 0;
    if (!sweep.IsSteady()) period = sweep.PeriodAfter(static_cast<uint32_t>(i - 1));
  }
  if (steady) RepeatPeriod(levels, period);
}

C_VLRUnitCtrlCurve* C_VLRFlashCtrlCurve::Clone() const {
  return CloneBy([this] {
    return std::make_unique<C_VLRFlashCtrlCurve>(
        GetStart(), GetEnd(), GetPhase(), GetSampleRate(), GetFreqWhole(), GetDutyPercent(),
        GetFirstLevel(), GetSecondLevel(), GetFreqFraction(), GetFractionDigits(),
        GetEndFreqWhole(), GetEndFreqFraction());
  });
}

}  // namespace velora
