// One straight run from a level to another.
#pragma once

#include "curves/VLRUnitCtrlCurve.h"

namespace velora {

/// The level at Start is the start level; the end level would be reached one
/// sample behind End.
class C_VLRRampCtrlCurve : public C_VLRUnitCtrlCurve {
 public:
  /// The phase is not kept.
  C_VLRRampCtrlCurve(uint32_t start, uint32_t end, uint32_t phase, uint8_t startLevel,
                     uint8_t endLevel);

  uint32_t GetType() const override { return kCurveRamp; }
  void GenerateSamples(uint16_t* out) override;
  C_VLRUnitCtrlCurve* Clone() const override;

  /// A bound that passes the other one takes level 0; an end moved onto the
  /// start takes the start's level.
  void MoveStart(uint32_t start) override;
  void MoveEnd(uint32_t end) override;

  /// A ramp that is cut at the limit keeps its slope.
  void Rebase(uint32_t newStart, uint32_t limit) override;

  uint8_t GetStartLevel() const { return startLevel_; }
  void SetStartLevel(uint8_t level) { startLevel_ = level; }
  uint8_t GetEndLevel() const { return endLevel_; }
  void SetEndLevel(uint8_t level) { endLevel_ = level; }

 private:
  uint8_t startLevel_;
  uint8_t endLevel_;
};

}  // namespace velora
