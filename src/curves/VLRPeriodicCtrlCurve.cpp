#include "curves/VLRPeriodicCtrlCurve.h"

#include <cmath>

namespace velora {

C_VLRPeriodicCtrlCurve::C_VLRPeriodicCtrlCurve(uint32_t start, uint32_t end, uint32_t phase,
                                               uint32_t sampleRate,
                                               const SweepFrequencies& frequencies,
                                               uint16_t wholeMask)
    : C_VLRUnitCtrlCurve(start, end, phase),
      sampleRate_(sampleRate),
      frequencies_(frequencies),
      wholeMask_(wholeMask) {}

void C_VLRPeriodicCtrlCurve::AttachWave(uint32_t sampleRate, const int16_t*) {
  sampleRate_ = sampleRate;
}

void C_VLRPeriodicCtrlCurve::SetPhase(uint32_t phase) {
  StorePhase(phase);
  const FrequencySweep sweep = Sweep();
  if (!sweep.HasCycles()) return;
  const uint32_t period = sweep.FirstPeriod();
  if (period != 0) StorePhase(phase % period);
}

FrequencySweep C_VLRPeriodicCtrlCurve::Sweep() const {
  const double unit = std::pow(10.0, frequencies_.digits);
  const auto frequency = [&](uint16_t whole, uint16_t fraction) {
    return (whole & wholeMask_) + fraction / unit;
  };
  return FrequencySweep(sampleRate_, frequency(frequencies_.whole, frequencies_.fraction),
                        frequency(frequencies_.endWhole, frequencies_.endFraction),
                        GetSampleCount());
}

uint32_t C_VLRPeriodicCtrlCurve::StartInCycle(uint32_t period) {
  const uint32_t phase = GetPhase();
  const uint32_t position = phase % period;
  if (position != phase) StorePhase(position);
  return position;
}

}  // namespace velora
