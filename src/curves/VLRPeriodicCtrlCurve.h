// What the periodic curves share: rate, frequencies, phase.
#pragma once

#include "curves/FrequencySweep.h"
#include "curves/VLRUnitCtrlCurve.h"

namespace velora {

/// Frequencies in hertz, as the decimal pairs in which people enter them: whole
/// part + fraction / 10^digits, with the same number of digits for both.
struct SweepFrequencies {
  uint16_t whole = 0;
  uint16_t fraction = 0;
  uint8_t digits = 0;
  uint16_t endWhole = 0;  ///< with an end frequency of 0 there is no sweep
  uint16_t endFraction = 0;
};

/// A curve that repeats a cycle, at a constant frequency or at one that runs from
/// a start to an end frequency. The period is a whole number of samples and
/// changes between cycles only.
///
/// A start frequency of 0 gives no levels. The phase is kept below the period
/// wherever there is one.
class C_VLRPeriodicCtrlCurve : public C_VLRUnitCtrlCurve {
 public:
  /// Takes the rate.
  void AttachWave(uint32_t sampleRate, const int16_t* samples) override;

  /// Reduces the phase by the period of the start frequency at the present rate.
  void SetPhase(uint32_t phase) override;

  uint32_t GetSampleRate() const { return sampleRate_; }
  void SetSampleRate(uint32_t rate) { sampleRate_ = rate; }
  uint16_t GetFreqWhole() const { return frequencies_.whole; }
  void SetFreqWhole(uint16_t whole) { frequencies_.whole = whole; }
  uint16_t GetFreqFraction() const { return frequencies_.fraction; }
  void SetFreqFraction(uint16_t fraction) { frequencies_.fraction = fraction; }
  uint8_t GetFractionDigits() const { return frequencies_.digits; }
  void SetFractionDigits(uint8_t digits) { frequencies_.digits = digits; }
  uint16_t GetEndFreqWhole() const { return frequencies_.endWhole; }
  void SetEndFreqWhole(uint16_t whole) { frequencies_.endWhole = whole; }
  uint16_t GetEndFreqFraction() const { return frequencies_.endFraction; }
  void SetEndFreqFraction(uint16_t fraction) { frequencies_.endFraction = fraction; }

 protected:
  /// `wholeMask` tells which bits of the whole parts count.
  C_VLRPeriodicCtrlCurve(uint32_t start, uint32_t end, uint32_t phase, uint32_t sampleRate,
                         const SweepFrequencies& frequencies, uint16_t wholeMask = 0xFFFF);

  /// The periods of the curve as it stands.
  FrequencySweep Sweep() const;

  /// Where in its cycle the curve begins; also stored as the phase when the phase
  /// was a period or more. `period` must not be 0.
  uint32_t StartInCycle(uint32_t period);

 private:
  uint32_t sampleRate_;
  SweepFrequencies frequencies_;
  uint16_t wholeMask_;
};

}  // namespace velora
