// The product of two curves.
#pragma once

#include <array>
#include <memory>

#include "curves/VLRUnitCtrlCurve.h"

namespace velora {

/// Multiplies the levels of its two curves, 255 counting as 1. Both begin at the
/// modulation's first sample whatever their own start is, and count as 255 behind
/// their end. The modulation's own inverted flag has no effect.
///
/// Sounds, scaling and moving are not passed on: the owner does that for the
/// curves, through GetCurve.
class C_VLRAmplitudeModulationCurve : public C_VLRUnitCtrlCurve {
 public:
  C_VLRAmplitudeModulationCurve(uint32_t start, uint32_t end) : C_VLRUnitCtrlCurve(start, end, 0) {}

  uint32_t GetType() const override { return kCurveAmplitudeModulation; }

  /// Nothing with fewer than two curves, and when memory is short.
  void GenerateSamples(uint16_t* out) override;

  /// Clones the two curves as well.
  C_VLRUnitCtrlCurve* Clone() const override;

  /// Takes the curve over. False for null and for a third curve, which then stays
  /// the caller's.
  bool AddCurve(std::unique_ptr<C_VLRUnitCtrlCurve>&& curve);

  /// 0 to 2.
  int32_t GetCurveCount() const;

  /// Borrowed; null for an index that is none.
  C_VLRUnitCtrlCurve* GetCurve(int32_t index) const;

 private:
  std::array<std::unique_ptr<C_VLRUnitCtrlCurve>, 2> curves_;
};

}  // namespace velora
