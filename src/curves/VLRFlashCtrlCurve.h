// A square wave.
#pragma once

#include "curves/VLRPeriodicCtrlCurve.h"

namespace velora {

/// Each cycle is the first level for its share of the period, then the second.
/// A frequency above the sample rate has a period of 0 and gives the second level
/// throughout.
///
/// Of the whole parts of the frequencies only the low 8 bits count.
class C_VLRFlashCtrlCurve : public C_VLRPeriodicCtrlCurve {
 public:
  C_VLRFlashCtrlCurve(uint32_t start, uint32_t end, uint32_t phase, uint32_t sampleRate,
                      uint16_t freqWhole, uint8_t dutyPercent, uint8_t firstLevel,
                      uint8_t secondLevel, uint16_t freqFraction, uint8_t fractionDigits,
                      uint16_t endFreqWhole, uint16_t endFreqFraction);

  uint32_t GetType() const override { return kCurveFlash; }
  void GenerateSamples(uint16_t* out) override;
  C_VLRUnitCtrlCurve* Clone() const override;

  uint8_t GetDutyPercent() const { return dutyPercent_; }
  void SetDutyPercent(uint8_t percent) { dutyPercent_ = percent; }
  uint8_t GetFirstLevel() const { return firstLevel_; }
  void SetFirstLevel(uint8_t level) { firstLevel_ = level; }
  uint8_t GetSecondLevel() const { return secondLevel_; }
  void SetSecondLevel(uint8_t level) { secondLevel_ = level; }

 private:
  /// Samples of a cycle that have the first level. The product wraps at 32 bits.
  uint32_t OnCount(uint32_t period) const { return dutyPercent_ * period / 100; }

  uint8_t dutyPercent_;
  uint8_t firstLevel_;
  uint8_t secondLevel_;
};

}  // namespace velora
