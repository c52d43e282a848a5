// A sine wave between two levels.
#pragma once

#include "curves/VLRPeriodicCtrlCurve.h"

namespace velora {

/// The first sample lies one step behind the phase, and a cycle of period P has
/// P + 1 samples: positions 1, 2 ... P, 0. A period of 0 gives no levels; a sweep
/// that runs into one stays at the middle level.
///
/// The low level should not be above the high one: levels then pass 255.
class C_VLRSineCtrlCurve : public C_VLRPeriodicCtrlCurve {
 public:
  C_VLRSineCtrlCurve(uint32_t start, uint32_t end, uint32_t phase, uint32_t sampleRate,
                     uint8_t highLevel, uint8_t lowLevel, uint16_t freqWhole, uint16_t freqFraction,
                     uint8_t fractionDigits, uint16_t endFreqWhole, uint16_t endFreqFraction);

  uint32_t GetType() const override { return kCurveSine; }
  void GenerateSamples(uint16_t* out) override;
  C_VLRUnitCtrlCurve* Clone() const override;

  uint8_t GetHighLevel() const { return highLevel_; }
  void SetHighLevel(uint8_t level) { highLevel_ = level; }
  uint8_t GetLowLevel() const { return lowLevel_; }
  void SetLowLevel(uint8_t level) { lowLevel_ = level; }

 private:
  uint8_t highLevel_;
  uint8_t lowLevel_;
};

}  // namespace velora
