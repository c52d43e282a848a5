// A triangle wave between two levels.
#pragma once

#include "curves/VLRPeriodicCtrlCurve.h"

namespace velora {

/// Each cycle rises from the low level and falls back from the high one. The
/// peak position, an absolute sample position, fixes for the whole curve which
/// share of a cycle rises: that of the samples from Start to the peak in all.
///
/// Where a cycle has no sample to rise or none to fall, a message box says so,
/// and there are no levels. A sweep that runs into such cycles says it at each
/// and goes on.
class C_VLRTriangleCtrlCurve : public C_VLRPeriodicCtrlCurve {
 public:
  C_VLRTriangleCtrlCurve(uint32_t start, uint32_t end, uint32_t phase, uint32_t peakPosition,
                         uint32_t sampleRate, uint8_t highLevel, uint8_t lowLevel,
                         uint16_t freqWhole, uint16_t freqFraction, uint8_t fractionDigits,
                         uint16_t endFreqWhole, uint16_t endFreqFraction);

  uint32_t GetType() const override { return kCurveTriangle; }
  void GenerateSamples(uint16_t* out) override;
  C_VLRUnitCtrlCurve* Clone() const override;

  /// The peak keeps its place in proportion.
  void ScaleTime(double ratio) override;

  /// The peak moves along; where the curve is cut, it moves in proportion. It
  /// ends within Start to End.
  void Rebase(uint32_t newStart, uint32_t limit) override;

  uint32_t GetPeakPosition() const { return peakPosition_; }
  void SetPeakPosition(uint32_t position) { peakPosition_ = position; }
  uint8_t GetHighLevel() const { return highLevel_; }
  void SetHighLevel(uint8_t level) { highLevel_ = level; }
  uint8_t GetLowLevel() const { return lowLevel_; }
  void SetLowLevel(uint8_t level) { lowLevel_ = level; }

 private:
  /// Samples of a cycle and of its two parts.
  struct Cycle {
    uint32_t period;
    int64_t up;
    int64_t down;

    bool HasBothParts() const { return up >= 1 && down >= 1; }
  };

  /// From Start to the peak; negative for a peak before Start, also for one that a
  /// change of the bounds brought below position 0.
  int64_t PeakOffset() const;
  double RisingShare() const;
  static Cycle CycleOf(uint32_t period, double risingShare);
  static void WarnOf(const Cycle& cycle);
  void WriteCycle(const Cycle& cycle, uint32_t position, std::span<uint16_t> out) const;

  uint32_t peakPosition_;
  uint8_t highLevel_;
  uint8_t lowLevel_;
};

}  // namespace velora
