// A constant level.
#pragma once

#include "curves/VLRUnitCtrlCurve.h"

namespace velora {

class C_VLRLevelCtrlCurve : public C_VLRUnitCtrlCurve {
 public:
  C_VLRLevelCtrlCurve(uint32_t start, uint32_t end, uint8_t level)
      : C_VLRUnitCtrlCurve(start, end, 0), level_(level) {}

  uint32_t GetType() const override { return kCurveLevel; }
  void GenerateSamples(uint16_t* out) override;
  C_VLRUnitCtrlCurve* Clone() const override;

  uint8_t GetLevel() const { return level_; }
  void SetLevel(uint8_t level) { level_ = level; }

 private:
  uint8_t level_;
};

}  // namespace velora
