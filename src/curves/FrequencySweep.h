// Periods of a curve whose frequency runs from one value to another.
#pragma once

#include <cstdint>

#include "curves/LevelMath.h"

namespace velora {

/// Frequencies in hertz; a period is a whole number of samples, held to 32 bits.
class FrequencySweep {
 public:
  FrequencySweep(uint32_t sampleRate, double startFrequency, double endFrequency,
                 uint32_t sampleCount)
      : rate_(sampleRate), first_(startFrequency), last_(endFrequency), count_(sampleCount) {}

  /// Without a frequency there are no cycles.
  bool HasCycles() const { return first_ > 0; }

  /// All cycles have the first period.
  bool IsSteady() const { return !(last_ > 0) || first_ == last_; }

  uint32_t FirstPeriod() const { return PeriodOf(first_); }

  /// Period of the cycle that follows one whose last sample has this index,
  /// counted from the curve's start. Only for a sweep that is not steady.
  uint32_t PeriodAfter(uint32_t index) const {
    return PeriodOf(static_cast<double>(index) / count_ * (last_ - first_) + first_);
  }

 private:
  uint32_t PeriodOf(double frequency) const { return CutToPosition(rate_ / frequency); }

  double rate_;
  double first_;
  double last_;
  double count_;
};

}  // namespace velora
