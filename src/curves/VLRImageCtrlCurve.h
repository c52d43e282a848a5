// A stored level for each sample.
#pragma once

#include <vector>

#include "curves/VLRUnitCtrlCurve.h"

namespace velora {

/// The table has an entry for each sample that the curve had when the table was
/// last set; samples behind it have level 0.
class C_VLRImageCtrlCurve : public C_VLRUnitCtrlCurve {
 public:
  /// Levels of 0.
  C_VLRImageCtrlCurve(uint32_t start, uint32_t end);

  /// Copies a level for each sample. Null counts as all 0.
  C_VLRImageCtrlCurve(uint32_t start, uint32_t end, const uint8_t* levels);

  uint32_t GetType() const override { return kCurveImage; }
  void GenerateSamples(uint16_t* out) override;
  C_VLRUnitCtrlCurve* Clone() const override;

  /// `index` counts from Start. Outside the table 0, and nothing is set.
  uint8_t GetLevelAt(uint32_t index) const { return index < levels_.size() ? levels_[index] : 0; }
  void SetLevelAt(uint32_t index, uint8_t level) {
    if (index < levels_.size()) levels_[index] = level;
  }

  /// Copies GetSampleCount() levels; null is ignored.
  void SetLevels(const uint8_t* levels);

  /// The table, borrowed.
  const uint8_t* GetLevels() const { return levels_.data(); }

 private:
  std::vector<uint8_t> levels_;
};

}  // namespace velora
