// Levels that hold from point to point.
#pragma once

#include <vector>

#include "curves/VLRUnitCtrlCurve.h"

namespace velora {

/// A level lasts from its point to the next one. Samples before the first point
/// are not written.
class C_VLRNewImageCtrlCurve : public C_VLRUnitCtrlCurve {
 public:
  C_VLRNewImageCtrlCurve(uint32_t start, uint32_t end) : C_VLRUnitCtrlCurve(start, end, 0) {}

  uint32_t GetType() const override { return kCurveNewImage; }

  /// At each sample the last point of the list counts whose position is reached.
  void GenerateSamples(uint16_t* out) override;
  C_VLRUnitCtrlCurve* Clone() const override;

  /// Scales the points as the bounds.
  void ScaleTime(double ratio) override;

  /// Moves the points along. A point that would land below 0 stays where it is;
  /// the first that would reach the limit is dropped with all behind it.
  void Rebase(uint32_t newStart, uint32_t limit) override;

  /// Behind the last point.
  void AddPoint(uint32_t sample, uint8_t level) { points_.push_back({sample, level}); }
  const std::vector<tagVLRCurveCtrlPoint>& GetPoints() const { return points_; }

  /// Makes room for the positions a to b, which get level 0: the points from the
  /// first one at or behind `a` on move behind the gap, and End grows by its
  /// length. Without such a point the last level runs through the gap. A point at
  /// position 0 is lost. Does nothing unless Start <= a < End and a <= b.
  void InsertGap(uint32_t a, uint32_t b);

 private:
  std::vector<tagVLRCurveCtrlPoint> points_;
};

}  // namespace velora
